#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "core/base/file_time.h"

// The records and calls shared between the program and its companion library
// GID.QX.so, which reads the shared GPS service (gpsd). Both sides include
// this header, so each layout exists once; the offsets are part of the
// library's binary interface and are checked below.

namespace tolvane {

inline constexpr int kGidMaxSatellites = 12;

// Filled by "GID_GetGPSPositionInfo": 384 bytes, little-endian, doubles in
// IEEE 754 binary64. The fields are those of the snapshot the NMEA path
// delivers, in the same units (speed in knots, time as a local file time).
struct GidPositionInfo {
    std::int32_t fixValid;  // nonzero when the position is valid
    std::int32_t reserved;  // not read by the program
    double latitude;        // degrees, north positive
    double longitude;       // degrees, east positive
    double altitude;        // metres above mean sea level
    double course;          // degrees true
    double speedKnots;
    std::int32_t satellitesInView;
    std::int32_t satellitesUsed;
    std::int32_t satPrn[kGidMaxSatellites];
    std::int32_t satSnr[kGidMaxSatellites];
    double satElevation[kGidMaxSatellites];  // degrees
    double satAzimuth[kGidMaxSatellites];    // degrees
    double pdop;
    double hdop;
    double vdop;
    double fixType;    // 1.0 no fix, 2.0 2D, 3.0 3D
    FileTime fixTime;  // local time of the fix, 100 ns since 1601
};

// The records are exchanged as raw memory, so the machine must be
// little-endian for them to have the agreed layout.
static_assert(std::endian::native == std::endian::little);
static_assert(sizeof(GidPositionInfo) == 384);
static_assert(offsetof(GidPositionInfo, fixValid) == 0);
static_assert(offsetof(GidPositionInfo, latitude) == 8);
static_assert(offsetof(GidPositionInfo, longitude) == 16);
static_assert(offsetof(GidPositionInfo, altitude) == 24);
static_assert(offsetof(GidPositionInfo, course) == 32);
static_assert(offsetof(GidPositionInfo, speedKnots) == 40);
static_assert(offsetof(GidPositionInfo, satellitesInView) == 48);
static_assert(offsetof(GidPositionInfo, satellitesUsed) == 52);
static_assert(offsetof(GidPositionInfo, satPrn) == 56);
static_assert(offsetof(GidPositionInfo, satSnr) == 104);
static_assert(offsetof(GidPositionInfo, satElevation) == 152);
static_assert(offsetof(GidPositionInfo, satAzimuth) == 248);
static_assert(offsetof(GidPositionInfo, pdop) == 344);
static_assert(offsetof(GidPositionInfo, hdop) == 352);
static_assert(offsetof(GidPositionInfo, vdop) == 360);
static_assert(offsetof(GidPositionInfo, fixType) == 368);
static_assert(offsetof(GidPositionInfo, fixTime) == 376);

inline constexpr std::size_t kGidDevicePathSize = 128;
inline constexpr std::size_t kGidDeviceDriverSize = 64;

// Filled by "GID_GetGPSDeviceInfo": 208 bytes, little-endian. The program
// keeps it and clears it when the source stops but never interprets it; it
// is there for the user's diagnosis. Texts are UTF-8, NUL-terminated and cut
// to fit.
//
// | offset | size | field                                                    |
// |      0 |    4 | activated: nonzero while gpsd reports the receiver open  |
// |      4 |    4 | baud rate of the receiver's link as gpsd reports it, 0   |
// |      8 |    8 | local file time of the last report from the receiver, 0  |
// |     16 |  128 | receiver path ("/dev/ttyACM0", "tcp://host:port", ...)   |
// |    144 |   64 | gpsd's driver of the receiver ("NMEA0183", "u-blox", ...)|
struct GidDeviceInfo {
    std::int32_t activated;
    std::uint32_t baudRate;
    FileTime lastReportTime;
    char path[kGidDevicePathSize];
    char driver[kGidDeviceDriverSize];
};

static_assert(sizeof(GidDeviceInfo) == 208);
static_assert(offsetof(GidDeviceInfo, activated) == 0);
static_assert(offsetof(GidDeviceInfo, baudRate) == 4);
static_assert(offsetof(GidDeviceInfo, lastReportTime) == 8);
static_assert(offsetof(GidDeviceInfo, path) == 16);
static_assert(offsetof(GidDeviceInfo, driver) == 144);

// The seven exports of the library, by name and type. Each returns nonzero
// for success; the program uses only the results of "GID_OpenGIDDevice"
// (nonzero = opened) and "GID_GetGPSConnectionState" (nonzero = a receiver
// is connected). The instance and window handles are opaque to the library.
using GidInitFunction = std::int32_t (*)();
using GidUnInitFunction = std::int32_t (*)();
using GidOpenDeviceFunction = std::int32_t (*)(void* instance, void* window, std::int32_t flags);
using GidCloseDeviceFunction = std::int32_t (*)();
using GidPositionInfoFunction = std::int32_t (*)(GidPositionInfo* info);
using GidDeviceInfoFunction = std::int32_t (*)(GidDeviceInfo* info);
using GidConnectionStateFunction = std::int32_t (*)();

inline constexpr const char* kGidInitName = "GID_Init";
inline constexpr const char* kGidUnInitName = "GID_UnInit";
inline constexpr const char* kGidOpenDeviceName = "GID_OpenGIDDevice";
inline constexpr const char* kGidCloseDeviceName = "GID_CloseGIDDevice";
inline constexpr const char* kGidPositionInfoName = "GID_GetGPSPositionInfo";
inline constexpr const char* kGidDeviceInfoName = "GID_GetGPSDeviceInfo";
inline constexpr const char* kGidConnectionStateName = "GID_GetGPSConnectionState";

inline constexpr const char* kGidLibraryFileName = "GID.QX.so";

}  // namespace tolvane
