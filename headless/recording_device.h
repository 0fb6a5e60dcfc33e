#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/file_time.h"
#include "core/gps/nmea_record.h"
#include "core/gps/serial_device.h"

namespace tolvane::headless {

// One second of a recorded NMEA log: its bytes and the UTC time of the RMC
// sentence that began it. The time is dated when that sentence, or one
// before it, carried a real date and time; receivers leave the date out
// until their first fix, and the seconds before it count on from 1601.
struct RecordedSecond {
    std::size_t begin = 0;
    std::size_t end = 0;
    FileTime utc = 0;
    bool dated = false;
};

// Cuts a recording into seconds. A second begins at each line starting with
// "$GPRMC," (or the RMC header of another talker that talkers reads) whose
// time field differs from that of the line that began the current second,
// whatever its checksum; the bytes before the first such line belong to
// the first second. A time that makes no calendar time carries the
// previous second's time one second on.
std::vector<RecordedSecond> SplitIntoSeconds(std::string_view recording,
                                             NmeaTalkers talkers = NmeaTalkers::kGpOnly);

// Cuts a recording into the same seconds while it is read, a piece at a
// time, so that a long recording need not be held whole: each scan goes on
// where the last one stopped and adds the seconds that the text now at hand
// completes. Until the recording's end only whole lines are looked at.
class SecondSplitter {
  public:
    explicit SecondSplitter(NmeaTalkers talkers = NmeaTalkers::kGpOnly) : talkers_(talkers) {}

    // text is the recording from position `at` on, and begins no later than
    // KeepFrom(); `last` when it runs to the recording's end.
    void Scan(std::string_view text, std::size_t at, bool last,
              std::vector<RecordedSecond>& complete);

    // Where the text that later scans need begins: that of the second under
    // way, the first of which begins at the recording's start.
    std::size_t KeepFrom() const { return current_.begin; }

    // The text of the second under way up to position `to` (no further than
    // the text seen so far) has been played already: the second now
    // begins there, and later scans need nothing before it.
    void Played(std::size_t to);

  private:
    // The end of the whole lines of text, looking for a line end only in
    // what the last scan did not see.
    std::size_t WholeLinesEnd(std::string_view text, std::size_t at) const;

    NmeaTalkers talkers_;
    bool started_ = false;
    RecordedSecond current_;   // the second under way; its end is not known yet
    std::string currentTime_;  // the time field of the line that began it
    std::size_t scannedTo_ = 0;
    std::size_t seenTo_ = 0;
};

// A receiver that plays back one second of a recording at a time: reads
// return its bytes until they are used up, then nothing.
class RecordingDevice final : public SerialDevice {
  public:
    void Feed(std::string_view bytes) { pending_ = bytes; }

    bool Open(const std::string& /*name*/) override { return open_ = true; }
    bool IsOpen() const override { return open_; }
    bool Configure(const SerialSettings& /*settings*/) override { return true; }
    bool SetReadTimeouts() override { return true; }
    int Read(char* buffer, int size) override;
    bool IsGone() override { return false; }
    void Close() override { open_ = false; }

  private:
    std::string_view pending_;
    bool open_ = false;
};

}  // namespace tolvane::headless
