#include "core/data/track_logger.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>
#include <vector>

#include "tests/core/data/track_test_support.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

using testing::ReadFileBytes;
using testing::WriteFileBytes;

std::size_t CountOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

// A GPX track's segments, each "[", the times of its points and "]".
std::string SegmentOutline(const std::string& gpx) {
    std::string outline;
    std::istringstream lines(gpx);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("<trkseg>")) outline += "[";
        if (line.starts_with("</trkseg>")) outline += " ]";
        if (line.starts_with(" <time>")) outline += " " + line.substr(18, 8);
    }
    return outline;
}

// Drives the track timer one second at a time from 2011-07-04 08:00:00.
class TrackLoggerTest : public ::testing::Test {
  protected:
    // Runs count ticks, the clock one second later before each.
    void Tick(int count = 1) {
        for (int i = 0; i < count; ++i) {
            clock_.AdvanceSeconds(1);
            TrackTimerTick(logger_, {gps_, options_, gpsRunning_, folder_.Path(), clock_});
        }
    }
    std::vector<std::string> Files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.Path())) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    testing::TemporaryFolder folder_;
    testing::ManualClock clock_{{2011, 7, 4, 8, 0, 0, 0}};
    Options options_ = testing::LoggingOptions(kTrackFormatLog);
    GpsState gps_ = testing::MovingFix();
    bool gpsRunning_ = true;
    TrackLogger logger_;
};

TEST_F(TrackLoggerTest, PointsAreTakenAtTheFirstTickAndThenEveryInterval) {
    // The times of the points in the log file's lines.
    const auto times = [&] {
        const std::string log = ReadFileBytes(folder_.File("20110704080001.log"));
        std::string text;
        for (std::size_t at = log.find(" 08:"); at != std::string::npos;
             at = log.find(" 08:", at + 1)) {
            text += log.substr(at, 9);
        }
        return text;
    };
    Tick(25);
    ASSERT_EQ(Files(), std::vector<std::string>{"20110704080001.log"});
    EXPECT_EQ(times(), " 08:00:01 08:00:11 08:00:21");
    EXPECT_EQ(logger_.liveTrack.Count(), 3);

    // Without a fix at the due tick the point is skipped and a whole
    // interval passes before the next try: 08:00:31 is lost, 08:00:41 taken.
    gps_.fixValid = 0;
    Tick(6);
    gps_.fixValid = 1;
    Tick(20);
    EXPECT_EQ(times(), " 08:00:01 08:00:11 08:00:21 08:00:41 08:00:51");
}

TEST_F(TrackLoggerTest, LoggerOffFinishesTheFileAndOnAgainStartsANewOne) {
    options_.trackLogFormat = kTrackFormatGpx;
    Tick(15);
    options_.trackLoggerEnabled = 0;
    Tick(20);
    EXPECT_TRUE(logger_.currentPath.empty());
    const std::string first = ReadFileBytes(folder_.File("20110704080001.gpx"));
    EXPECT_TRUE(first.ends_with(kGpxTrailer));
    EXPECT_EQ(CountOf(first, "<trkpt "), 2u);

    // Points keep being counted down, so the map keeps its live track.
    EXPECT_EQ(logger_.liveTrack.Count(), 2);
    options_.trackLoggerEnabled = 1;
    Tick();
    EXPECT_EQ(Files(), (std::vector<std::string>{"20110704080001.gpx", "20110704080036.gpx"}));
    EXPECT_EQ(ReadFileBytes(folder_.File("20110704080001.gpx")), first);
}

// A lost fix of 30 seconds and a clock that jumps 30 seconds ahead (a
// suspend) each begin a new segment, every point kept; so does a clock set
// back. One point missed for want of a fix (20 seconds at the interval of
// 10) begins none, nor does the first point of a new file.
TEST_F(TrackLoggerTest, AGapOfMoreThanTwiceTheIntervalBeginsANewSegment) {
    options_.trackLogFormat = kTrackFormatGpx;
    const auto withoutFix = [&](int ticks) {
        gps_.fixValid = 0;
        Tick(ticks);
        gps_.fixValid = 1;
    };
    Tick(15);
    withoutFix(10);
    Tick(10);
    withoutFix(30);
    Tick(10);
    clock_.AdvanceSeconds(30);
    Tick(20);
    EXPECT_EQ(SegmentOutline(ReadFileBytes(logger_.currentPath)),
              "[ 08:00:01 08:00:11 08:00:31 ][ 08:01:11 ][ 08:01:51 08:02:01 ]");

    options_.trackLoggerEnabled = 0;
    Tick(30);
    options_.trackLoggerEnabled = 1;
    Tick(11);
    clock_.AdvanceSeconds(-60);
    Tick(10);
    EXPECT_EQ(logger_.currentPath, folder_.File("20110704080236.gpx"));
    EXPECT_EQ(SegmentOutline(ReadFileBytes(logger_.currentPath)), "[ 08:02:41 ][ 08:01:51 ]");
}

