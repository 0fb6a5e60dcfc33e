#include "core/data/track_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <vector>

#include "core/data/point_import.h"
#include "tests/core/data/track_test_support.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

using testing::LoggingOptions;
using testing::ManualClock;
using testing::MovingFix;
using testing::ReadFileBytes;
using testing::WriteFileBytes;

constexpr char kGpxHeader[] =
    "<?xml version=\"1.0\"?>\r\n"
    "<gpx\r\n"
    " version=\"1.1\"\r\n"
    " creator=\"Tolvane GPS Utilities - https://tolvane.example/gps\"\r\n"
    " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"\r\n"
    " xmlns=\"http://www.topografix.com/GPX/1/1\"\r\n"
    " xsi:schemaLocation=\"http://www.topografix.com/GPX/1/1 "
    "http://www.topografix.com/GPX/1/1/gpx.xsd\">\r\n"
    "<trk>\r\n"
    "<trkseg>\r\n";

constexpr char kGpxPoint[] =
    "<trkpt lat=\"52.500000\" lon=\"-1.250000\">\r\n"
    " <time>2011-07-04T08:05:19Z</time>\r\n"
    " <ele>123.400000</ele>\r\n"
    " <course>45.000000</course>\r\n"
    " <speed>5.144444</speed>\r\n"
    "</trkpt>\r\n";

std::string KmlPlacemark(int number, const std::string& logTime) {
    return "  <Placemark>\r\n"
           "     <name>TP " +
           std::to_string(number) +
           "</name>\r\n"
           "     <Point>\r\n"
           "       <coordinates>-1.250000, 52.500000, 123.400000</coordinates>\r\n"
           "     </Point>\r\n"
           "     <altitudeMode>absolute</altitudeMode>\r\n"
           "     <description>\r\n"
           "       <![CDATA[<table><tr><td><b>Time</b></td><td>" +
           logTime +
           "</td></tr><tr><td><b>Latitude</b></td><td>52.500000</td></tr><tr><td><b>Longitude"
           "</b></td><td>-1.250000</td></tr><tr><td><b>Altitude</b></td><td>123.400000 m</td>"
           "</tr><tr><td><b>Course</b></td><td>45.000000 degree</td></tr><tr><td><b>Speed</b>"
           "</td><td>18.520000 km/h</td></tr></table>]]>\r\n"
           "     </description>\r\n"
           "  </Placemark>\r\n";
}

// Starts a file at 2011-07-04 08:05:09 (the tests run in UTC, so local time
// is UTC) and appends one point ten seconds later.
class TrackFileTest : public ::testing::Test {
  protected:
    void Start(std::int32_t format) {
        options_ = LoggingOptions(format);
        StartTrackFile(options_, folder_.Path(), clock_, path_, writer_);
    }
    void Append(bool afterGap = false) {
        clock_.AdvanceSeconds(10);
        AppendTrackPoint(options_, gps_, clock_, path_, track_, writer_, afterGap);
    }

    testing::TemporaryFolder folder_;
    ManualClock clock_{{2011, 7, 4, 8, 5, 9, 0}};
    Options options_{};
    GpsState gps_ = MovingFix();
    std::string path_;
    DynamicList<TrackPoint> track_;
    DirectTrackWriter writer_;
};

TEST_F(TrackFileTest, GpxIsACompleteDocumentFromTheStartAndAfterEveryPoint) {
    Start(kTrackFormatGpx);
    EXPECT_EQ(path_, folder_.File("20110704080509.gpx"));
    EXPECT_EQ(ReadFileBytes(path_), std::string(kGpxHeader) + kGpxTrailer);

    Append();
    EXPECT_EQ(ReadFileBytes(path_), std::string(kGpxHeader) + kGpxPoint + kGpxTrailer);
    ASSERT_EQ(track_.Count(), 1);
    track_.SeekTo(0);
    EXPECT_FLOAT_EQ(track_.Current().longitude, -1.25f);
    EXPECT_EQ(track_.Current().time.second, 19);
}

TEST_F(TrackFileTest, KmlNamesTheDocumentByItsStartAndNumbersPlacemarksByTheTrack) {
    Start(kTrackFormatKml);
    EXPECT_EQ(path_, folder_.File("20110704080509.kml"));
    const std::string header =
        "<?xml version=\"1.0\"?>\r\n<kml xmlns=\"http://earth.google.com/kml/2.0\">\r\n"
        "<Document>\r\n  <name>20110704080509</name>\r\n";
    EXPECT_EQ(ReadFileBytes(path_), header + kKmlTrailer);

    Append();
    Append();
    EXPECT_EQ(ReadFileBytes(path_), header + KmlPlacemark(1, "20110704 08:05:19") +
                                        KmlPlacemark(2, "20110704 08:05:29") + kKmlTrailer);
}

