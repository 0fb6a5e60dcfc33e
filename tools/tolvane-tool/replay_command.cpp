#include <ostream>
#include <string>
#include <vector>

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

// Plays the seconds of a recording through the port source, one tick each,
// as they come. The run starts with the first second, at its time.
class RecordingPlayer {
  public:
    RecordingPlayer(const Options& options, std::ostream& messages,
                    const std::function<void(const GpsState&)>& onTick)
        : run_(clock_, device_, options, messages),
          baudRate_(BaudRateForIndex(options.baudIndex)),
          onTick_(onTick) {}

    // Plays one second; false, playing nothing, once the source was lost.
    bool Play(std::string_view bytes, FileTime utc) {
        StartOnce(utc);
        if (run_.Lost()) return false;
        clock_.now = utc;
        device_.Feed(bytes);
        while (ReaderPass(run_.port) > 0) {
        }
        run_.FireWatchdog();
        if (IsPortOpen(run_.port)) ReaderPass(run_.port);
        run_.Tick();
        if (onTick_) onTick_(run_.app.gps);
        return true;
    }

    // The totals once the recording has ended; a recording without seconds
    // only starts the run.
    ReplayTotals Finish() {
        StartOnce(0);
        return {run_.Ticks(), run_.Fixes(), run_.ParseStats()};
    }

  private:
    void StartOnce(FileTime utc) {
        if (started_) return;
        started_ = true;
        clock_.now = utc;
        run_.Start("recording", baudRate_, ReaderDrive::kCaller);
    }

    RecordingClock clock_;
    RecordingDevice device_;
    PortRun run_;
    std::uint32_t baudRate_;
    const std::function<void(const GpsState&)>& onTick_;
    bool started_ = false;
};

// A recording read piece by piece: the text from the start of the second
// under way on, cut into seconds as it grows.
class RecordingWindow {
  public:
    // Adds a piece (the last when last) and plays the seconds it completes;
    // false once the player stops.
    bool Add(std::string_view piece, bool last, RecordingPlayer& player) {
        text_.append(piece);
        splitter_.Scan(text_, at_, last, complete_);
        for (const RecordedSecond& second : complete_) {
            const std::string_view bytes =
                std::string_view(text_).substr(second.begin - at_, second.end - second.begin);
            if (!player.Play(bytes, second.utc)) return false;
        }
        complete_.clear();
        const std::size_t done = splitter_.KeepFrom() - at_;
        text_.erase(0, done);
        at_ += done;
        return true;
    }

  private:
    SecondSplitter splitter_;
    std::string text_;
    std::size_t at_ = 0;  // where text_ begins in the recording
    std::vector<RecordedSecond> complete_;
};

}  // namespace

ReplayTotals ReplayRecording(std::string_view recording, const Options& options,
                             std::ostream& messages,
                             const std::function<void(const GpsState&)>& onTick) {
    RecordingPlayer player(options, messages, onTick);
    for (const RecordedSecond& second : SplitIntoSeconds(recording)) {
        if (!player.Play(recording.substr(second.begin, second.end - second.begin), second.utc)) {
            break;
        }
    }
    return player.Finish();
}

bool ReplayRecordingFile(const std::string& path, const Options& options, std::ostream& messages,
                         const std::function<void(const GpsState&)>& onTick, ReplayTotals& totals) {
    RecordingPlayer player(options, messages, onTick);
    RecordingWindow window;
    bool playing = true;
    const auto take = [&](std::string_view piece) {
        playing = window.Add(piece, false, player);
        return playing;
    };
    if (!ReadFileInPieces(path, take, messages)) return false;
    if (playing) window.Add({}, true, player);
    totals = player.Finish();
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
    if (!error.empty()) {
        err << "tolvane-tool: replay: " << error << "\n\n" << UsageText();
        return kExitUsage;
    }
    Options options;
    if (!MakeRunOptions(settings, options, error)) {
        err << "tolvane-tool: replay: " << error << '\n';
        return kExitFailure;
    }
    const auto printTick = [&out](const GpsState& state) { out << TickJson(state) << '\n'; };
    ReplayTotals totals;
    if (!ReplayRecordingFile(
            logPath, options, err,
            settings.json ? std::function<void(const GpsState&)>(printTick) : nullptr, totals)) {
        return kExitFailure;
    }
    if (!settings.json) {
        out << logPath << ": " << RunSummary(totals.ticks, totals.fixes, totals.parse) << '\n';
    }
    return kExitOk;
}

}  // namespace tolvane::tool
