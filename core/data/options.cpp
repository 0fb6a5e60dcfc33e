#include "core/data/options.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "core/base/text_encoding.h"
#include "core/data/whole_file.h"
#include "core/gps/gps_processing.h"

namespace tolvane {
namespace {

constexpr int kDefaultSpeedAlarms[kSpeedAlarmCount] = {50, 60, 70, 80, 90, 100, 110, 120};
constexpr int kDefaultTrackIntervals[kTrackIntervalCount] = {10, 20, 30, 60};
constexpr int kLastUnitSystem = 3;

void ValidateLoaded(Options& options) {
    if (options.trackIntervalIndex < 0 || options.trackIntervalIndex > 3) {
        options.trackIntervalIndex = 0;
    }
    if (options.speedAlarmIndex < -1 || options.speedAlarmIndex > 7) options.speedAlarmIndex = -1;
    if (options.unitSystem < 0 || options.unitSystem > kLastUnitSystem) options.unitSystem = 0;
    // A processor the program does not have would never give a fix.
    if (options.dataProcessor < 0 || options.dataProcessor >= kDataProcessorCount) {
        options.dataProcessor = kProcessorRaw;
    }
    // Every wide field ends inside its array, whatever the file held.
    options.bluetoothName[std::size(options.bluetoothName) - 1] = u'\0';
    options.storageLocation[kWidePathLength - 1] = u'\0';
    for (auto& recent : options.recentMaps) recent[kWidePathLength - 1] = u'\0';
    options.poiFolder[kWidePathLength - 1] = u'\0';
    options.waypointFile[kWidePathLength - 1] = u'\0';
}

}  // namespace

void ResetOptions(Options& options) {
    std::memset(&options, 0, sizeof options);
    std::strcpy(options.version, kProgramVersion);
    options.showMap = 1;
    options.showTrack = 1;
    options.showRefPoints = 1;
    options.showPoi = 1;
    options.speedAlarmIndex = -1;
    options.keepBacklightOn = 1;
    std::copy(std::begin(kDefaultSpeedAlarms), std::end(kDefaultSpeedAlarms),
              options.speedAlarmValues);
    std::copy(std::begin(kDefaultTrackIntervals), std::end(kDefaultTrackIntervals),
              options.trackIntervalValues);
    options.showWaypoint = 1;
    options.showLabel = 1;
    options.showDestinations = 1;
    options.showDestinationInfo = 1;
    options.navigation = 1;
    options.showRange = 1;
    options.defaultProximityRange = 200;
    options.voiceGuide = 1;
}

bool LoadOptions(const std::string& path, Options& options, int attempts) {
    return ReadWholeFile(path, &options, sizeof options, attempts) == 1;
}

bool SaveOptions(const std::string& path, const Options& options, int attempts) {
    return WriteWholeFile(path, &options, sizeof options, attempts) == 1;
}

OptionsLoad LoadCheckedOptions(const std::string& path, Options& options, int attempts,
                               int* lastError) {
    Options loaded;
    if (ReadWholeFile(path, &loaded, sizeof loaded, attempts, lastError) != 1) {
        return OptionsLoad::kUnreadable;
    }
    if (std::strncmp(loaded.version, kProgramVersion, sizeof loaded.version) != 0) {
        return OptionsLoad::kOtherVersion;
    }
    ValidateLoaded(loaded);
    options = loaded;
    return OptionsLoad::kLoaded;
}

void LoadOptionsAtStartup(const std::string& path, Options& options, OptionsRuntime& runtime) {
    constexpr int kStartupAttempts = 5;
    if (LoadCheckedOptions(path, options, kStartupAttempts) != OptionsLoad::kLoaded) {
        ResetOptions(options);
        std::error_code error;
        runtime.unloadedFile = std::filesystem::exists(path, error);
        runtime.firstStart = !runtime.unloadedFile;
        return;
    }
    CopyOptionsToRuntime(options, runtime);
}

bool KeepUnloadedOptions(const std::string& path, std::string& failure) {
    std::error_code error;
    // A file removed since start-up holds nothing to keep.
    if (!std::filesystem::exists(path, error)) return false;
    std::filesystem::copy_file(path, path + kUnloadedOptionsSuffix,
                               std::filesystem::copy_options::overwrite_existing, error);
    if (error) failure = error.message();
    return !error;
}

void CopyOptionsToRuntime(const Options& options, OptionsRuntime& runtime) {
    runtime.bluetoothName = ReadWideField(options.bluetoothName);
    runtime.bluetoothAddress =
        static_cast<std::uint64_t>(options.bluetoothAddress[1]) << 32 | options.bluetoothAddress[0];
    runtime.receiverChosen = !runtime.bluetoothName.empty() &&
                             (options.bluetoothAddress[0] != 0 || options.bluetoothAddress[1] != 0);
    runtime.storageLocation = ReadWideField(options.storageLocation);
    runtime.poiFolder = ReadWideField(options.poiFolder);
    runtime.waypointFile = ReadWideField(options.waypointFile);
}

std::string ReadWideField(const char16_t* field, std::size_t length) {
    std::size_t used = 0;
    while (used < length && field[used] != u'\0') ++used;
    return Utf16ToUtf8(std::u16string_view(field, used));
}

void WriteWideField(char16_t* field, std::size_t length, const std::string& text) {
    const std::u16string wide = Utf8ToUtf16(TruncateToUtf16Units(text, length - 1));
    std::fill(field, field + length, u'\0');
    std::copy(wide.begin(), wide.end(), field);
}

}  // namespace tolvane