TEST_F(TrackLoggerTest, AGpsRestartBeginsANewTrackAndANewFile) {
    Tick(12);
    ASSERT_EQ(logger_.liveTrack.Count(), 2);
    logger_.viewedTrack.Append(TrackPoint{});

    gpsRunning_ = false;
    Tick(3);
    EXPECT_EQ(logger_.countdown, -1);
    EXPECT_EQ(logger_.liveTrack.Count(), 2);  // the map keeps the last track

    gpsRunning_ = true;
    Tick();
    EXPECT_EQ(logger_.liveTrack.Count(), 1);
    EXPECT_EQ(logger_.viewedTrack.Count(), 0);
    EXPECT_EQ(Files(), (std::vector<std::string>{"20110704080001.log", "20110704080016.log"}));
}

// Other programs' GPX and KML files kept in the track folder, even under
// names like the program's own and cut short, stay byte for byte as they
// are however often the GPS starts; the program's own track, cut inside a
// point by a kill, is mended at the next start.
TEST_F(TrackLoggerTest, StartsMendOnlyTheProgramsOwnInterruptedTracks) {
    std::map<std::string, std::string> foreign;
    for (const auto& entry : std::filesystem::directory_iterator(testing::TestDataFile("tracks"))) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with(".")) continue;
        foreign[name] = ReadFileBytes(entry.path().string());
        WriteFileBytes(folder_.File(name), foreign[name]);
    }
    ASSERT_GE(foreign.size(), 6u);
    for (const std::int32_t format : {kTrackFormatGpx, kTrackFormatKml}) {
        gpsRunning_ = false;
        Tick();
        options_.trackLogFormat = format;
        gpsRunning_ = true;
        Tick(12);
        const std::string ours = logger_.currentPath;
        const std::string whole = ReadFileBytes(ours);
        const std::size_t second =
            whole.rfind(format == kTrackFormatGpx ? "<trkpt" : "  <Placemark>");
        WriteFileBytes(ours, whole.substr(0, second + 40));

        for (int start = 0; start < 20; ++start) {
            gpsRunning_ = false;
            Tick();
            gpsRunning_ = true;
            Tick();
        }
        for (const auto& [name, bytes] : foreign) {
            EXPECT_EQ(ReadFileBytes(folder_.File(name)), bytes) << name;
        }
        EXPECT_EQ(ReadFileBytes(ours), whole.substr(0, second) +
                                           (format == kTrackFormatGpx ? kGpxTrailer : kKmlTrailer));
    }
}

TEST_F(TrackLoggerTest, IntervalSlotsAreClamped) {
    EXPECT_EQ(TrackIntervalFromField("0"), 1);
    EXPECT_EQ(TrackIntervalFromField("5000"), 3600);
    EXPECT_EQ(TrackIntervalFromField(" 42 "), 42);
    EXPECT_EQ(TrackIntervalFromField("99999999999999999999999"), 3600);
    EXPECT_EQ(TrackIntervalFromField("-5"), 1);
    EXPECT_EQ(TrackIntervalFromField("1e3"), 1);

    // A slot of 0 from a damaged Options.dat logs every second instead of
    // restarting the track over and over.
    options_.trackIntervalIndex = 3;
    options_.trackIntervalValues[3] = 0;
    Tick(4);
    EXPECT_EQ(logger_.liveTrack.Count(), 4);
    EXPECT_EQ(Files().size(), 1u);
}

TEST_F(TrackLoggerTest, FormatChangeRestartsTheFileAndViewLogFileShowsATrack) {
    Tick();
    clock_.AdvanceSeconds(1);
    RestartTrackFile(logger_, options_, kTrackFormatKml, folder_.Path(), clock_);
    EXPECT_EQ(options_.trackLogFormat, kTrackFormatKml);
    EXPECT_EQ(logger_.currentPath, folder_.File("20110704080002.kml"));
    EXPECT_TRUE(ReadFileBytes(logger_.currentPath).ends_with(kKmlTrailer));

    options_.showTrack = 0;
    logger_.viewedTrack.Append(TrackPoint{});
    ViewTracks(logger_, options_,
               {ImportTrack{"", {TrackPoint{}}}, ImportTrack{"", {TrackPoint{}}}});
    EXPECT_EQ(logger_.viewedTrack.Count(), 2);
    EXPECT_EQ(options_.showTrack, 1);
    EXPECT_EQ(logger_.liveTrack.Count(), 1);  // the live track is not touched
}

}  // namespace
}  // namespace tolvane
