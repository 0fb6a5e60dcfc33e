// Where an import puts what it read, that it is all or nothing, and the
// texts and times it reads.

#include "core/app/file_import.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

#include "core/data/geo_point_file.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using testing::ReadFileBytes;

ImportPoint Point(double latitude, double longitude, const std::string& name,
                  const std::string& symbol = {}) {
    ImportPoint point;
    point.latitude = latitude;
    point.longitude = longitude;
    point.name = name;
    point.symbol = symbol;
    return point;
}

class FileImportTest : public ::testing::Test {
  protected:
    void SetUp() override {
        app_.folders = MakeDataFolders(folder_.Path());
        app_.runtime.waypointFile = folder_.File("My GPS/Waypoint.csv");
        app_.runtime.poiFolder = folder_.File("My GPS/POI");
        fs::create_directories(app_.runtime.poiFolder);
        app_.points.waypoints.Append(ToGeoPoint(Point(1, 2, "Home"), 1));
        SavePointFile(app_.runtime.waypointFile, app_.points.waypoints);
        contents_.waypoints = {Point(59.9, 10.7, "Pier", "bank"), Point(59.8, 10.6, "")};
        contents_.routes = {{"Lake/Side", {Point(1, 1, "A")}},
                            {"Lake/Side", {Point(2, 2, "B")}},
                            {" . ", {Point(3, 3, "C")}}};
        contents_.tracks = {{"walk", {TrackPoint{1, 2, {}}, TrackPoint{3, 4, {}}}}};
    }

    testing::TemporaryFolder folder_;
    AppState app_;
    ImportContents contents_;
};

TEST_F(FileImportTest, EachKindGoesToItsPlace) {
    const ImportOutcome outcome = ImportIntoProgram(app_, contents_, kImportToWaypointList);
    ASSERT_EQ(outcome.failedPath, "");

    DynamicList<GeoPoint> saved;
    EXPECT_EQ(LoadPointFile(app_.runtime.waypointFile, saved).recordsRead, 3);
    EXPECT_EQ(app_.points.waypoints.Count(), 3);
    saved.SeekTo(1);
    EXPECT_EQ(saved.Current().name, "Pier");
    EXPECT_EQ(saved.Current().category, "Bank");  // its symbol names a category
    saved.MoveNext();
    EXPECT_EQ(saved.Current().name, "Point 2");

    const std::string destinations = app_.folders.destinationDir + "/";
    EXPECT_EQ(outcome.routeFiles, (std::vector<std::string>{destinations + "Lake_Side.csv",
                                                            destinations + "Lake_Side 2.csv",
                                                            destinations + "Route 1.csv"}));
    EXPECT_EQ(ReadFileBytes(destinations + "Lake_Side 2.csv"), "2.000000,2.000000,B,,,,,,\r\n");
    EXPECT_EQ(app_.track.viewedTrack.Count(), 2);
    EXPECT_EQ(app_.options.showTrack, 1);
    EXPECT_EQ(app_.currentView, kViewWorldMap);
    EXPECT_EQ(ImportDoneMessage(contents_, outcome),
              "Imported: 2 waypoints, 3 routes with 3 points, 1 track with 2 points.\n\n"
              "Each route is now a destination list in " +
                  app_.folders.destinationDir + ".");

    // Into a POI category: added to that category's file, every point of
    // that category. Category 6 keeps the name the table shows.
    const std::string poiFile = app_.runtime.poiFolder + "/Informaion.csv";
    testing::WriteFileBytes(poiFile, "5.000000,6.000000,Kiosk,Informaion,,,,,\r\n");
    ASSERT_EQ(ImportIntoProgram(app_, {contents_.waypoints, {}, {}}, 6).failedPath, "");
    EXPECT_EQ(ReadFileBytes(poiFile),
              "5.000000,6.000000,Kiosk,Informaion,,,,,\r\n"
              "10.700000,59.900000,Pier,Informaion,,,,,\r\n"
              "10.600000,59.800000,Point 2,Informaion,,,,,\r\n");
}

TEST_F(FileImportTest, AnImportThatCannotWriteEveryFileChangesNothing) {
    const std::string waypointsBefore = ReadFileBytes(app_.runtime.waypointFile);
    // A file where the destination folder belongs: no route can be written.
    testing::WriteFileBytes(app_.folders.destinationDir, "not a folder");

    const ImportOutcome outcome = ImportIntoProgram(app_, contents_, kImportToWaypointList);
    EXPECT_EQ(outcome.failedPath, app_.folders.destinationDir + "/Lake_Side.csv");
    EXPECT_EQ(ReadFileBytes(app_.runtime.waypointFile), waypointsBefore);
    EXPECT_EQ(app_.points.waypoints.Count(), 1);
    EXPECT_EQ(app_.track.viewedTrack.Count(), 0);
    EXPECT_FALSE(fs::exists(app_.runtime.waypointFile + ".part"));

    // An unreadable POI file of the category is never replaced.
    const std::string poiFile = app_.runtime.poiFolder + "/Bank.csv";
    fs::create_directories(poiFile);
    EXPECT_EQ(ImportIntoProgram(app_, contents_, 4).failedPath, poiFile);
    EXPECT_EQ(app_.points.waypoints.Count(), 1);
}

TEST(ImportTextTest, SummariesCountAndTimesReadInEveryZone) {
    ImportContents contents;
    EXPECT_EQ(ImportSummary(contents), "no waypoints, routes or tracks");
    contents.waypoints.resize(1);
    contents.tracks = {{"", std::vector<TrackPoint>(3000)}, {"", std::vector<TrackPoint>(400)}};
    EXPECT_EQ(ImportSummary(contents), "1 waypoint, 2 tracks with 3 400 points");
    EXPECT_EQ(GroupedCount(1234567), "1 234 567");

    struct Time {
        const char* text;
        int day, hour, minute, second;
    };
    for (const Time& t :
         {Time{"2024-05-01T10:00:05Z", 1, 10, 0, 5}, Time{"2024-05-01T10:00:05.250Z", 1, 10, 0, 5},
          Time{" 2024-05-01T01:30:00+02:00\n", 30, 23, 30, 0},
          Time{"2024-05-01T23:00:00-0130", 2, 0, 30, 0}, Time{"2024-05-01T10:00:05", 1, 10, 0, 5},
          Time{"20240501 10:00:05", 1, 10, 0, 5}}) {
        SCOPED_TRACE(t.text);
        const std::optional<CivilTime> time = ParseImportTime(t.text);
        ASSERT_TRUE(time);
        EXPECT_EQ(std::tie(time->day, time->hour, time->minute, time->second),
                  std::tie(t.day, t.hour, t.minute, t.second));
    }
    for (const char* bad : {"", "2024-13-01T10:00:00Z", "2024-05-01 10:00:00",
                            "2024-05-01T10:00:00+2", "yesterday"}) {
        EXPECT_FALSE(ParseImportTime(bad)) << bad;
    }
}

}  // namespace
}  // namespace tolvane
