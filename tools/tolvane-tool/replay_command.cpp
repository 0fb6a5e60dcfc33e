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

bool ReplayRecording(std::string_view recording, const RunSettings& settings,
                     const Options& options, std::ostream& messages,
                     const std::function<void(AppState&)>& onTick, ReplayTotals& totals,
                     std::string& error) {
    RecordingClock clock;
    RecordingDevice device;
    const std::vector<RecordedSecond> seconds = SplitIntoSeconds(recording);
    if (!seconds.empty()) clock.now = seconds.front().utc;

    RunServices services(settings.voice);
    PortRun run(clock, device, options, services, messages);
    if (!PrepareRun(run.app, settings, error)) return false;
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
        if (onTick) onTick(run.app);
    }
    totals = {run.Ticks(), run.Fixes(), run.ParseStats()};
    return true;
}

int RunReplayCommand(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    RunSettings settings;
    std::string logPath, error;
    for (std::size_t index = 0; index < arguments.size() && error.empty(); ++index) {
        if (ParseRunOption(arguments, index, settings, error)) continue;
        if (!logPath.empty() || arguments[index].starts_with("--")) {
            error = "unexpected argument '" + arguments[index] + "'";
        } else {
            logPath = arguments[index];
        }
    }
    if (error.empty() && logPath.empty()) error = "the NMEA log to play is missing";
    if (error.empty()) error = CheckRunSettings(settings);
    if (!error.empty()) {
        err << "tolvane-tool: replay: " << error << "\n\n" << UsageText();
        return kExitUsage;
    }
    Options options;
    std::string recording;
    if (!MakeRunOptions(settings, options, error)) {
        err << "tolvane-tool: replay: " << error << '\n';
        return kExitFailure;
    }
    if (!ReadTextFile(logPath, recording, err)) return kExitFailure;
    const auto printTick = [&out](AppState& app) { out << TickJson(app) << '\n'; };
    ReplayTotals totals;
    if (!ReplayRecording(recording, settings, options, err,
                         settings.json ? std::function<void(AppState&)>(printTick) : nullptr,
                         totals, error)) {
        err << "tolvane-tool: replay: " << error << '\n';
        return kExitFailure;
    }
    if (!settings.json) {
        out << logPath << ": " << RunSummary(totals.ticks, totals.fixes, totals.parse) << '\n';
    }
    return kExitOk;
}

}  // namespace tolvane::tool
