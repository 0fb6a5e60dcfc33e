#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "core/base/file_time.h"
#include "core/gps/serial_device.h"

namespace tolvane::tool {

// One second of a recorded NMEA log: its bytes and the UTC time of the RMC
// sentence that began it.
struct RecordedSecond {
    std::size_t begin = 0;
    std::size_t end = 0;
    FileTime utc = 0;
};

// Cuts a recording into seconds. A second begins at each line starting with
// "$GPRMC," whose time field differs from that of the line that began the
// current second, whatever its checksum; the bytes before the first such
// line belong to the first second. A time that makes no calendar time
// carries the previous second's time one second on.
std::vector<RecordedSecond> SplitIntoSeconds(std::string_view recording);

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

}  // namespace tolvane::tool
