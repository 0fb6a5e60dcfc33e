#include "tools/replay/replay.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "tools/replay/recording_device.h"

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
    RecordingPlayer(const RunSettings& settings, const Options& options, std::ostream& messages,
                    const TickObserver& onTick)
        : services_(settings.voice),
          run_(clock_, device_, options, services_, messages),
          baudRate_(BaudRateForIndex(options.baudIndex)),
          onTick_(onTick) {}

    // Prepares the run for its settings; false with error set when it
    // cannot be.
    bool Prepare(const RunSettings& settings, std::string& error) {
        return PrepareRun(run_.app, settings, error);
    }

    // Plays one second; false, playing nothing, once the source was lost,
    // and false once the observer asks to end the replay.
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
        return !onTick_ || onTick_(run_.app, utc);
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
    RunServices services_;
    PortRun run_;
    std::uint32_t baudRate_;
    const TickObserver& onTick_;
    bool started_ = false;
};

// A recording read piece by piece: the text from the start of the second
// under way on, cut into seconds as it grows. The pieces are read straight
// onto its end: the recording may be tens of megabytes, and copying it once
// more showed in the replay's time.
class RecordingWindow {
  public:
    // Reads the next piece from in; false once in has no more.
    bool Read(std::istream& in) {
        constexpr std::size_t kPieceSize = 1 << 16;
        MakeRoom(kPieceSize);
        in.read(text_.get() + length_, static_cast<std::streamsize>(kPieceSize));
        length_ += static_cast<std::size_t>(in.gcount());
        return in.gcount() > 0;
    }

    // Plays the seconds the text completes (all that are left when last);
    // false once the player stops.
    bool Play(bool last, RecordingPlayer& player) {
        const std::string_view text(text_.get(), length_);
        splitter_.Scan(text, at_, last, complete_);
        for (const RecordedSecond& second : complete_) {
            if (!player.Play(text.substr(second.begin - at_, second.end - second.begin),
                             second.utc)) {
                return false;
            }
        }
        complete_.clear();
        const std::size_t done = splitter_.KeepFrom() - at_;
        if (done > 0) std::memmove(text_.get(), text_.get() + done, length_ - done);
        length_ -= done;
        at_ += done;
        return true;
    }

  private:
    void MakeRoom(std::size_t room) {
        if (capacity_ - length_ >= room) return;
        const std::size_t capacity = std::max(2 * capacity_, length_ + room);
        std::unique_ptr<char[]> grown(new char[capacity]);
        if (length_ > 0) std::memcpy(grown.get(), text_.get(), length_);
        text_ = std::move(grown);
        capacity_ = capacity;
    }

    SecondSplitter splitter_;
    std::unique_ptr<char[]> text_;
    std::size_t capacity_ = 0;
    std::size_t length_ = 0;
    std::size_t at_ = 0;  // where text_ begins in the recording
    std::vector<RecordedSecond> complete_;
};

// Tells messages that the recording could not be read and why.
bool ReportUnreadable(const std::string& path, std::ostream& messages) {
    messages << "cannot read " << path << ": " << std::strerror(errno) << '\n';
    return false;
}

}  // namespace

bool ReplayRecording(std::string_view recording, const RunSettings& settings,
                     const Options& options, std::ostream& messages, const TickObserver& onTick,
                     ReplayTotals& totals, std::string& error) {
    RecordingPlayer player(settings, options, messages, onTick);
    if (!player.Prepare(settings, error)) return false;
    for (const RecordedSecond& second : SplitIntoSeconds(recording)) {
        if (!player.Play(recording.substr(second.begin, second.end - second.begin), second.utc)) {
            break;
        }
    }
    totals = player.Finish();
    return true;
}

bool ReplayRecordingFile(const std::string& path, const RunSettings& settings,
                         const Options& options, std::ostream& messages, const TickObserver& onTick,
                         ReplayTotals& totals, std::string& error) {
    // A file that cannot be read is told before the run is prepared.
    std::ifstream in(path, std::ios::binary);
    if (!in) return ReportUnreadable(path, messages);
    RecordingWindow window;
    bool more = window.Read(in);
    if (in.bad()) return ReportUnreadable(path, messages);
    RecordingPlayer player(settings, options, messages, onTick);
    if (!player.Prepare(settings, error)) return false;
    bool playing = true;
    while (playing && more) {
        playing = window.Play(false, player);
        more = playing && window.Read(in);
    }
    if (in.bad()) return ReportUnreadable(path, messages);
    if (playing) window.Play(true, player);
    totals = player.Finish();
    return true;
}

}  // namespace tolvane::tool