TEST_F(TrackFileTest, LogLinesPutLongitudeFirstAndTheFileComesWithTheFirstPoint) {
    Start(kTrackFormatLog);
    EXPECT_EQ(path_, folder_.File("20110704080509.log"));
    EXPECT_FALSE(std::filesystem::exists(path_));

    gps_.fixValid = 0;
    Append();
    EXPECT_FALSE(std::filesystem::exists(path_));
    EXPECT_EQ(track_.Count(), 0);

    gps_.fixValid = 1;
    Append();
    Append();
    EXPECT_EQ(ReadFileBytes(path_),
              "-1.250000,52.500000,,20110704 08:05:29,10.000000,45.000000,123.400000\r\n"
              "-1.250000,52.500000,,20110704 08:05:39,10.000000,45.000000,123.400000\r\n");
}

TEST_F(TrackFileTest, NothingOrNoHalfPointIsWrittenWithoutLoggerFixOrWholeFile) {
    Start(kTrackFormatGpx);
    const std::string started = ReadFileBytes(path_);
    gps_.fixValid = 0;
    Append();
    EXPECT_EQ(ReadFileBytes(path_), started);

    // A point whose text would not fit its 1000-byte buffer is not written
    // at all rather than cut.
    gps_.fixValid = 1;
    gps_.altitude = gps_.course = gps_.speedKnots = 1e300;
    Append();
    EXPECT_EQ(ReadFileBytes(path_), started);
    EXPECT_EQ(track_.Count(), 0);

    gps_ = MovingFix();
    options_.trackLoggerEnabled = 0;
    Append();
    EXPECT_EQ(ReadFileBytes(path_), started);
    EXPECT_EQ(track_.Count(), 0);

    // Two starts within one second: the second track takes a free name and
    // the first is left as it was.
    options_.trackLoggerEnabled = 1;
    Append();
    const std::string first = path_;
    const std::string onePoint = ReadFileBytes(path_);
    const ManualClock sameSecond({2011, 7, 4, 8, 5, 9, 0});
    ASSERT_TRUE(StartTrackFile(options_, folder_.Path(), sameSecond, path_, writer_));
    EXPECT_EQ(path_, folder_.File("20110704080509_2.gpx"));
    EXPECT_EQ(ReadFileBytes(first), onePoint);
    EXPECT_EQ(ReadFileBytes(path_), std::string(kGpxHeader) + kGpxTrailer);

    // A file too short to hold the trailer is left as it is.
    WriteFileBytes(path_, "<gpx>");
    Append();
    EXPECT_EQ(ReadFileBytes(path_), "<gpx>");

    // A folder that has gone away: nothing is created and the point is lost
    // for the track as well.
    const int before = track_.Count();
    for (const std::int32_t format : {kTrackFormatLog, kTrackFormatGpx, kTrackFormatKml}) {
        options_.trackLogFormat = format;
        path_ = folder_.File("missing/20110704080509.track");
        Append();
    }
    EXPECT_EQ(track_.Count(), before);
    EXPECT_FALSE(std::filesystem::exists(folder_.File("missing")));
}

// Two programs that start a log in the same second both find its name
// free, since a log is created by its first point: the second to write
// takes the next name instead of writing into the first one's file.
TEST_F(TrackFileTest, TwoLoggersInOneSecondWriteTwoFiles) {
    Start(kTrackFormatLog);
    std::string other;
    DirectTrackWriter otherWriter;
    ASSERT_TRUE(StartTrackFile(options_, folder_.Path(), clock_, other, otherWriter));
    ASSERT_EQ(other, path_);
    DynamicList<TrackPoint> otherTrack;
    Append();
    ASSERT_TRUE(AppendTrackPoint(options_, gps_, clock_, other, otherTrack, otherWriter));
    Append();
    ASSERT_TRUE(AppendTrackPoint(options_, gps_, clock_, other, otherTrack, otherWriter));
    EXPECT_EQ(other, folder_.File("20110704080509_2.log"));
    EXPECT_EQ(ReadFileBytes(other), ReadFileBytes(path_));
    EXPECT_EQ(ReadFileBytes(path_).size(), 2 * (ReadFileBytes(path_).find('\n') + 1));
}

