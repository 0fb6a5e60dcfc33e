#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <numbers>

#include "core/app/commands.h"
#include "core/app/keys.h"
#include "core/app/map_commands.h"
#include "core/geo/coordinate_text.h"
#include "core/maps/map_files.h"
#include "core/maps/recent_maps.h"
#include "tests/core/app/program_fixture.h"

namespace tolvane {
namespace {

constexpr int kWidth = 4000;
constexpr int kHeight = 3000;
// Within one whole degree of latitude the projection is linear in it, so
// a picture linear in latitude and longitude is exactly affine in the
// plane and a calibration must give its corners back exactly.
constexpr double kNorth = -27.20, kWest = 153.04;
constexpr double kDegreesPerPixel = 0.00001;

struct Earth {
    double latitude;
    double longitude;
};

// A scanned map turned by `turn` degrees: where its pixel lies on the earth.
Earth Truth(double x, double y, double turn) {
    const double angle = turn * std::numbers::pi / 180;
    const double east = std::cos(angle) * x - std::sin(angle) * y;
    const double south = std::sin(angle) * x + std::cos(angle) * y;
    return {kNorth - south * kDegreesPerPixel, kWest + east * kDegreesPerPixel};
}

RefPoint PointAt(double x, double y, double turn) {
    const Earth earth = Truth(x, y, turn);
    return {true, x, y, earth.latitude, earth.longitude};
}

// Every corner of the picture, placed on the earth by the truth, comes
// back through the fit within a pixel.
void ExpectCorners(const Calibration& calibration, double turn) {
    const CalibrationFit fit = FitCalibration(calibration);
    ASSERT_TRUE(fit.valid);
    for (const auto& [x, y] : {std::pair{0, 0}, {kWidth, 0}, {0, kHeight}, {kWidth, kHeight}}) {
        const Earth earth = Truth(x, y, turn);
        const MapProjection::Point plane = ToPlane(earth.latitude, earth.longitude);
        const MapProjection::Point pixel = fit.toPicture.Apply(plane.x, plane.y);
        EXPECT_NEAR(pixel.x, x, 1.0) << x << "," << y;
        EXPECT_NEAR(pixel.y, y, 1.0) << x << "," << y;
    }
}

Calibration FivePoints(double turn) {
    Calibration calibration;
    const double places[kRefPointCount][2] = {
        {300, 200}, {3700, 350}, {500, 2800}, {3500, 2600}, {2000, 1500}};
    for (int i = 0; i < kRefPointCount; ++i) {
        calibration.points[i] = PointAt(places[i][0], places[i][1], turn);
    }
    return calibration;
}

TEST(CalibrationTest, TwoAndFivePointsGiveTheCornersBackAndAWrongPointStandsOut) {
    Calibration two;
    two.points[1] = PointAt(500, 400, 0);
    two.points[3] = PointAt(3500, 2600, 0);
    ExpectCorners(two, 0);

    const Calibration five = FivePoints(12);
    ExpectCorners(five, 12);
    EXPECT_LT(FitCalibration(five).rmsMetres, 0.01);

    // Point 3 given 0.001 degree (111 m) too far north.
    Calibration wrong = five;
    wrong.points[2].latitude += 0.001;
    const CalibrationFit fit = FitCalibration(wrong);
    EXPECT_EQ(WorstPoint(wrong, fit), 2);
    // The other four hold it exactly 0.001 degree of latitude (111 m) off.
    EXPECT_NEAR(fit.residualMetres[2], 111, 1);
    MapState map;
    map.calibration = wrong;
    map.fit = fit;
    const std::string residuals = RefPointResidualsText(map);
    EXPECT_EQ(residuals.rfind("1: ", 0), 0u) << residuals;
    EXPECT_NE(residuals.find("   3: 111."), std::string::npos) << residuals;
    EXPECT_NE(residuals.find(" m   RMS "), std::string::npos) << residuals;
    wrong.points[2] = RefPoint{};
    ExpectCorners(wrong, 12);

    // Points that span no area calibrate nothing.
    Calibration row;
    row.points[0] = PointAt(100, 500, 0);
    row.points[1] = PointAt(3000, 500, 0);
    EXPECT_FALSE(FitCalibration(row).valid);
    row.points[2] = PointAt(2000, 500, 0);
    EXPECT_FALSE(FitCalibration(row).valid);
}

TEST(CalibrationTest, PointFiveIsOfferedOnceThreePointsAreSet) {
    Calibration calibration;
    calibration.points[0] = PointAt(0, 0, 0);
    calibration.points[1] = PointAt(10, 10, 0);
    EXPECT_TRUE(CanSetRefPoint(calibration, 3));
    EXPECT_FALSE(CanSetRefPoint(calibration, 4));
    calibration.points[3] = PointAt(10, 0, 0);
    EXPECT_TRUE(CanSetRefPoint(calibration, 4));
}

void WriteText(const std::string& path, const std::string& text) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    ASSERT_NE(file, nullptr);
    std::fputs(text.c_str(), file);
    std::fclose(file);
}

// An OziExplorer Point line: degrees and decimal minutes with hemispheres.
std::string OziPoint(int number, const RefPoint& point) {
    const double lat = std::fabs(point.latitude), lon = std::fabs(point.longitude);
    char line[200];
    std::snprintf(
        line, sizeof line,
        "Point%02d,xy,%5.0f,%5.0f,in, deg,%4d,%8.4f,%c,%4d,%8.4f,%c, grid,   ,   ,   ,N\r\n",
        number, point.x, point.y, static_cast<int>(lat), (lat - std::floor(lat)) * 60,
        point.latitude < 0 ? 'S' : 'N', static_cast<int>(lon), (lon - std::floor(lon)) * 60,
        point.longitude < 0 ? 'W' : 'E');
    return line;
}

TEST(CalibrationTest, RefPointOziAndWorldFilesRoundTrip) {
    testing::TemporaryFolder folder;
    const std::string refDir = folder.File("Reference Points");
    const std::string picture = folder.File("scan.png");

    // The program's own file keeps every point as it was placed.
    Calibration placed = FivePoints(0);
    placed.points[1] = RefPoint{};
    const std::string rpt = folder.File("placed.rpt");
    ASSERT_TRUE(WriteRefPoints(rpt, placed, kWidth, kHeight));
    Calibration read;
    ASSERT_TRUE(ReadRefPoints(rpt, read));
    for (int i = 0; i < kRefPointCount; ++i) {
        EXPECT_EQ(read.points[i].set, placed.points[i].set);
        EXPECT_NEAR(read.points[i].x, placed.points[i].x, 1e-3);
        EXPECT_NEAR(read.points[i].latitude, placed.points[i].latitude, 1e-8);
    }

    // A world file beside the picture: the middle of the top-left pixel.
    EXPECT_EQ(FindCalibration(picture, refDir, kWidth, kHeight).Count(), 0);
    char world[200];
    std::snprintf(world, sizeof world, "%.10f\n0\n0\n%.10f\n%.10f\n%.10f\n", kDegreesPerPixel,
                  -kDegreesPerPixel, kWest + kDegreesPerPixel / 2, kNorth - kDegreesPerPixel / 2);
    WriteText(folder.File("scan.pgw"), world);
    ExpectCorners(FindCalibration(picture, refDir, kWidth, kHeight), 0);

    // An OziExplorer .map wins over the world file; its unused Point lines
    // carry no pixels.
    const Calibration turned = FivePoints(5);
    std::string ozi =
        "OziExplorer Map Data File Version 2.2\r\nscan\r\nscan.png\r\n1 ,Map Code,\r\n"
        "WGS 84,WGS 84,   0.0000,   0.0000,WGS 84\r\n";
    for (int i = 0; i < kRefPointCount; ++i) ozi += OziPoint(i + 1, turned.points[i]);
    ozi += "Point06,xy,     ,     ,in, deg,    ,        ,N,    ,        ,W, grid,   ,   ,   ,N\r\n";
    WriteText(folder.File("scan.map"), ozi);
    ExpectCorners(FindCalibration(picture, refDir, kWidth, kHeight), 5);

    // The user's own points win over both.
    std::filesystem::create_directories(refDir);
    ASSERT_TRUE(WriteRefPoints(RefPointPath(refDir, picture), placed, kWidth, kHeight));
    EXPECT_EQ(FindCalibration(picture, refDir, kWidth, kHeight).Count(), 4);
}

std::vector<std::string> Recent(const Options& options) {
    std::vector<std::string> entries;
    for (int i = 0; i < kRecentMapCount; ++i) entries.push_back(RecentMapText(options, i));
    return entries;
}

TEST(RecentMapsTest, EntriesShiftDownAndAMissingMapLeavesTheList) {
    testing::ProgramFixture fixture;
    Options& options = fixture.program.app.options;
    const std::string there = fixture.folder.File("there.png");
    WriteText(there, "not even a picture");
    for (const std::string& path :
         {fixture.folder.File("gone.jpg"), there, std::string("/b.gif")}) {
        AddRecentMap(options, path);
    }
    using Entries = std::vector<std::string>;
    EXPECT_EQ(Recent(options), (Entries{"b.gif", "there.png", "gone.jpg", "Empty", "Empty"}));
    EXPECT_EQ(TakeRecentMap(fixture.program, 1), there);
    EXPECT_EQ(Recent(options), (Entries{"there.png", "b.gif", "gone.jpg", "Empty", "Empty"}));
    AddRecentMap(options, "/b.gif");
    EXPECT_EQ(Recent(options), (Entries{"b.gif", "there.png", "gone.jpg", "Empty", "Empty"}));

    EXPECT_EQ(TakeRecentMap(fixture.program, 2), "");
    EXPECT_EQ(Recent(options), (Entries{"b.gif", "there.png", "Empty", "Empty", "Empty"}));
    ASSERT_EQ(fixture.host.messages.size(), 1u);
    EXPECT_NE(fixture.host.messages[0].text.find("gone.jpg"), std::string::npos);

    for (const char* path : {"/1", "/2", "/3", "/4"}) AddRecentMap(options, path);
    EXPECT_EQ(Recent(options), (Entries{"4", "3", "2", "1", "b.gif"}));
    EXPECT_FALSE(IsMapCommandAvailable(fixture.program.app, kCommandMap));
}

TEST(RecentMapsTest, PlacingAPointTakesTheKeysAndKeepsThePointInTheRptFile) {
    testing::ProgramFixture fixture;
    Program& program = fixture.program;
    program.app.folders.refPointDir = fixture.folder.File("Reference Points");
    auto picture = std::make_shared<MapPicture>();
    picture->width = kWidth;
    picture->height = kHeight;
    SetLoadedMap(program.app, fixture.folder.File("scan.jpg"), picture);

    EXPECT_EQ(OnCommand(program, kCommandLastRefPoint), CommandResult::kUnavailable);
    EXPECT_EQ(OnCommand(program, kCommandFirstRefPoint + 1), CommandResult::kDone);
    EXPECT_EQ(program.app.currentView, kViewMap);
    OnKeyDown(program, Key::kDigit1);  // ignored while placing
    OnKeyDown(program, Key::kRight);
    EXPECT_EQ(program.app.currentView, kViewMap);
    EXPECT_GT(program.app.map.crossX, kWidth / 2);
    OnKeyDown(program, Key::kEnter);
    EXPECT_EQ(fixture.host.events.back(), "dialog " + std::to_string(kCommandPlaceRefPoint));

    PlaceRefPoint(program, -27.25, 153.5);
    EXPECT_EQ(program.app.map.placing, -1);
    Calibration saved;
    ASSERT_TRUE(ReadRefPoints(fixture.folder.File("Reference Points/scan.rpt"), saved));
    EXPECT_EQ(saved.Count(), 1);
    EXPECT_NEAR(saved.points[1].x, program.app.map.crossX, 1e-3);
    EXPECT_EQ(saved.points[1].latitude, -27.25);
}

TEST(CoordinateTextTest, ReadsWhatTheProgramShowsAndWhatUsersType) {
    EXPECT_NEAR(*ParseCoordinate("27\u00B012'39.28\" S", true), -27.2109111, 1e-7);
    EXPECT_NEAR(*ParseCoordinate("153\u00B003.1201' E", false), 153.0520017, 1e-7);
    EXPECT_NEAR(*ParseCoordinate("-27.2109", true), -27.2109, 1e-12);
    EXPECT_NEAR(*ParseCoordinate("w 5 30", false), -5.5, 1e-12);
    EXPECT_NEAR(*ParseCoordinate("S   27\u00B001'60.00\"", true), -27.0333333, 1e-7);
    for (const char* bad : {"", "91", "27 E", "1 2 3 4", "27 61", "N 1 S"}) {
        EXPECT_FALSE(ParseCoordinate(bad, true)) << bad;
    }
}

}  // namespace
}  // namespace tolvane
