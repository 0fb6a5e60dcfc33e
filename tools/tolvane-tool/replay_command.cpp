#include <ostream>

#include "tools/tolvane-tool/port_run.h"
#include "tools/tolvane-tool/recording_device.h"
#include "tools/tolvane-tool/replay.h"
#include "tools/tolvane-tool/tick_json.h"

namespace tolvane::tool {
namespace {

// The clock of a replay: the receiver's time of the second being played.
class RecordingClock final : public Clock {
  public:
    FileTime NowUtc() const override { return now; }
    FileTime now = 0;
};

}  // namespace

ReplayTotals ReplayRecording(std::string_view recording, const Options& options,
                             std::ostream& messages,
                             const std::function<void(const GpsState&)>& onTick) {
    RecordingClock clock;
    RecordingDevice device;
    const std::vector<RecordedSecond> seconds = SplitIntoSeconds(recording);
    if (!seconds.empty()) clock.now = seconds.front().utc;

    PortRun run(clock, device, options, messages);
    run.Start("recording", BaudRateForIndex(options.baudIndex), ReaderDrive::kCaller);
    for (const RecordedSecond& second : seconds) {
        if (run.Lost()) break;
        clock.now = second.utc;
        device.Feed(recording.substr(second.begin, second.end - second.begin));
        while (ReaderPass(run.port) > 0) {
        }
        run.FireWatchdog();
        if (IsPortOpen(run.port)) ReaderPass(run.port);
        run.Tick();
        if (onTick) onTick(run.app.gps);
    }
    return {run.Ticks(), run.Fixes(), run.ParseStats()};
}

int RunReplayCommand(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    RunSettings settings;
    ResetOptions(settings.options);
    std::string logPath;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        int exitCode = kExitOk;
        std::string error;
        if (ParseRunOption(arguments, index, settings, exitCode, error)) {
            if (exitCode == kExitOk) continue;
            err << "tolvane-tool: replay: " << error << '\n';
            if (exitCode == kExitUsage) err << '\n' << UsageText();
            return exitCode;
        }
        if (!logPath.empty() || arguments[index].starts_with("--")) {
            err << "tolvane-tool: replay: unexpected argument '" << arguments[index] << "'\n\n"
                << UsageText();
            return kExitUsage;
        }
        logPath = arguments[index];
    }
    if (logPath.empty()) {
        err << "tolvane-tool: replay needs the NMEA log to play\n\n" << UsageText();
        return kExitUsage;
    }
    std::string recording, error;
    if (!ReadTextFile(logPath, recording, error)) {
        err << "tolvane-tool: " << error << '\n';
        return kExitFailure;
    }
    const auto printTick = [&out](const GpsState& state) { out << TickJson(state) << '\n'; };
    const ReplayTotals totals = ReplayRecording(
        recording, settings.options, err,
        settings.json ? std::function<void(const GpsState&)>(printTick) : nullptr);
    if (!settings.json) out << logPath << ": " << RunSummary(totals.ticks, totals.fixes, totals.parse) << '\n';
    return kExitOk;
}

}  // namespace tolvane::tool
