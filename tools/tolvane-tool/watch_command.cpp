#include <chrono>
#include <ostream>
#include <thread>

#include "core/base/string_manager.h"
#include "platform/program_location.h"
#include "platform/serial_device.h"
#include "tools/tolvane-tool/run_options.h"
#include "tools/tolvane-tool/tick_json.h"
#include "tools/tolvane-tool/watch_gid.h"

namespace tolvane::tool {
namespace {

struct WatchArguments {
    headless::RunSettings settings;
    std::string source;
    std::string port;
    std::string home;
    long long baudRate = 0;
    long long seconds = -1;  // until the receiver is lost
};

// Reads the watch's own arguments and the shared run options; returns
// what is wrong with them, empty when nothing is.
std::string ParseWatchArguments(const Arguments& arguments, WatchArguments& watch) {
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        std::string error;
        if (ParseRunOption(arguments, index, watch.settings, error)) {
            if (!error.empty()) return error;
            continue;
        }
        const std::string& name = arguments[index];
        if (index + 1 >= arguments.size()) return "unexpected argument '" + name + "'";
        const std::string& value = arguments[++index];
        if (name == "--source") {
            watch.source = value;
        } else if (name == "--port") {
            watch.port = value;
        } else if (name == "--home") {
            watch.home = value;
        } else if (name == "--baud") {
            if (!ParseInteger(value, watch.baudRate) || watch.baudRate <= 0) {
                return "--baud needs a baud rate, not '" + value + "'";
            }
        } else if (name == "--seconds") {
            if (!ParseInteger(value, watch.seconds) || watch.seconds < 0) {
                return "--seconds needs a number of seconds, not '" + value + "'";
            }
        } else {
            return "unexpected argument '" + name + "'";
        }
    }
    if (watch.source == "gid") {
        if (!watch.port.empty() || watch.baudRate != 0)
            return "--port and --baud are for --source port";
        return {};
    }
    if (watch.source != "port") return "--source needs port or gid";
    if (watch.port.empty()) return "--port NAME|PATH is needed";
    if (watch.baudRate == 0) return "--baud N is needed";
    return CheckRunSettings(watch.settings);
}

}  // namespace

int RunWatchCommand(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    WatchArguments watch;
    std::string error = ParseWatchArguments(arguments, watch);
    if (!error.empty()) {
        err << "tolvane-tool: watch: " << error << "\n\n" << UsageText();
        return kExitUsage;
    }
    Options options;
    if (!headless::MakeRunOptions(watch.settings, options, error)) {
        err << "tolvane-tool: watch: " << error << '\n';
        return kExitFailure;
    }
    if (watch.source == "gid") {
        return RunGidWatch({options, watch.settings, watch.seconds, watch.home}, out, err);
    }

    // Port names resolve through the program folder, and the messages of
    // a lost receiver come from its language file.
    platform::InstallProgramPaths(watch.home);
    CStringManager::GetInstance().Load(kLanguageEnglish, kSubLanguageEnglishUs);

    const SystemClock clock;
    platform::TermiosSerialDevice device;
    headless::RunServices services(watch.settings.voice);
    headless::PortRun run(clock, device, options, services, err);
    if (!headless::PrepareRun(run.app, watch.settings, error)) {
        err << "tolvane-tool: watch: " << error << '\n';
        return kExitFailure;
    }
    if (!run.Start(watch.port, static_cast<std::uint32_t>(watch.baudRate), ReaderDrive::kThread)) {
        err << "tolvane-tool: watch: cannot use the port " << watch.port << " ("
            << platform::ResolvePortPath(watch.port) << "): " << PortErrorText(run.port) << '\n';
        return kExitFailure;
    }
    const auto start = std::chrono::steady_clock::now();
    for (long long tick = 1; watch.seconds < 0 || tick <= watch.seconds; ++tick) {
        std::this_thread::sleep_until(start + std::chrono::seconds(tick));
        run.FireWatchdog();
        if (run.Lost()) break;
        run.Tick();
        if (watch.settings.json) out << TickJson(run.app) << std::endl;
    }
    if (!watch.settings.json) {
        out << watch.port << ": "
            << headless::RunSummary(run.Ticks(), run.Fixes(), run.ParseStats()) << '\n';
    }
    const bool trackWritten = run.FinishTrack();
    return run.Lost() || !trackWritten ? kExitFailure : kExitOk;
}

}  // namespace tolvane::tool
