// The GPX and KML readers on files of other programs (made in their
// manner, in tests/data/gpx), on broken ones, on files of the program's own
// track writer and on files that gpsbabel writes while the test runs.

#include "formats/point_file_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <vector>

#include "core/app/file_import.h"
#include "core/data/geo_point_file.h"
#include "tests/core/data/track_test_support.h"
#include "tests/core/test_support.h"
#include "tests/tools/shell_command.h"

namespace tolvane {
namespace {

using testing::TestDataFile;

std::string GpxFile(const std::string& name) {
    return TestDataFile("gpx/" + name);
}

struct ExpectedFile {
    const char* file;
    const char* summary;
    // The first waypoint (or, without one, the first route point) as the
    // program keeps it.
    const char* name;
    const char* category;
    const char* comment;
};

TEST(PointFileReaderTest, FilesOfOtherProgramsGiveTheirPoints) {
    const ExpectedFile expected[] = {
        // GPX 1.0, cmt and desc both, an unnamed route of rtept with sym.
        {"gpsbabel-route.gpx", "3 waypoints, 1 route with 3 points", "Harbour", "", "Ferry pier"},
        // GPX 1.0 on one line, an unnamed waypoint, times with a zone.
        {"gpslogger.gpx", "1 waypoint, 1 track with 3 points", "Point 1", "", "Parked the bike"},
        // Extensions everywhere, UTF-8 names, a track of two segments.
        {"osmand.gpx", "2 waypoints, 1 track with 3 points", "Caf\xC3\xA9 Rialto", "", ""},
        // A symbol of the category table, a long name, route points with
        // extension points that are not part of the route.
        {"garmin.gpx", "2 waypoints, 1 route with 2 points, 1 track with 2 points",
         "A very long waypoin", "Gas Station", "Gate B"},
    };
    for (const ExpectedFile& file : expected) {
        SCOPED_TRACE(file.file);
        const ImportRead read = ReadGpxFile(GpxFile(file.file));
        EXPECT_EQ(read.problem, ImportProblem::kNone);
        EXPECT_EQ(ImportRefusal(file.file, read), "");
        EXPECT_EQ(ImportSummary(read.contents), file.summary);
        const GeoPoint first = ToGeoPoint(read.contents.waypoints.at(0), 1);
        EXPECT_EQ(first.name, file.name);
        EXPECT_EQ(first.category, file.category);
        EXPECT_EQ(first.comment, file.comment);
    }

    const ImportContents garmin = ReadGpxFile(GpxFile("garmin.gpx")).contents;
    EXPECT_EQ(garmin.routes[0].name, "Thames walk");
    EXPECT_EQ(ToGeoPoint(garmin.routes[0].points[1], 2).category, "Bridge");
    EXPECT_DOUBLE_EQ(garmin.routes[0].points[1].latitude, 51.5055);
    EXPECT_EQ(ToGeoPoint(garmin.waypoints[1], 2).category, "");  // "Flag, Blue"

    const ImportContents osmand = ReadGpxFile(GpxFile("osmand.gpx")).contents;
    EXPECT_EQ(ToGeoPoint(osmand.waypoints[1], 2).name, "Point 2");
    EXPECT_EQ(osmand.tracks[0].name, "Evening walk");

    // 10:00:05.250+02:00 is 08:00:05 UTC.
    const TrackPoint logged = ReadGpxFile(GpxFile("gpslogger.gpx")).contents.tracks[0].points[1];
    EXPECT_FLOAT_EQ(logged.longitude, 11.577002f);
    EXPECT_EQ(logged.time.hour, 8);
    EXPECT_EQ(logged.time.second, 5);
}

struct Broken {
    const char* file;
    ImportProblem problem;
    const char* said;  // part of what the user is told
};

// Broken and foreign files are refused with the reason. An external entity
// is never read, and entities that name one another without end or blow the
// text up are refused with libxml2's reason.
TEST(PointFileReaderTest, BrokenForeignAndEntityFilesAreRefusedWithTheReason) {
    const Broken broken[] = {
        {"broken-cut-short.gpx", ImportProblem::kBroken, "damaged at line"},
        {"broken-bad-point.gpx", ImportProblem::kBadPoint, "Line 4 holds a point"},
        {"foreign-osm.xml", ImportProblem::kForeign, "<osm>"},
        {"missing.gpx", ImportProblem::kNotOpened, "could not be opened"},
        {"entity-external.gpx", ImportProblem::kBroken,
         "line 6: Entity 'secret' is external and is not read"},
        {"entity-loop.gpx", ImportProblem::kBroken, "Detected an entity reference loop"},
        {"entity-laughs.gpx", ImportProblem::kBroken, "Detected an entity reference loop"},
    };
    for (const Broken& file : broken) {
        SCOPED_TRACE(file.file);
        const ImportRead read = ReadGpxFile(GpxFile(file.file));
        EXPECT_EQ(read.problem, file.problem);
        const std::string refusal = ImportRefusal(file.file, read);
        EXPECT_NE(refusal.find(file.said), std::string::npos) << refusal;
        EXPECT_NE(refusal.find("Nothing was imported."), std::string::npos);
        EXPECT_EQ(refusal.find("root:"), std::string::npos) << refusal;
    }
    EXPECT_EQ(ReadGpxFile(GpxFile("broken-bad-point.gpx")).pointsSkipped, 2);

    // Viewed as a track, a file cut short shows what came before the cut.
    AppState app;
    const std::string cut = GpxFile("broken-cut-short.gpx");
    const std::string message = ViewTrackFile(app, cut, ReadTrackFile(cut));
    EXPECT_EQ(app.track.viewedTrack.Count(), 1);
    EXPECT_NE(message.find("damaged at line 7"), std::string::npos) << message;
}

// The document's own entities give their text.
TEST(PointFileReaderTest, TheDocumentsOwnEntitiesGiveTheirText) {
    const ImportRead named = ReadGpxFile(GpxFile("entity-names.gpx"));
    EXPECT_EQ(named.problem, ImportProblem::kNone);
    ASSERT_EQ(named.contents.waypoints.size(), 1u);
    EXPECT_EQ(named.contents.waypoints[0].name, "Hello");
    EXPECT_EQ(named.contents.waypoints[0].description, "Hello from the \u201Charbour\u201D & pier");
}

// A track moving north-east by a little each second.
GpsState FixAt(int step) {
    GpsState gps = testing::MovingFix();
    gps.latitude += step * 0.0001;
    gps.longitude += step * 0.0002;
    return gps;
}

TEST(PointFileReaderTest, TrackFilesOfTheProgramReadBackWithTheirPoints) {
    testing::TemporaryFolder folder;
    for (const std::int32_t format : {kTrackFormatLog, kTrackFormatGpx, kTrackFormatKml}) {
        SCOPED_TRACE(format);
        testing::ManualClock clock({2011, 7, 4, 8, 5, 9, 0});
        const Options options = testing::LoggingOptions(format);
        std::string path;
        DirectTrackWriter writer;
        ASSERT_TRUE(StartTrackFile(options, folder.Path(), clock, path, writer));
        DynamicList<TrackPoint> written;
        for (int step = 0; step < 3; ++step) {
            AppendTrackPoint(options, FixAt(step), clock, path, written, writer);
            clock.AdvanceSeconds(10);
        }
        const ImportRead read = ReadTrackFile(path);
        EXPECT_EQ(read.problem, ImportProblem::kNone);
        EXPECT_EQ(read.pointsSkipped, 0);
        ASSERT_EQ(read.contents.tracks.size(), 1u);
        const std::vector<TrackPoint>& points = read.contents.tracks[0].points;
        ASSERT_EQ(points.size(), 3u);
        written.SeekTo(0);
        for (const TrackPoint& point : points) {
            const TrackPoint& expected = written.Current();
            EXPECT_NEAR(point.latitude, expected.latitude, 1e-5);
            EXPECT_NEAR(point.longitude, expected.longitude, 1e-5);
            EXPECT_EQ(point.time.minute, expected.time.minute);
            EXPECT_EQ(point.time.second, expected.time.second);
            written.MoveNext();
        }
    }

    // A log line that was damaged is skipped, and the user is told so.
    const std::string log = folder.File("20110704080509.log");
    testing::WriteFileBytes(log, testing::ReadFileBytes(log) + "-1.2,52.5,,2011070\r\n");
    AppState app;
    app.options.showTrack = 0;
    const std::string message = ViewTrackFile(app, log, ReadTrackFile(log));
    EXPECT_EQ(app.track.viewedTrack.Count(), 3);
    EXPECT_EQ(app.options.showTrack, 1);
    EXPECT_EQ(app.currentView, kViewWorldMap);
    EXPECT_NE(message.find("with 3 points.\n\nPoints that could not be read and were skipped: 1."),
              std::string::npos)
        << message;
}

TEST(PointFileReaderTest, FilesThatGpsbabelWritesImport) {
    testing::TemporaryFolder folder;
    const std::string points = folder.File("points.csv");
    testing::WriteFileBytes(points,
                            "Name,Latitude,Longitude,Description,Symbol\n"
                            "Harbour,59.9075,10.7365,Ferry pier,Anchor\n"
                            "Bakery,59.9121,10.7462,Open at six,Restaurant\n"
                            "Lookout,59.9203,10.7611,,Scenic Area\n");
    const std::string nmea = TestDataFile("gpsd/haicom-305N.log");
    const std::string gpsbabel = testing::Quoted(TOLVANE_GPSBABEL_PROGRAM);
    // gpsbabel's own count of the recording's track points.
    const testing::ShellResult csv = testing::RunShell(
        gpsbabel + " -t -i nmea -f " + testing::Quoted(nmea) + " -o unicsv -F - 2>&1");
    ASSERT_EQ(csv.exitCode, 0) << csv.output;
    const auto trackPoints =
        static_cast<std::size_t>(std::count(csv.output.begin(), csv.output.end(), '\n') - 1);

    for (const std::string version : {"1.0", "1.1"}) {
        SCOPED_TRACE(version);
        const std::string gpx = folder.File("gpsbabel-" + version + ".gpx");
        const testing::ShellResult made = testing::RunShell(
            gpsbabel + " -i unicsv -f " + testing::Quoted(points) + " -x transform,rte=wpt" +
            " -i nmea -f " + testing::Quoted(nmea) + " -o gpx,gpxver=" + version + " -F " +
            testing::Quoted(gpx) + " 2>&1");
        ASSERT_EQ(made.exitCode, 0) << made.output;

        const ImportRead read = ReadGpxFile(gpx);
        ASSERT_EQ(ImportRefusal(gpx, read), "");
        ASSERT_EQ(read.contents.tracks.size(), 1u);
        EXPECT_EQ(read.contents.tracks[0].points.size(), trackPoints);

        AppState app;
        app.folders = MakeDataFolders(folder.Path() + "/" + version);
        std::filesystem::create_directories(app.folders.root + "/My GPS");
        app.runtime.waypointFile = app.folders.root + "/My GPS/Waypoint.csv";
        const ImportOutcome outcome = ImportIntoProgram(app, read.contents, 0);
        ASSERT_EQ(outcome.failedPath, "");
        DynamicList<GeoPoint> saved;
        EXPECT_EQ(LoadPointFile(app.runtime.waypointFile, saved).recordsRead, 3);
        saved.SeekTo(1);
        EXPECT_EQ(saved.Current().name, "Bakery");
        EXPECT_EQ(saved.Current().category, "Restaurant");
        ASSERT_EQ(outcome.routeFiles,
                  std::vector<std::string>{app.folders.destinationDir + "/Route 1.csv"});
        DynamicList<GeoPoint> route;
        EXPECT_EQ(LoadPointFile(outcome.routeFiles[0], route).recordsRead, 3);
        EXPECT_EQ(app.track.viewedTrack.Count(), static_cast<int>(trackPoints));
    }
}

// A GPX file of bare waypoints, as large as the count makes it.
std::string WriteBareWaypoints(const std::string& path, int count) {
    std::ofstream out(path, std::ios::binary);
    out << "<?xml version=\"1.0\"?>\n<gpx version=\"1.1\" creator=\"test\" "
           "xmlns=\"http://www.topografix.com/GPX/1/1\">\n";
    for (int i = 0; i < count; ++i) out << "<wpt lat=\"1\" lon=\"2\"/>\n";
    out << "</gpx>\n";
    return path;
}

TEST(PointFileReaderTest, AFileOfTooManyPointsStopsAtTheLimitAndSaysWhy) {
    const testing::TemporaryFolder folder;
    const std::string path =
        WriteBareWaypoints(folder.File("many.gpx"), kMostImportPoints + 1);
    const ImportRead read = ReadGpxFile(path);
    EXPECT_EQ(read.problem, ImportProblem::kTooManyPoints);
    EXPECT_EQ(read.contents.waypoints.size(), static_cast<std::size_t>(kMostImportPoints));
    EXPECT_NE(ImportRefusal(path, read).find("more than 500 000 points"), std::string::npos)
        << ImportRefusal(path, read);
}

TEST(PointFileReaderTest, ProgressRisesToTheWholeFileAndCanCancel) {
    const testing::TemporaryFolder folder;
    const std::string path = WriteBareWaypoints(folder.File("some.gpx"), 20000);
    std::vector<double> shares;
    const ImportRead whole = ReadGpxFile(path, [&shares](double share) {
        shares.push_back(share);
        return true;
    });
    EXPECT_EQ(whole.problem, ImportProblem::kNone);
    EXPECT_EQ(whole.contents.waypoints.size(), 20000u);
    ASSERT_GE(shares.size(), 5u);
    EXPECT_TRUE(std::is_sorted(shares.begin(), shares.end()));
    EXPECT_GT(shares.back(), 0.8);
    EXPECT_LE(shares.back(), 1.0);

    const ImportRead cancelled = ReadTrackFile(path, [](double) { return false; });
    EXPECT_EQ(cancelled.problem, ImportProblem::kCancelled);
    EXPECT_LT(cancelled.contents.tracks.size() + cancelled.contents.waypoints.size(), 2u);
}

}  // namespace
}  // namespace tolvane
