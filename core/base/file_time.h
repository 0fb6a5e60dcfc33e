#pragma once

#include <cstdint>
#include <optional>

namespace tolvane {

// Times are kept as file times: a count of 100 ns intervals since
// 1601-01-01 00:00:00, the same unit in UTC and in local time.
using FileTime = std::int64_t;

inline constexpr FileTime kFileTimeTicksPerSecond = 10'000'000;

// A broken-down date and time, as the receiver and the file names use it.
struct CivilTime {
    int year = 1601;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int millisecond = 0;
};

// Fails (nullopt) for a date or time outside the calendar, such as month 13
// or hour 32, which some receivers send after a fault.
std::optional<FileTime> CivilToFileTime(const CivilTime& civil);
CivilTime FileTimeToCivil(FileTime time);

// Converts between UTC and the local time of the system time zone.
FileTime UtcToLocal(FileTime utc);

// The source of the current time; a replay drives its own.
class Clock {
  public:
    virtual ~Clock() = default;
    virtual FileTime NowUtc() const = 0;
};

class SystemClock final : public Clock {
  public:
    FileTime NowUtc() const override;
};

}  // namespace tolvane
