// Track files are named by local time but time-stamp their points in UTC.
// The test moves the process into another time zone, which only the
// platform tests may do.

#include <gtest/gtest.h>

#include "core/data/track_file.h"
#include "tests/core/data/track_test_support.h"
#include "tests/core/test_support.h"
#include "tests/platform/scoped_environment.h"

namespace tolvane {
namespace {

TEST(TrackFileTimeZoneTest, NamesAreLocalAndPointTimesAreUtc) {
    const testing::ScopedTimeZone zone("XST-5:30");  // five and a half hours east of UTC
    testing::TemporaryFolder folder;
    testing::ManualClock clock({2011, 7, 4, 20, 0, 9, 0});
    const GpsState gps = testing::MovingFix();
    DynamicList<TrackPoint> track;

    for (const std::int32_t format : {kTrackFormatKml, kTrackFormatGpx}) {
        const Options options = testing::LoggingOptions(format);
        std::string path;
        DirectTrackWriter writer;
        StartTrackFile(options, folder.Path(), clock, path, writer);
        AppendTrackPoint(options, gps, clock, path, track, writer);
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
