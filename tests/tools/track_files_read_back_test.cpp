// The track files read back by real GPS and XML tools: xmllint must find
// every GPX and KML file well-formed at any moment of a run, and gpsbabel
// must return every point with its position.

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <vector>

#include "core/data/track_logger.h"
#include "tests/core/data/track_test_support.h"
#include "tests/core/test_support.h"
#include "tests/tools/shell_command.h"

namespace tolvane {
namespace {

using testing::GpsbabelRows;
using testing::IsWellFormedXml;

constexpr int kPoints = 4;

// Logs kPoints points, one a second, moving north 0.001 degrees a second,
// and checks after every point that the file is a well-formed document.
std::string LogTrack(const testing::TemporaryFolder& folder, std::int32_t format) {
    Options options = testing::LoggingOptions(format);
    options.trackIntervalValues[0] = 1;
    GpsState gps = testing::MovingFix();
    testing::ManualClock clock({2011, 7, 4, 8, 5, 9, 0});
    TrackLogger logger;
    for (int i = 0; i < kPoints; ++i) {
        gps.latitude = 52.5 + 0.001 * i;
        TrackTimerTick(logger, {gps, options, true, folder.Path(), clock, 0});
        EXPECT_TRUE(IsWellFormedXml(logger.currentPath)) << "after point " << i + 1;
        clock.AdvanceSeconds(1);
    }
    return logger.currentPath;
}

TEST(TrackFilesReadBackTest, GpxIsWellFormedAfterEveryPointAndGpsbabelReadsAllOfIt) {
    testing::TemporaryFolder folder;
    const std::string path = LogTrack(folder, kTrackFormatGpx);
    const std::vector<std::string> rows = GpsbabelRows("-t -i gpx", path);
    ASSERT_EQ(rows.size(), static_cast<std::size_t>(kPoints));
    EXPECT_EQ(rows[0], "1,52.500000,-1.250000,123.4,5.14,45.0,2011/07/04,08:05:09");
    EXPECT_EQ(rows[3], "4,52.503000,-1.250000,123.4,5.14,45.0,2011/07/04,08:05:12");
}

TEST(TrackFilesReadBackTest, KmlIsWellFormedAfterEveryPointAndGpsbabelReadsAllOfIt) {
    testing::TemporaryFolder folder;
    const std::string path = LogTrack(folder, kTrackFormatKml);
    // gpsbabel takes the KML placemarks as waypoints.
    const std::vector<std::string> rows = GpsbabelRows("-i kml", path);
    ASSERT_EQ(rows.size(), static_cast<std::size_t>(kPoints));
    for (int i = 0; i < kPoints; ++i) {
        const std::string start = std::to_string(i + 1) + ",52.50" + std::to_string(i) +
                                  "000,-1.250000,\"TP " + std::to_string(i + 1) + "\",123.4,";
        EXPECT_EQ(rows[i].rfind(start, 0), 0u) << rows[i];
    }
}

}  // namespace
}  // namespace tolvane
