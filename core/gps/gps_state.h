#pragma once

#include <cstdint>

#include "core/base/file_time.h"

namespace tolvane {

inline constexpr int kMaxSatellites = 12;

// One reading of the active GPS source: what the NMEA record's accessors or
// the shared GPS service deliver, field for field.
struct GpsFix {
    std::int32_t fixValid = 0;
    double latitude = 0;   // degrees, north positive
    double longitude = 0;  // degrees, east positive
    double altitude = 0;   // metres above mean sea level
    double course = 0;     // degrees true
    double speedKnots = 0;
    std::int32_t satellitesInView = 0;
    std::int32_t satellitesUsed = 0;
    std::int32_t satPrn[kMaxSatellites] = {};
    std::int32_t satSnr[kMaxSatellites] = {};
    double satElevation[kMaxSatellites] = {};
    double satAzimuth[kMaxSatellites] = {};
    double pdop = 0;
    double hdop = 0;
    double vdop = 0;
    double fixType = 1.0;  // 1 no fix, 2 2D, 3 3D
    FileTime fixTime = 0;  // local time of the fix
};

// The published state of the GPS that every view, the track logger, the
// alarms and the navigation read. Only the per-second update writes it (and
// the GPS start and stop commands clear it).
struct GpsState : GpsFix {
    std::int32_t connected = 0;

    std::int32_t hadFixLastTick = 0;
    double heldLatitude = 0;
    double heldLongitude = 0;
    double heldCourse = 0;
    std::int32_t havePreviousPoint = 0;
    double previousLatitude = 0;
    double previousLongitude = 0;
    double maxSpeedKnots = 0;
    double averageSpeedKmh = 0;
    double tripDistanceKm = 0;
    std::int32_t connectedSeconds = 0;
    std::int32_t movingSeconds = 0;
    double destinationDistanceKm = 0;
    std::int32_t destinationSeconds = 0;  // -1 while not moving
    std::int32_t noFixBlink = 0;
    std::int32_t idleTicks = 0;
    std::int32_t timeResyncCountdown = 0;
};

// Whether the state holds a valid fix of a connected receiver.
inline bool HasLiveFix(const GpsState& gps) {
    return gps.connected && gps.fixValid;
}

}  // namespace tolvane
