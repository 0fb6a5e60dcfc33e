#include "tools/tolvane-tool/port_run.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <sstream>

#include "core/app/gps_commands.h"
#include "core/app/main_timer.h"
#include "core/base/program_paths.h"
#include "core/data/geo_point_file.h"

namespace tolvane::tool {
namespace {

bool ParseNumber(const std::string& text, double& value) {
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return !text.empty() && error == std::errc() && stop == end;
}

bool ValueOf(const Arguments& arguments, std::size_t& index, std::string& value) {
    if (index + 1 >= arguments.size()) return false;
    value = arguments[++index];
    return true;
}

}  // namespace

bool ParseInteger(const std::string& text, long long& value) {
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return !text.empty() && error == std::errc() && stop == end;
}

namespace {

// Reads a whole number within [low, high] into target.
bool SetInteger(const std::string& value, long long low, long long high,
                std::optional<std::int32_t>& target) {
    long long integer = 0;
    if (!ParseInteger(value, integer) || integer < low || integer > high) return false;
    target = static_cast<std::int32_t>(integer);
    return true;
}

bool SetTrackFormat(const std::string& value, std::optional<std::int32_t>& target) {
    static const char* const kFormats[] = {"log", "gpx", "kml"};
    for (std::int32_t format = 0; format < 3; ++format) {
        if (value == kFormats[format]) target = format;
    }
    return target.has_value();
}

// Applies one option that takes a value; false when the value is bad.
bool SetValueOption(const std::string& name, const std::string& value, RunSettings& settings) {
    double number = 0;
    if (name == "--options") settings.optionsFile = value;
    if (name == "--out") settings.trackFolder = value;
    if (name == "--destinations") settings.destinationsFile = value;
    if (name == "--options" || name == "--out" || name == "--destinations") return !value.empty();
    if (name == "--min-speed") {
        if (!ParseNumber(value, number) || !std::isfinite(number) || number < 0) return false;
        settings.minimumSpeed = number;
        return true;
    }
    if (name == "--processor") return SetInteger(value, 0, 2, settings.dataProcessor);
    if (name == "--unit") return SetInteger(value, 0, 9, settings.unitSystem);
    if (name == "--track-format") return SetTrackFormat(value, settings.trackFormat);
    if (name == "--interval") return SetInteger(value, 0, 1'000'000, settings.trackInterval);
    if (name == "--navigation") return SetInteger(value, 0, 1, settings.navigation);
    if (name == "--default-range")
        return SetInteger(value, 0, 1'000'000'000, settings.defaultRange);
    if (name == "--speed-alarm") return SetInteger(value, -1, 7, settings.speedAlarm);
    std::optional<std::int32_t> voice;
    if (!SetInteger(value, 0, 1, voice)) return false;
    settings.voice = *voice == 1;
    return true;
}

bool TakesValue(const std::string& name) {
    static const char* const kNames[] = {"--options",       "--out",         "--destinations",
                                         "--min-speed",     "--processor",   "--unit",
                                         "--track-format",  "--interval",    "--navigation",
                                         "--default-range", "--speed-alarm", "--voice"};
    for (const char* known : kNames) {
        if (name == known) return true;
    }
    return false;
}

}  // namespace

bool ParseRunOption(const Arguments& arguments, std::size_t& index, RunSettings& settings,
                    std::string& error) {
    const std::string& name = arguments[index];
    if (name == "--json") {
        settings.json = true;
        return true;
    }
    if (name == "--always-default-range") {
        settings.alwaysDefaultRange = true;
        return true;
    }
    if (!TakesValue(name)) return false;
    std::string value;
    if (!ValueOf(arguments, index, value)) {
        error = name + " needs a value";
    } else if (!SetValueOption(name, value, settings)) {
        error = "bad value '" + value + "' for " + name;
    }
    return true;
}

std::string CheckRunSettings(const RunSettings& settings) {
    if (settings.trackFormat && settings.trackFolder.empty()) {
        return "--track-format needs --out DIR, the folder for the track files";
    }
    if (!settings.trackFormat && (settings.trackInterval || !settings.trackFolder.empty())) {
        return "--interval and --out go with --track-format";
    }
    return {};
}

namespace {

// Loads the settings record of --options as start-up loads Options.dat,
// but a record start-up would throw away is refused, saying why.
bool LoadRunOptions(const std::string& path, Options& options, std::string& error) {
    int lastError = 0;
    switch (LoadCheckedOptions(path, options, 1, &lastError)) {
        case OptionsLoad::kLoaded:
            return true;
        case OptionsLoad::kUnreadable:
            error = "cannot read the settings record " + path + ": " +
                    (lastError != 0
                         ? std::strerror(lastError)
                         : "shorter than a record (" + std::to_string(kOptionsSize) + " bytes)");
            return false;
        case OptionsLoad::kOtherVersion:
            error = path + " is not a settings record of version " + kProgramVersion;
            return false;
    }
    return false;
}

}  // namespace

bool MakeRunOptions(const RunSettings& settings, Options& options, std::string& error) {
    ResetOptions(options);
    if (!settings.optionsFile.empty() && !LoadRunOptions(settings.optionsFile, options, error)) {
        return false;
    }
    options.dataProcessor = settings.dataProcessor.value_or(options.dataProcessor);
    options.unitSystem = settings.unitSystem.value_or(options.unitSystem);
    options.minimumSpeed = settings.minimumSpeed.value_or(options.minimumSpeed);
    if (settings.trackFormat) {
        options.trackLoggerEnabled = 1;
        options.trackLogFormat = *settings.trackFormat;
    }
    if (settings.trackInterval) {
        options.trackIntervalIndex = 0;
        options.trackIntervalValues[0] = ClampTrackInterval(*settings.trackInterval);
    }
    options.navigation = settings.navigation.value_or(options.navigation);
    options.defaultProximityRange = settings.defaultRange.value_or(options.defaultProximityRange);
    if (settings.alwaysDefaultRange) options.alwaysUseDefaultRange = 1;
    options.speedAlarmIndex = settings.speedAlarm.value_or(options.speedAlarmIndex);
    options.voiceGuide = settings.voice ? 1 : 0;
    return true;
}

namespace {

// A destination list is a few hundred lines at most; a file larger than
// this is none, and is refused before it is read (/dev/zero has no end).
constexpr std::uintmax_t kMaxDestinationListBytes = 16 << 20;

// Reads the destination list of --destinations; false with error set when
// it is no file of points.
bool LoadDestinations(const std::string& path, DynamicList<GeoPoint>& destinations,
                      std::string& error) {
    const std::string name = "the destination list " + path;
    std::error_code status;
    const std::filesystem::file_status file = std::filesystem::status(path, status);
    if (status) {
        error = "cannot read " + name + ": " + status.message();
        return false;
    }
    if (std::filesystem::is_directory(file)) {
        error = "cannot read " + name + ": it is a folder";
        return false;
    }
    if (!std::filesystem::is_regular_file(file) ||
        std::filesystem::file_size(path, status) > kMaxDestinationListBytes) {
        error = "cannot read " + name + ": not a file of at most " +
                std::to_string(kMaxDestinationListBytes >> 20) + " MB";
        return false;
    }
    const CsvReadResult read = LoadPointFile(path, destinations);
    if (!read.opened) {
        error = "cannot read " + name + ": " + std::strerror(errno);
        return false;
    }
    if (read.recordsRead == 0) {
        error = name + " has no readable point line (longitude,latitude,name,...)";
        return false;
    }
    return true;
}

}  // namespace

bool PrepareRun(AppState& app, const RunSettings& settings, std::string& error) {
    app.folders.trackLogDir = settings.trackFolder;
    app.alarm.path = ProgramFile("Alarm.wav");
    if (!settings.trackFolder.empty() && !std::filesystem::is_directory(settings.trackFolder)) {
        error = "cannot write track files into " + settings.trackFolder + ": no such folder";
        return false;
    }
    if (settings.destinationsFile.empty()) return true;
    DynamicList<GeoPoint> destinations;
    if (!LoadDestinations(settings.destinationsFile, destinations, error)) return false;
    OpenDestinationList(app.navigation, destinations);
    return true;
}

void RunTimers(AppState& app, Host& host) {
    MainTimerProc(app, host);
    TrackTimerProc(app, host);
}

std::string RunOptionsUsage() {
    return "  --json                    print the state of every tick as one JSON line\n"
           "  --processor N             data processor: 0 raw, 1 averaging, 2 smoothing\n"
           "  --unit N                  unit system: 0 metric, 1 imperial, 2 nautical\n"
           "  --min-speed V             minimum speed, in the unit system's speed unit\n"
           "  --options FILE            start from a settings record; the options here win\n"
           "  --track-format log|gpx|kml  log the track, into the folder of --out\n"
           "  --interval S              seconds between track points (1..3600)\n"
           "  --out DIR                 the folder for the track files\n"
           "  --destinations CSV        a destination list to guide through\n"
           "  --navigation 0|1          Go-To navigation off or on (default 1)\n"
           "  --default-range N         default proximity range, metres or feet by unit system\n"
           "  --always-default-range    use the default range for every destination\n"
           "  --speed-alarm INDEX       speed alarm: -1 off, 0..7 the alarm values of the record\n"
           "  --voice 0|1               speak arrivals with espeak-ng (default 0: alarm sound)\n";
}

PortRun::PortRun(const Clock& clock, SerialDevice& device, const Options& options,
                 RunServices& services, std::ostream& messages)
    : host_(clock, services.Sound(), services.Processes(), services.Speech(), messages) {
    app.options = options;
    app.options.gpsSource = kGpsSourcePort;
    // The tool reads receivers and recordings; it keeps no NMEA log of them.
    app.options.logNmea = 0;
    port.links.device = &device;
    port.links.options = &app.options;
    LinkPortSourceToHost(port, host_);
    port.links.lostGps = [this] {
        StopLostPortGps(port, host_);
        app.gpsRunning = false;
        lost_ = true;
    };
    app.readActiveSource = [this] { return ReadPortSource(port); };
}

PortRun::~PortRun() {
    // The reader thread calls into the host, which goes before the port.
    StopPortSource(port);
}

bool PortRun::Start(const std::string& portName, std::uint32_t baudRate, ReaderDrive drive) {
    port.portName = portName;
    port.baudRate = baudRate;
    if (!OpenPort(port) || !StartReader(port, drive)) return false;
    UpdateGpsState(app);
    app.gpsRunning = true;
    return true;
}

void PortRun::Tick() {
    RunTimers(app, host_);
    ++ticks_;
    if (app.gps.connected && app.gps.fixValid) ++fixes_;
}

bool PortRun::FinishTrack() {
    FlushTrackWriter(app.track);
    ReportTrackFailure(app, host_);
    return app.track.failedPath.empty();
}

NmeaParseStats PortRun::ParseStats() {
    std::lock_guard<std::mutex> guard(port.lock);
    return port.parseStats;
}

namespace {

std::string Count(int number, const char* singular, const char* plural) {
    return std::to_string(number) + ' ' + (number == 1 ? singular : plural);
}

}  // namespace

// Why a run without fixes had none, when the parser saw the reason: the
// receiver talks as another talker, whose sentences the program does not
// read.
std::string NoFixReason(int fixes, const NmeaParseStats& stats) {
    if (fixes > 0 || stats.otherTalkerRmc == 0) return {};
    const std::string talker(stats.otherTalker, 2);
    return ": " +
           Count(stats.otherTalkerRmc, ("$" + talker + "RMC sentence").c_str(),
                 ("$" + talker + "RMC sentences").c_str()) +
           (stats.otherTalkerRmc == 1 ? " was" : " were") +
           " ignored; this program reads GP sentences";
}

std::string RunSummary(int ticks, int fixes, const NmeaParseStats& stats) {
    const std::string zeroBytes =
        stats.zeroBytes > 0 ? ", " + Count(stats.zeroBytes, "zero byte", "zero bytes") : "";
    return Count(ticks, "tick", "ticks") + ", " + Count(fixes, "fix", "fixes") +
           NoFixReason(fixes, stats) + ", " +
           Count(stats.checksumFailures + stats.brokenSentences, "dropped sentence",
                 "dropped sentences") +
           " (" + Count(stats.checksumFailures, "checksum failure", "checksum failures") + ", " +
           std::to_string(stats.brokenSentences) + " broken" + zeroBytes + ")";
}

}  // namespace tolvane::tool
