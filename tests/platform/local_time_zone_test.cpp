// Local time is kept per quarter hour of UTC between conversions. These
// tests move the process through time zones with summer time, odd offsets
// and changes off the quarter hour, which only the platform tests may do,
// and hold every conversion to the C library's offset for the same second.

#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "core/base/file_time.h"
#include "tests/platform/scoped_environment.h"

namespace tolvane {
namespace {

constexpr std::int64_t kEpochDifferenceSeconds = 11'644'473'600;
// A sub-second part, so that the conversion is seen to keep it.
constexpr FileTime kFraction = 1'234'567;

std::int64_t UnixSeconds(const CivilTime& utc) {
    return *CivilToFileTime(utc) / kFileTimeTicksPerSecond - kEpochDifferenceSeconds;
}

// The C library's offset of local time at the given second.
long LibraryOffset(std::int64_t unixSeconds) {
    const std::time_t time = unixSeconds;
    std::tm local{};
    localtime_r(&time, &local);
    return local.tm_gmtoff;
}

// Converts the second and tells whether it agrees with the library.
bool AgreesWithTheLibrary(std::int64_t unixSeconds) {
    const FileTime utc =
        (unixSeconds + kEpochDifferenceSeconds) * kFileTimeTicksPerSecond + kFraction;
    const FileTime expected = utc + LibraryOffset(unixSeconds) * kFileTimeTicksPerSecond;
    EXPECT_EQ(UtcToLocal(utc), expected) << "at Unix time " << unixSeconds;
    return UtcToLocal(utc) == expected;
}

// Walks from from to to in uneven steps and, wherever the offset changed
// between two steps, over every second in between, forwards and then
// backwards; the walk ends at the first disagreement. Returns the seconds at
// which the offset changed.
std::vector<std::int64_t> WalkComparingWithTheLibrary(std::int64_t from, std::int64_t to) {
    constexpr std::int64_t kStep = 631;
    std::vector<std::int64_t> changes;
    for (std::int64_t second = from; second + kStep <= to; second += kStep) {
        if (!AgreesWithTheLibrary(second)) return changes;
        if (LibraryOffset(second) == LibraryOffset(second + kStep)) continue;
        for (std::int64_t each = second; each <= second + kStep; ++each) {
            if (!AgreesWithTheLibrary(each)) return changes;
            if (LibraryOffset(each) != LibraryOffset(each - 1)) changes.push_back(each);
        }
        for (std::int64_t each = second + kStep; each >= second; --each) {
            if (!AgreesWithTheLibrary(each)) return changes;
        }
    }
    return changes;
}

struct ZoneCase {
    const char* zone;
    CivilTime from;
    CivilTime to;
    std::size_t changes;
};

void WalkZone(const ZoneCase& zoneCase) {
    SCOPED_TRACE(zoneCase.zone);
    const testing::ScopedTimeZone scope(zoneCase.zone);
    const std::vector<std::int64_t> changes =
        WalkComparingWithTheLibrary(UnixSeconds(zoneCase.from), UnixSeconds(zoneCase.to));
    EXPECT_EQ(changes.size(), zoneCase.changes);
}

TEST(LocalTimeZoneTest, ZoneRulesWithSummerTimeAndOddOffsetsConvertAsTheLibraryDoes) {
    // Written as POSIX rules, which need no time zone database.
    const ZoneCase cases[] = {
        // Central Europe: an hour of summer time.
        {"CET-1CEST,M3.5.0,M10.5.0/3", {2021, 1, 1}, {2022, 1, 1}, 2},
        // Nepal: a quarter hour off the half hour.
        {"<+0545>-5:45", {2021, 6, 1}, {2021, 6, 8}, 0},
        // Lord Howe Island: half an hour of summer time.
        {"<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", {2021, 1, 1}, {2022, 1, 1}, 2},
        // Newfoundland before 2011: half an hour off, changing one minute past
        // midnight, which is no quarter hour of UTC.
        {"NST3:30NDT,M3.2.0/0:01,M11.1.0/0:01", {2010, 1, 1}, {2011, 1, 1}, 2},
    };
    for (const ZoneCase& zoneCase : cases) WalkZone(zoneCase);
}

TEST(LocalTimeZoneTest, ZonesOfTheDatabaseConvertAsTheLibraryDoesAlsoInTheirPast) {
    const ZoneCase cases[] = {
        // Berlin left its local mean time (+0:53:28) for CET on 1 April 1893.
        {"Europe/Berlin", {1893, 3, 1}, {1893, 5, 1}, 1},
        {"Europe/Berlin", {2021, 1, 1}, {2022, 1, 1}, 2},
        // Nepal went from +5:30 to +5:45 at the start of 1986.
        {"Asia/Kathmandu", {1985, 12, 1}, {1986, 2, 1}, 1},
        {"Australia/Lord_Howe", {2021, 1, 1}, {2022, 1, 1}, 2},
        {"America/St_Johns", {2010, 1, 1}, {2011, 1, 1}, 2},
    };
    for (const ZoneCase& zoneCase : cases) {
        if (!std::filesystem::exists(std::filesystem::path("/usr/share/zoneinfo") /
                                     zoneCase.zone)) {
            GTEST_SKIP() << "no time zone database";
        }
        WalkZone(zoneCase);
    }
}

TEST(LocalTimeZoneTest, TimesThatJumpBackAndForthConvertAsTheLibraryDoes) {
    // As a replay of recordings made on many days does: summer and winter,
    // either side of a change, in turns.
    const testing::ScopedTimeZone scope("CET-1CEST,M3.5.0,M10.5.0/3");
    const std::int64_t change = UnixSeconds({2021, 3, 28, 1, 0, 0});
    std::vector<std::int64_t> times;
    for (int day = 0; day < 40; ++day) times.push_back(change + (day - 20) * 86'400 + day * 97);
    for (int round = 0; round < 3; ++round) {
        for (const std::int64_t time : times) {
            for (const std::int64_t second : {time, change - 1 - round, change + round}) {
                ASSERT_TRUE(AgreesWithTheLibrary(second));
            }
        }
    }
}

TEST(LocalTimeZoneTest, AChangedZoneTakesEffectAtOnce) {
    const FileTime utc = *CivilToFileTime({2021, 7, 4, 12, 0, 0, 250});
    const auto local = [utc](const char* zone) {
        const testing::ScopedTimeZone scope(zone);
        return UtcToLocal(utc);
    };
    EXPECT_EQ(local("UTC0"), utc);
    EXPECT_EQ(local("CET-1CEST,M3.5.0,M10.5.0/3"), utc + 2 * 3600 * kFileTimeTicksPerSecond);
    EXPECT_EQ(local("<+0545>-5:45"), utc + (5 * 3600 + 45 * 60) * kFileTimeTicksPerSecond);
    EXPECT_EQ(UtcToLocal(utc), utc);  // the tests' own UTC again
}

}  // namespace
}  // namespace tolvane
