#include "headless/replay.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "headless/recording_device.h"

namespace tolvane::headless {
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
          onTick_(onTick),
          trackLogger_(options.trackLoggerEnabled) {
        // A replay can simply be run again, so its track goes through a
        // buffer; the program itself writes every point at once.
        run_.app.track.writer = &trackWriter_;
        run_.app.options.trackLoggerEnabled = 0;
    }

    // Prepares the run for its settings; false with error set when it
    // cannot be.
    bool Prepare(const RunSettings& settings, std::string& error) {
        return PrepareRun(run_.app, settings, error);
    }

    // Plays one second; false, playing nothing, once the source was lost.
    bool Play(std::string_view bytes, const RecordedSecond& second) {
        StartOnce(second.utc);
        if (run_.Lost()) return false;
        clock_.now = second.utc;
        // The track's name comes from the clock when its file starts, and
        // a clock still counting from 1601 would name it so.
        if (second.dated) run_.app.options.trackLoggerEnabled = trackLogger_;
        Read(bytes);
        run_.FireWatchdog();
        if (IsPortOpen(run_.port)) ReaderPass(run_.port);
        run_.Tick();
        return !onTick_ || onTick_(run_.app, second.utc);
    }

    // Plays the first part of a second that has not ended yet: the reader
    // reads it, and the tick waits for the end of the second. A run that
    // has not started yet starts here, before the recording has given any
    // time.
    void PlayPart(std::string_view bytes) {
        StartOnce(clock_.now);
        if (!run_.Lost()) Read(bytes);
    }

    // The totals once the recording has ended; a recording without seconds
    // only starts the run.
    ReplayTotals Finish() {
        StartOnce(0);
        const bool trackWritten = run_.FinishTrack();
        return {run_.Ticks(), run_.Fixes(), WithHeldBackSentence(run_.ParseStats()), trackWritten};
    }

  private:
    // The parser hands back a sentence of another talker that stands last,
    // to pass it over once more text follows. The recording has ended, so
    // a '$' behind a copy of the text held back lets it be counted.
    NmeaParseStats WithHeldBackSentence(NmeaParseStats stats) {
        const std::string held = std::string(run_.port.buffer) + "$";
        NmeaRecord scratch{};
        GsvPaging paging;
        NmeaParseStats heldStats;
        ParseNmeaBuffer(scratch, paging, held.c_str(), &heldStats, run_.port.talkers.load());
        stats.otherTalkerRmc += heldStats.otherTalkerRmc;
        if (heldStats.otherTalkerRmc > 0) std::memcpy(stats.otherTalker, heldStats.otherTalker, 2);
        return stats;
    }

    void Read(std::string_view bytes) {
        device_.Feed(bytes);
        while (ReaderPass(run_.port) > 0) {
        }
    }

    void StartOnce(FileTime utc) {
        if (started_) return;
        started_ = true;
        clock_.now = utc;
        run_.Start("recording", baudRate_, ReaderDrive::kCaller);
    }

    RecordingClock clock_;
    RecordingDevice device_;
    RunServices services_;
    BufferedTrackWriter trackWriter_;
    PortRun run_;
    std::uint32_t baudRate_;
    const TickObserver& onTick_;
    std::int32_t trackLogger_;
    bool started_ = false;
};

// A recording read piece by piece: the text from the start of the second
// under way on, cut into seconds as it grows. The pieces are read straight
// onto its end: the recording may be tens of megabytes, and copying it once
// more showed in the replay's time.
class RecordingWindow {
  public:
    explicit RecordingWindow(NmeaTalkers talkers) : splitter_(talkers) {}

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
            if (!player.Play(text.substr(second.begin - at_, second.end - second.begin), second)) {
                return false;
            }
        }
        complete_.clear();
        Drop(splitter_.KeepFrom() - at_);
        if (!last && length_ > kMaxHeldBytes) PlayHeldPart(player);
        return true;
    }

  private:
    // No second a receiver sends comes near this. A second that grows past
    // it is a recording without RMC lines of this program's talker, binary
    // data or one endless line, and would otherwise be held whole.
    static constexpr std::size_t kMaxHeldBytes = 1 << 20;

    // Plays the second under way so far, up to its last line end (all of it
    // when it has none), and lets it go, so that memory stays bounded
    // whatever the recording holds.
    void PlayHeldPart(RecordingPlayer& player) {
        const std::string_view held(text_.get(), length_);
        const std::size_t lineEnd = held.rfind('\n');
        const std::size_t part = lineEnd == std::string_view::npos ? length_ : lineEnd + 1;
        player.PlayPart(held.substr(0, part));
        splitter_.Played(at_ + part);
        Drop(part);
    }

    void Drop(std::size_t done) {
        if (done > 0) std::memmove(text_.get(), text_.get() + done, length_ - done);
        length_ -= done;
        at_ += done;
    }

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
    for (const RecordedSecond& second :
         SplitIntoSeconds(recording, TalkersFor(settings.multiGnss))) {
        if (!player.Play(recording.substr(second.begin, second.end - second.begin), second)) {
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
    RecordingWindow window(TalkersFor(settings.multiGnss));
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

}  // namespace tolvane::headless
