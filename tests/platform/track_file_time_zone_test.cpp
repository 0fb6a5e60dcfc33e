// Track files are named by local time but time-stamp their points in UTC.
// The test moves the process into another time zone, which only the
// platform tests may do.

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "core/data/track_file.h"
#include "tests/core/data/track_test_support.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

// Five and a half hours east of UTC, given as a POSIX rule so that no time
// zone database is needed; the tests' own UTC is put back afterwards.
class EastOfUtc {
  public:
    EastOfUtc() { Use("XST-5:30"); }
    ~EastOfUtc() { Use("UTC"); }

  private:
    static void Use(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }
};

TEST(TrackFileTimeZoneTest, NamesAreLocalAndPointTimesAreUtc) {
    const EastOfUtc zone;
    testing::TemporaryFolder folder;
    testing::ManualClock clock({2011, 7, 4, 20, 0, 9, 0});
    const GpsState gps = testing::MovingFix();
    DynamicList<TrackPoint> track;

    for (const std::int32_t format : {kTrackFormatKml, kTrackFormatGpx}) {
        const Options options = testing::LoggingOptions(format);
        std::string path;
        StartTrackFile(options, folder.Path(), clock, path);
        AppendTrackPoint(options, gps, clock, path, track);
        const std::string bytes = testing::ReadFileBytes(path);
        if (format == kTrackFormatKml) {
            EXPECT_EQ(path, folder.File("20110705013009.kml"));
            EXPECT_NE(bytes.find("<name>20110705013009</name>"), std::string::npos);
            EXPECT_NE(bytes.find("<td>20110704 20:00:09</td>"), std::string::npos);
        } else {
            EXPECT_EQ(path, folder.File("20110705013009.gpx"));
            EXPECT_NE(bytes.find("<time>2011-07-04T20:00:09Z</time>"), std::string::npos);
        }
    }
    track.SeekTo(0);
    EXPECT_EQ(track.Current().time.hour, 20);
}

}  // namespace
}  // namespace tolvane
