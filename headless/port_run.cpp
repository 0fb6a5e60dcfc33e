#include "headless/port_run.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <sstream>

#include "core/app/gps_commands.h"
#include "core/app/main_timer.h"
#include "core/base/program_paths.h"
#include "core/data/geo_point_file.h"

namespace tolvane::headless {

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
    app.multiGnss = settings.multiGnss;
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

PortRun::PortRun(const Clock& clock, SerialDevice& device, const Options& options,
                 RunServices& services, std::ostream& messages)
    : host_(clock, services.Sound(), services.Processes(), services.Speech(), messages) {
    app.options = options;
    app.options.gpsSource = kGpsSourcePort;
    // The tool reads receivers and recordings; it keeps no NMEA log of them.
    app.options.logNmea = 0;
    port.links.device = &device;
    port.links.logNmeaSetting = &app.options.logNmea;
    LinkPortSourceToHost(port, host_);
    port.links.lostGps = [this] {
        StopLostPortGps(port, host_);
        app.gpsRunning = false;
        lost_ = true;
    };
}

PortRun::~PortRun() {
    // The reader thread calls into the host, which goes before the port.
    StopPortSource(port);
}

bool PortRun::Start(const std::string& portName, std::uint32_t baudRate, ReaderDrive drive) {
    port.portName = portName;
    port.baudRate = baudRate;
    return StartGpsFromPort(app, port, drive) == PortStart::kStarted;
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
           " ignored; this program reads GP sentences (--multi-gnss reads the others too)";
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

}  // namespace tolvane::headless
