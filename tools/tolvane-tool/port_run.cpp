#include "tools/tolvane-tool/port_run.h"

#include <charconv>
#include <sstream>

#include "core/app/gps_commands.h"
#include "core/app/main_timer.h"

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

bool ParseRunOption(const Arguments& arguments, std::size_t& index, RunSettings& settings,
                    std::string& error) {
    const std::string& name = arguments[index];
    if (name == "--json") {
        settings.json = true;
        return true;
    }
    if (name != "--processor" && name != "--unit" && name != "--min-speed" && name != "--options") {
        return false;
    }
    std::string value;
    long long integer = 0;
    double number = 0;
    if (!ValueOf(arguments, index, value)) {
        error = name + " needs a value";
    } else if (name == "--options") {
        settings.optionsFile = value;
    } else if (name == "--min-speed") {
        if (ParseNumber(value, number) && number >= 0) {
            settings.minimumSpeed = number;
        } else {
            error = "--min-speed needs a speed of 0 or more, not '" + value + "'";
        }
    } else if (ParseInteger(value, integer) && integer >= 0 && integer <= 9) {
        (name == "--processor" ? settings.dataProcessor : settings.unitSystem) =
            static_cast<std::int32_t>(integer);
    } else {
        error = name + " needs a small whole number, not '" + value + "'";
    }
    return true;
}

bool MakeRunOptions(const RunSettings& settings, Options& options, std::string& error) {
    ResetOptions(options);
    if (!settings.optionsFile.empty() && !LoadOptions(settings.optionsFile, options, 1)) {
        error = "cannot read the settings record " + settings.optionsFile;
        return false;
    }
    options.dataProcessor = settings.dataProcessor.value_or(options.dataProcessor);
    options.unitSystem = settings.unitSystem.value_or(options.unitSystem);
    options.minimumSpeed = settings.minimumSpeed.value_or(options.minimumSpeed);
    return true;
}

PortRun::PortRun(const Clock& clock, SerialDevice& device, const Options& options,
                 std::ostream& messages)
    : host_(clock, quiet_, quiet_, quiet_, messages) {
    app.options = options;
    app.options.gpsSource = kGpsSourcePort;
    // The tool reads receivers and recordings; it keeps no NMEA log of them.
    app.options.logNmea = 0;
    port.links.device = &device;
    port.links.options = &app.options;
    LinkPortSourceToHost(port, host_);
    port.links.lostGps = [this] {
        StopLostPortGps(port, host_);
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
    return true;
}

void PortRun::Tick() {
    MainTimerProc(app, host_);
    ++ticks_;
    if (app.gps.connected && app.gps.fixValid) ++fixes_;
}

NmeaParseStats PortRun::ParseStats() {
    std::lock_guard<std::mutex> guard(port.lock);
    return port.parseStats;
}

std::string RunSummary(int ticks, int fixes, const NmeaParseStats& stats) {
    std::ostringstream text;
    text << ticks << " ticks, " << fixes << " fixes, "
         << stats.checksumFailures + stats.brokenSentences << " dropped sentences ("
         << stats.checksumFailures << " checksum failures, " << stats.brokenSentences << " broken)";
    return text.str();
}

}  // namespace tolvane::tool
