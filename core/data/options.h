#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/gps/daemon_ports.h"

namespace tolvane {

inline constexpr char kProgramVersion[] = "2.4.0.3151";
inline constexpr std::size_t kOptionsSize = 4904;
inline constexpr std::size_t kWidePathLength = 260;
inline constexpr int kRecentMapCount = 5;
inline constexpr int kSpeedAlarmCount = 8;
inline constexpr int kTrackIntervalCount = 4;

static_assert(std::endian::native == std::endian::little,
              "Options.dat is a raw little-endian dump of the record");

// Every persisted setting: one fixed record that is written to Options.dat
// byte for byte. Wide texts are UTF-16LE, NUL-terminated inside their arrays.
struct Options {
    char version[20];
    std::int32_t showMap;
    std::int32_t showTrack;
    std::int32_t showRefPoints;
    std::int32_t showPoi;
    std::int32_t gpsSource;  // 0 Intermediate Driver (gpsd), 1 serial port, 2 Bluetooth
    std::int32_t portIndex;  // index into the port table
    std::int32_t baudIndex;  // index into the baud-rate table
    std::int32_t trackLoggerEnabled;
    std::int32_t trackIntervalIndex;
    std::int32_t speedAlarmIndex;
    std::int32_t unitSystem;
    std::uint8_t reserved64[12];
    char16_t bluetoothName[256];
    std::uint8_t reserved588[4];
    std::uint32_t bluetoothAddress[2];  // low word first
    std::int32_t autoBluetooth;
    std::int32_t keepBacklightOn;
    std::int32_t logNmea;
    char16_t storageLocation[kWidePathLength];
    char16_t recentMaps[kRecentMapCount][kWidePathLength];
    std::int32_t speedAlarmValues[kSpeedAlarmCount];
    std::int32_t trackIntervalValues[kTrackIntervalCount];
    char16_t poiFolder[kWidePathLength];
    char16_t waypointFile[kWidePathLength];
    std::int32_t showWaypoint;
    std::int32_t showLabel;
    std::int32_t showDestinations;
    std::int32_t showDestinationInfo;
    std::int32_t navigation;
    std::int32_t dataProcessor;
    std::int32_t coordinateFormat;
    std::int32_t nightView;
    std::int32_t fullScreen;
    double minimumSpeed;  // km/h, never negative
    std::int32_t showRange;
    std::int32_t defaultProximityRange;
    std::int32_t alwaysUseDefaultRange;
    std::int32_t voiceEngine;
    std::int32_t voiceGuide;
    std::int32_t startGpsAtStartup;
    std::int32_t loadPoiAtStartup;
    std::int32_t trackLogFormat;
    std::int32_t mapListPosition;
    std::uint8_t reserved4900[4];
};

static_assert(sizeof(Options) == kOptionsSize);
static_assert(offsetof(Options, version) == 0);
static_assert(offsetof(Options, showMap) == 20);
static_assert(offsetof(Options, showTrack) == 24);
static_assert(offsetof(Options, showRefPoints) == 28);
static_assert(offsetof(Options, showPoi) == 32);
static_assert(offsetof(Options, gpsSource) == 36);
static_assert(offsetof(Options, portIndex) == 40);
static_assert(offsetof(Options, baudIndex) == 44);
static_assert(offsetof(Options, trackLoggerEnabled) == 48);
static_assert(offsetof(Options, trackIntervalIndex) == 52);
static_assert(offsetof(Options, speedAlarmIndex) == 56);
static_assert(offsetof(Options, unitSystem) == 60);
static_assert(offsetof(Options, reserved64) == 64);
static_assert(offsetof(Options, bluetoothName) == 76);
static_assert(offsetof(Options, reserved588) == 588);
static_assert(offsetof(Options, bluetoothAddress) == 592);
static_assert(offsetof(Options, autoBluetooth) == 600);
static_assert(offsetof(Options, keepBacklightOn) == 604);
static_assert(offsetof(Options, logNmea) == 608);
static_assert(offsetof(Options, storageLocation) == 612);
static_assert(offsetof(Options, recentMaps) == 1132);
static_assert(offsetof(Options, speedAlarmValues) == 3732);
static_assert(offsetof(Options, trackIntervalValues) == 3764);
static_assert(offsetof(Options, poiFolder) == 3780);
static_assert(offsetof(Options, waypointFile) == 4300);
static_assert(offsetof(Options, showWaypoint) == 4820);
static_assert(offsetof(Options, showLabel) == 4824);
static_assert(offsetof(Options, showDestinations) == 4828);
static_assert(offsetof(Options, showDestinationInfo) == 4832);
static_assert(offsetof(Options, navigation) == 4836);
static_assert(offsetof(Options, dataProcessor) == 4840);
static_assert(offsetof(Options, coordinateFormat) == 4844);
static_assert(offsetof(Options, nightView) == 4848);
static_assert(offsetof(Options, fullScreen) == 4852);
static_assert(offsetof(Options, minimumSpeed) == 4856);
static_assert(offsetof(Options, showRange) == 4864);
static_assert(offsetof(Options, defaultProximityRange) == 4868);
static_assert(offsetof(Options, alwaysUseDefaultRange) == 4872);
static_assert(offsetof(Options, voiceEngine) == 4876);
static_assert(offsetof(Options, voiceGuide) == 4880);
static_assert(offsetof(Options, startGpsAtStartup) == 4884);
static_assert(offsetof(Options, loadPoiAtStartup) == 4888);
static_assert(offsetof(Options, trackLogFormat) == 4892);
static_assert(offsetof(Options, mapListPosition) == 4896);
static_assert(offsetof(Options, reserved4900) == 4900);

// The copies of the record's texts that the rest of the program uses, made
// when the record is loaded.
struct OptionsRuntime {
    std::string bluetoothName;
    std::uint64_t bluetoothAddress = 0;
    bool receiverChosen = false;  // a name and a non-zero address are stored
    int bluetoothChannel = 0;     // the RFCOMM channel the search found; 0 when unknown
    // With the serial port source: a receiver a daemon owns instead of the
    // port of the port table, and gnss-share's socket.
    DaemonReceiver daemonReceiver = DaemonReceiver::kNone;
    std::string gnssShareSocket = kDefaultGnssShareSocket;
    // The tile maps the user listed, MBTiles files and tile folders, in the
    // order they are asked for a tile: the first that covers a place at a
    // zoom is drawn there.
    std::vector<std::string> tileSources;
    // The language chosen in the Options dialog, as the code of its file
    // ("DEU"); empty when the program follows the desktop's locale.
    std::string language;
    std::string storageLocation;
    std::string poiFolder;
    std::string waypointFile;
    // Options.dat was there at start-up but did not load (short, unreadable
    // or another version's): its bytes are copied aside before the first
    // save replaces them.
    bool unloadedFile = false;
    // No Options.dat was there at start-up: the program's first start, when
    // it looks for a receiver by itself.
    bool firstStart = false;
};

void ResetOptions(Options& options);

// Whole-record loads and saves with the given number of attempts; true on
// success. A load succeeds only when exactly sizeof(Options) bytes are read.
bool LoadOptions(const std::string& path, Options& options, int attempts);
bool SaveOptions(const std::string& path, const Options& options, int attempts);

// What a checked load found.
enum class OptionsLoad { kLoaded, kUnreadable, kOtherVersion };

// Start-up's load without its fallback: the record is read whole, must be
// this version's, and is validated. options is left alone unless kLoaded;
// lastError, when given, receives the system error of a failed open.
OptionsLoad LoadCheckedOptions(const std::string& path, Options& options, int attempts,
                               int* lastError = nullptr);

// Start-up's load: a failed load or another version's record gives the
// defaults, quietly, and marks a file that is there as unloaded; a good one
// is validated and its texts copied to runtime.
void LoadOptionsAtStartup(const std::string& path, Options& options, OptionsRuntime& runtime);

// Where the bytes of a settings file that did not load are kept: the
// file's name with this added.
inline constexpr char kUnloadedOptionsSuffix[] = ".bak";

// Copies a settings file that did not load to its name with ".bak" added,
// replacing an older copy, so that the user's bytes outlive the save of the
// defaults. True when the copy was made; false with failure saying why
// when it could not be, and with failure left empty when the file is gone.
bool KeepUnloadedOptions(const std::string& path, std::string& failure);

// Copies the texts of the record into the run-time copies.
void CopyOptionsToRuntime(const Options& options, OptionsRuntime& runtime);

// UTF-8 from and to a NUL-terminated wide field of the record; writing
// truncates to the array and always leaves a terminating NUL.
std::string ReadWideField(const char16_t* field, std::size_t length);
void WriteWideField(char16_t* field, std::size_t length, const std::string& text);

template <std::size_t N>
std::string ReadWideField(const char16_t (&field)[N]) {
    return ReadWideField(field, N);
}
template <std::size_t N>
void WriteWideField(char16_t (&field)[N], const std::string& text) {
    WriteWideField(field, N, text);
}

}  // namespace tolvane
