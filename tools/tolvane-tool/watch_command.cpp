#include <chrono>
#include <ostream>
#include <thread>

#include "core/base/string_manager.h"
#include "platform/program_location.h"
#include "platform/serial_device.h"
#include "tools/tolvane-tool/port_run.h"
#include "tools/tolvane-tool/tick_json.h"

namespace tolvane::tool {
namespace {

struct WatchArguments {
    RunSettings settings;
    std::string source;
    std::string port;
    std::string home;
    long long baudRate = 0;
    long long seconds = -1;  // until the receiver is lost
};

int UsageError(std::ostream& err, const std::string& message) {
    err << "tolvane-tool: watch: " << message << "\n\n" << UsageText();
    return kExitUsage;
}

// Parses the watch's own arguments and the shared run options; returns
// kExitOk or the exit code of the error it reported.
int ParseWatchArguments(const Arguments& arguments, WatchArguments& watch, std::ostream& err) {
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        int exitCode = kExitOk;
        std::string error;
        if (ParseRunOption(arguments, index, watch.settings, exitCode, error)) {
            if (exitCode == kExitUsage) return UsageError(err, error);
            if (exitCode != kExitOk) err << "tolvane-tool: watch: " << error << '\n';
            if (exitCode != kExitOk) return exitCode;
            continue;
        }
        const std::string& name = arguments[index];
        if (index + 1 >= arguments.size()) return UsageError(err, "unexpected argument '" + name + "'");
        const std::string& value = arguments[++index];
        if (name == "--source") {
            watch.source = value;
        } else if (name == "--port") {
            watch.port = value;
        } else if (name == "--home") {
            watch.home = value;
        } else if (name == "--baud") {
            if (!ParseInteger(value, watch.baudRate) || watch.baudRate <= 0) {
                return UsageError(err, "--baud needs a baud rate, not '" + value + "'");
            }
        } else if (name == "--seconds") {
            if (!ParseInteger(value, watch.seconds) || watch.seconds < 0) {
                return UsageError(err, "--seconds needs a number of seconds, not '" + value + "'");
            }
        } else {
            return UsageError(err, "unexpected argument '" + name + "'");
        }
    }
    if (watch.source != "port") return UsageError(err, "--source port is the only source");
    if (watch.port.empty()) return UsageError(err, "--port NAME|PATH is needed");
    if (watch.baudRate == 0) return UsageError(err, "--baud N is needed");
    return kExitOk;
}

}  // namespace

int RunWatchCommand(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    WatchArguments watch;
    ResetOptions(watch.settings.options);
    if (const int code = ParseWatchArguments(arguments, watch, err); code != kExitOk) return code;

    // Port names resolve through the program folder, and the messages of
    // a lost receiver come from its language file.
    platform::InstallProgramPaths(watch.home);
    CStringManager::GetInstance().Load(kLanguageEnglish, kSubLanguageEnglishUs);

    const SystemClock clock;
    platform::TermiosSerialDevice device;
    PortRun run(clock, device, watch.settings.options, err);
    if (!run.Start(watch.port, static_cast<std::uint32_t>(watch.baudRate), ReaderDrive::kThread)) {
        err << "tolvane-tool: watch: cannot use the port " << watch.port << " ("
            << platform::ResolvePortPath(watch.port) << "): " << run.port.lastErrorCode << '\n';
        return kExitFailure;
    }
    const auto start = std::chrono::steady_clock::now();
    for (long long tick = 1; watch.seconds < 0 || tick <= watch.seconds; ++tick) {
        std::this_thread::sleep_until(start + std::chrono::seconds(tick));
        run.FireWatchdog();
        if (run.Lost()) break;
        run.Tick();
        if (watch.settings.json) out << TickJson(run.app.gps) << std::endl;
    }
    if (!watch.settings.json) {
        out << watch.port << ": " << RunSummary(run.Ticks(), run.Fixes(), run.ParseStats()) << '\n';
    }
    return run.Lost() ? kExitFailure : kExitOk;
}

}  // namespace tolvane::tool
