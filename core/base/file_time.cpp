#include "core/base/file_time.h"

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <mutex>
#include <string>

namespace tolvane {
namespace {

// Seconds between 1601-01-01 and the Unix epoch 1970-01-01.
constexpr std::int64_t kEpochDifferenceSeconds = 11'644'473'600;
constexpr FileTime kTicksPerMillisecond = 10'000;

bool IsLeapYear(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int DaysInMonth(int year, int month) {
    static constexpr int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

// Days from 1970-01-01 to the given date (proleptic Gregorian calendar).
std::int64_t DaysFromCivil(std::int64_t year, unsigned month, unsigned day) {
    year -= month <= 2 ? 1 : 0;
    const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
    const unsigned yearOfEra = static_cast<unsigned>(year - era * 400);
    const unsigned dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const unsigned dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + static_cast<std::int64_t>(dayOfEra) - 719468;
}

std::int64_t FloorDiv(std::int64_t a, std::int64_t b) {
    return a / b - ((a % b != 0) && ((a < 0) != (b < 0)));
}

// Time zones are whole quarter hours off UTC and change their offset at a
// whole local hour, nearly always, so the offset mostly holds for each
// quarter hour of UTC.
constexpr std::int64_t kSteadyOffsetSeconds = 15 * 60;

std::mutex& TimeZoneMutex() {
    static std::mutex mutex;
    return mutex;
}

// Local time minus UTC, in seconds, at the given Unix time; nullopt when the
// local time cannot be had or is no file time. A leap second reads as the
// second before it. The caller holds TimeZoneMutex: std::localtime shares
// one static result between callers.
std::optional<std::int64_t> LocalOffset(std::int64_t unixSeconds) {
    const std::time_t time = static_cast<std::time_t>(unixSeconds);
    const std::tm* local = std::localtime(&time);
    if (local == nullptr) return std::nullopt;
    CivilTime c;
    c.year = local->tm_year + 1900;
    c.month = local->tm_mon + 1;
    c.day = local->tm_mday;
    c.hour = local->tm_hour;
    c.minute = local->tm_min;
    c.second = local->tm_sec > 59 ? 59 : local->tm_sec;
    const std::optional<FileTime> localTime = CivilToFileTime(c);
    if (!localTime) return std::nullopt;
    return *localTime / kFileTimeTicksPerSecond - kEpochDifferenceSeconds - unixSeconds;
}

// The local offsets of the quarter hours last asked for. The C library looks
// the time zone up again on every conversion (without TZ it even checks the
// zone file on disk), and a replay converts every fix, so the offsets are
// kept while the zone stays the same: the TZ variable, which is what the
// library itself compares. A replay of several recordings, or of one that
// spans days, goes back and forth between a few quarter hours, so a few are
// kept. A quarter hour whose two ends differ holds a change that does not
// fall on its start, such as a change at one minute past midnight or one of
// the odd offsets of the past: each second of it is converted on its own.
class LocalOffsetCache {
  public:
    std::optional<std::int64_t> Offset(std::int64_t unixSeconds) {
        const char* zone = std::getenv("TZ");
        if (!IsZone(zone)) ChangeZone(zone);
        const Quarter& quarter = Find(FloorDiv(unixSeconds, kSteadyOffsetSeconds));
        return quarter.steady ? quarter.offset : LocalOffset(unixSeconds);
    }

  private:
    static constexpr int kKeptQuarters = 16;

    struct Quarter {
        bool filled = false;
        std::int64_t index = 0;  // quarter hours since the Unix epoch
        std::optional<std::int64_t> offset;
        bool steady = false;
    };

    bool IsZone(const char* zone) const {
        return (zone != nullptr) == zoneSet_ && (zone == nullptr || zone_ == zone);
    }

    void ChangeZone(const char* zone) {
        zoneSet_ = zone != nullptr;
        zone_ = zoneSet_ ? zone : "";
        for (Quarter& quarter : quarters_) quarter.filled = false;
    }

    // The kept quarter hour, the last one found first; else the oldest kept
    // one makes room for it.
    const Quarter& Find(std::int64_t index) {
        const auto holds = [index](const Quarter& quarter) {
            return quarter.filled && quarter.index == index;
        };
        if (holds(quarters_[last_])) return quarters_[last_];
        for (int i = 0; i < kKeptQuarters; ++i) {
            if (holds(quarters_[i])) {
                last_ = i;
                return quarters_[i];
            }
        }
        last_ = oldest_;
        oldest_ = (oldest_ + 1) % kKeptQuarters;
        Quarter& quarter = quarters_[last_];
        quarter.filled = true;
        quarter.index = index;
        const std::int64_t start = index * kSteadyOffsetSeconds;
        quarter.offset = LocalOffset(start);
        quarter.steady =
            quarter.offset && quarter.offset == LocalOffset(start + kSteadyOffsetSeconds - 1);
        return quarter;
    }

    bool zoneSet_ = false;
    std::string zone_;
    Quarter quarters_[kKeptQuarters];
    int last_ = 0;
    int oldest_ = 0;
};

std::optional<std::int64_t> CachedLocalOffset(std::int64_t unixSeconds) {
    static LocalOffsetCache cache;
    std::lock_guard<std::mutex> lock(TimeZoneMutex());
    return cache.Offset(unixSeconds);
}

}  // namespace

std::optional<FileTime> CivilToFileTime(const CivilTime& c) {
    if (c.year < 1601 || c.year > 30827 || c.month < 1 || c.month > 12 || c.day < 1 ||
        c.day > DaysInMonth(c.year, c.month) || c.hour < 0 || c.hour > 23 || c.minute < 0 ||
        c.minute > 59 || c.second < 0 || c.second > 59 || c.millisecond < 0 ||
        c.millisecond > 999) {
        return std::nullopt;
    }
    const std::int64_t days =
        DaysFromCivil(c.year, static_cast<unsigned>(c.month), static_cast<unsigned>(c.day));
    const std::int64_t seconds =
        days * 86400 + c.hour * 3600 + c.minute * 60 + c.second + kEpochDifferenceSeconds;
    return seconds * kFileTimeTicksPerSecond + c.millisecond * kTicksPerMillisecond;
}

CivilTime FileTimeToCivil(FileTime time) {
    const std::int64_t totalSeconds = FloorDiv(time, kFileTimeTicksPerSecond);
    const std::int64_t unixSeconds = totalSeconds - kEpochDifferenceSeconds;
    std::int64_t days = FloorDiv(unixSeconds, 86400);
    const std::int64_t secondOfDay = unixSeconds - days * 86400;

    days += 719468;
    const std::int64_t era = (days >= 0 ? days : days - 146096) / 146097;
    const unsigned dayOfEra = static_cast<unsigned>(days - era * 146097);
    const unsigned yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const unsigned dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const unsigned monthIndex = (5 * dayOfYear + 2) / 153;

    CivilTime c;
    c.day = static_cast<int>(dayOfYear - (153 * monthIndex + 2) / 5 + 1);
    c.month = static_cast<int>(monthIndex < 10 ? monthIndex + 3 : monthIndex - 9);
    c.year = static_cast<int>(static_cast<std::int64_t>(yearOfEra) + era * 400 + (c.month <= 2));
    c.hour = static_cast<int>(secondOfDay / 3600);
    c.minute = static_cast<int>(secondOfDay % 3600 / 60);
    c.second = static_cast<int>(secondOfDay % 60);
    c.millisecond =
        static_cast<int>((time - totalSeconds * kFileTimeTicksPerSecond) / kTicksPerMillisecond);
    return c;
}

FileTime UtcToLocal(FileTime utc) {
    const std::int64_t unixSeconds =
        FloorDiv(utc, kFileTimeTicksPerSecond) - kEpochDifferenceSeconds;
    const std::optional<std::int64_t> offset = CachedLocalOffset(unixSeconds);
    return offset ? utc + *offset * kFileTimeTicksPerSecond : utc;
}

FileTime SystemClock::NowUtc() const {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    const auto ticks =
        std::chrono::duration_cast<std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>>(
            sinceEpoch);
    return ticks.count() + kEpochDifferenceSeconds * kFileTimeTicksPerSecond;
}

}  // namespace tolvane