// A conversion's buffered writer makes the same bytes as the program's
// direct one, across the writes it holds back and when it changes file.
TEST_F(TrackFileTest, BufferedTracksAreTheSameBytes) {
    for (const std::int32_t format : {kTrackFormatGpx, kTrackFormatKml, kTrackFormatLog}) {
        std::string paths[2];
        BufferedTrackWriter buffered;
        TrackWriter* const writers[2] = {&writer_, &buffered};
        for (int file = 0; file < 2; ++file) {
            options_ = LoggingOptions(format);
            StartTrackFile(options_, folder_.Path(), clock_, path_, *writers[file]);
            track_.Clear();
            for (int point = 0; point < 1000; ++point) {
                clock_.AdvanceSeconds(1);
                ASSERT_TRUE(
                    AppendTrackPoint(options_, gps_, clock_, path_, track_, *writers[file]));
            }
            paths[file] = path_;
            clock_.AdvanceSeconds(-1000);
        }
        ASSERT_TRUE(buffered.Flush());
        EXPECT_GT(ReadFileBytes(paths[0]).size(), 64u * 1024);
        EXPECT_EQ(ReadFileBytes(paths[1]), ReadFileBytes(paths[0]));
    }
}

// A point cut short by a kill is dropped and the trailer written again;
// complete files, log files and the points before the cut are left alone.
TEST_F(TrackFileTest, RepairCutsBackToTheLastCompletePoint) {
    for (const std::int32_t format : {kTrackFormatGpx, kTrackFormatKml}) {
        Start(format);
        Append();
        Append();
        const std::string whole = ReadFileBytes(path_);
        const std::string trailer = format == kTrackFormatGpx ? kGpxTrailer : kKmlTrailer;
        EXPECT_FALSE(RepairTrackFile(path_));
        EXPECT_EQ(ReadFileBytes(path_), whole);

        const std::size_t secondPoint =
            whole.rfind(format == kTrackFormatGpx ? "<trkpt" : "  <Placemark>");
        const std::string onePoint = whole.substr(0, secondPoint);
        WriteFileBytes(path_, whole.substr(0, secondPoint + 40));  // cut inside the second point
        EXPECT_TRUE(RepairTrackFile(path_));
        EXPECT_EQ(ReadFileBytes(path_), onePoint + trailer);

        WriteFileBytes(path_, whole.substr(0, whole.size() - 3));  // cut inside the trailer
        EXPECT_EQ(RepairTrackFolder(folder_.Path()), 1);
        EXPECT_EQ(ReadFileBytes(path_), whole);
        std::filesystem::remove(path_);
        track_.Clear();
    }
    Start(kTrackFormatGpx);
    WriteFileBytes(path_, std::string(kGpxHeader).substr(0, 60));  // not even a whole header
    EXPECT_FALSE(RepairTrackFile(path_));
    // A ".part" file left alone for an hour was abandoned; a young one may
    // be a conversion's that is still being written.
    const std::string abandoned = folder_.File("20110704080509.gpx.part");
    const std::string young = folder_.File("20110704080510.gpx.part");
    WriteFileBytes(abandoned, kGpxHeader);
    std::filesystem::last_write_time(
        abandoned, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
    WriteFileBytes(young, kGpxHeader);
    WriteFileBytes(folder_.File("notes.log"), "1,2,,x");
    RepairTrackFolder(folder_.Path());
    EXPECT_FALSE(std::filesystem::exists(abandoned));
    EXPECT_TRUE(std::filesystem::exists(young));
    EXPECT_EQ(ReadFileBytes(folder_.File("notes.log")), "1,2,,x");
}

// After a gap a GPX track goes on in a new segment of the same track; a
// kill inside the new segment's first point cuts the file back to the end
// of the first segment, one inside a later point keeps both. KML points
// are placemarks of their own, joined by no line, so a gap changes nothing
// in them.
TEST_F(TrackFileTest, AGapBeginsANewGpxSegmentThatRepairKeeps) {
    Start(kTrackFormatGpx);
    Append();
    const std::string firstSegment = ReadFileBytes(path_);
    Append(true);
    const std::string secondOpened = ReadFileBytes(path_);
    Append();
    const std::string whole = ReadFileBytes(path_);
    const auto point = [](const std::string& time) {
        std::string text = kGpxPoint;
        return text.replace(text.find("08:05:19"), 8, time);
    };
    EXPECT_EQ(whole, std::string(kGpxHeader) + point("08:05:19") + "</trkseg>\r\n<trkseg>\r\n" +
                         point("08:05:29") + point("08:05:39") + kGpxTrailer);

    const std::size_t lastPoint = whole.rfind("<trkpt");
    for (const auto& [cut, mended] :
         {std::pair{firstSegment.size() - std::strlen(kGpxTrailer) + 30, firstSegment},
          std::pair{lastPoint + 40, secondOpened}}) {
        WriteFileBytes(path_, whole.substr(0, cut));
        EXPECT_TRUE(RepairTrackFile(path_));
        EXPECT_EQ(ReadFileBytes(path_), mended);
    }

    std::filesystem::remove(path_);
    track_.Clear();
    Start(kTrackFormatKml);
    Append();
    Append(true);
    const std::string kml = ReadFileBytes(path_);
    EXPECT_EQ(kml.substr(kml.find("  <Placemark>")), KmlPlacemark(1, "20110704 08:05:49") +
                                                        KmlPlacemark(2, "20110704 08:05:59") +
                                                        kKmlTrailer);
}

TEST_F(TrackFileTest, ReadsLogLinesBackAndSkipsWhatIsNotOne) {
    Start(kTrackFormatLog);
    Append();
    Append();
    std::string bytes = ReadFileBytes(path_);
    bytes +=
        "garbage\r\n"
        "1.5,2.5\r\n"                                    // too few columns
        "200,10,,20110704 08:05:09,0,0,0\r\n"            // longitude out of range
        "10,-91,,20110704 08:05:09,0,0,0\r\n"            // latitude out of range
        "10,x,,20110704 08:05:09,0,0,0\r\n"              // not a number
        "10,20,,20111304 08:05:09,0,0,0\r\n"             // month 13
        "10,20,,20110704 8:05:09,0,0,0\r\n"              // time cut short
        "\r\n\r\n"                                       // empty lines pass unnoticed
        "13.25,-33.5,,20120229 23:59:59\r"               // CR alone, no speed columns
        " 7 ,8,,20110704 08:05:09,1,2,3,extra,columns";  // blanks, more columns
    WriteFileBytes(path_, bytes);

    const ImportRead result = ReadTrackLog(path_);
    EXPECT_EQ(result.problem, ImportProblem::kNone);
    EXPECT_EQ(result.pointsSkipped, 7);
    ASSERT_EQ(result.contents.tracks.size(), 1u);
    const std::vector<TrackPoint>& read = result.contents.tracks[0].points;
    ASSERT_EQ(read.size(), 4u);
    EXPECT_EQ(read[0].time.second, 19);
    EXPECT_FLOAT_EQ(read[2].latitude, -33.5f);
    EXPECT_EQ(read[2].time.year, 2012);
    EXPECT_EQ(read[2].time.day, 29);
    EXPECT_FLOAT_EQ(read[3].longitude, 7.0f);

    EXPECT_EQ(ReadTrackLog(folder_.File("none.log")).problem, ImportProblem::kNotOpened);
}

TEST_F(TrackFileTest, ALogOfTooManyPointsStopsAtTheLimitAndCanBeCancelled) {
    const std::string path = folder_.File("many.log");
    {
        std::ofstream out(path, std::ios::binary);
        for (int i = 0; i <= kMostImportPoints; ++i) out << "7,8,,20110704 08:05:09\r\n";
    }
    const ImportRead many = ReadTrackLog(path);
    EXPECT_EQ(many.problem, ImportProblem::kTooManyPoints);
    EXPECT_EQ(many.contents.tracks[0].points.size(), static_cast<std::size_t>(kMostImportPoints));

    std::vector<double> shares;
    const ImportRead cancelled = ReadTrackLog(path, [&shares](double share) {
        shares.push_back(share);
        return share < 0.5;
    });
    EXPECT_EQ(cancelled.problem, ImportProblem::kCancelled);
    ASSERT_GE(shares.size(), 2u);
    EXPECT_TRUE(std::is_sorted(shares.begin(), shares.end()));
    EXPECT_GE(shares.back(), 0.5);
    EXPECT_LT(shares.back(), 0.6);
    EXPECT_LT(cancelled.contents.tracks[0].points.size(), many.contents.tracks[0].points.size());
}

}  // namespace
}  // namespace tolvane
