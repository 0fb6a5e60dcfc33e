#include "tools/replay/port_run.h"

#include <filesystem>
#include <sstream>

#include "core/app/gps_commands.h"
#include "core/app/main_timer.h"
#include "core/base/program_paths.h"
#include "core/data/geo_point_file.h"

namespace tolvane::tool {

bool MakeRunOptions(const RunSettings& settings, Options& options, std::string& error) {
    ResetOptions(options);
    if (!settings.optionsFile.empty() && !LoadOptions(settings.optionsFile, options, 1)) {
        error = "cannot read the settings record " + settings.optionsFile;
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

bool PrepareRun(AppState& app, const RunSettings& settings, std::string& error) {
    app.folders.trackLogDir = settings.trackFolder;
    app.alarm.path = ProgramFile("Alarm.wav");
    if (!settings.trackFolder.empty() && !std::filesystem::is_directory(settings.trackFolder)) {
        error = "cannot write track files into " + settings.trackFolder + ": no such folder";
        return false;
    }
    if (settings.destinationsFile.empty()) return true;
    DynamicList<GeoPoint> destinations;
    if (!LoadPointFile(settings.destinationsFile, destinations).opened) {
        error = "cannot read the destination list " + settings.destinationsFile;
        return false;
    }
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

NmeaParseStats PortRun::ParseStats() {
    std::lock_guard<std::mutex> guard(port.lock);
    return port.parseStats;
}

namespace {

std::string Count(int number, const char* singular, const char* plural) {
    return std::to_string(number) + ' ' + (number == 1 ? singular : plural);
}

}  // namespace

std::string RunSummary(int ticks, int fixes, const NmeaParseStats& stats) {
    return Count(ticks, "tick", "ticks") + ", " + Count(fixes, "fix", "fixes") + ", " +
           Count(stats.checksumFailures + stats.brokenSentences, "dropped sentence",
                 "dropped sentences") +
           " (" + Count(stats.checksumFailures, "checksum failure", "checksum failures") + ", " +
           std::to_string(stats.brokenSentences) + " broken)";
}

}  // namespace tolvane::tool
