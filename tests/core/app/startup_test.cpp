#include "core/app/startup.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "core/base/language_file.h"
#include "core/base/string_manager.h"
#include "tests/core/app/program_fixture.h"
#include "tests/core/app/recording_host.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;

TEST(StartupTest, AMissingLanguageFileIsReportedOnceWithTheFixedCaption) {
    testing::TemporaryFolder folder;
    folder.UseAsProgramFolder();
    testing::RecordingHost host;
    EXPECT_FALSE(LoadLanguageStrings(host, ""));
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(host.messages[0].text,
              "Load language file failed!\n\nYour Tolvane GPS Utilities installation may have "
              "been damaged.");
    EXPECT_EQ(host.messages[0].caption, "Tolvane GPS Utilities");
    EXPECT_EQ(CStringManager::GetInstance().GetString(10000), nullptr);
    EXPECT_EQ(ProductTitle(), "Tolvane GPS Utilities");  // the built-in English

    testing::WriteFileBytes(folder.File("tolvane_ENU.dat"),
                            EncodeLanguageFile({{10000, "Tolvane GPS Utilities"}}));
    EXPECT_TRUE(LoadLanguageStrings(host, ""));
    EXPECT_EQ(host.messages.size(), 1u);
}

// Night view and full screen are replayed through their toggles, the screen
// is held before the timers start, and the GPS starts last, once the data
// tree (with its NMEA folder) exists.
TEST(StartupTest, AfterTheWindowTheStepsRunInTheirOrder) {
    testing::ProgramFixture fixture;
    Options& options = fixture.program.app.options;
    options.nightView = 1;
    options.fullScreen = 1;
    options.keepBacklightOn = 1;
    options.startGpsAtStartup = 1;
    ASSERT_TRUE(StartAfterWindow(fixture.program));
    EXPECT_EQ(fixture.host.events,
              (std::vector<std::string>{"repaint", "repaint", "hold screen", "timer 1000",
                                        "timer 1000", "repaint", "timer 1000", "repaint"}));
    EXPECT_EQ(options.nightView, 1);
    EXPECT_EQ(options.fullScreen, 1);
    EXPECT_TRUE(fixture.program.app.gpsRunning);
    EXPECT_EQ(fixture.program.port.links.nmeaFolder,
              fixture.folder.File("Documents/My GPS/NMEA0183"));
    EXPECT_TRUE(fs::is_directory(fixture.program.port.links.nmeaFolder));
}

TEST(StartupTest, AMainTimerThatFailsEndsTheProgramAndATrackTimerThatFailsDoesNot) {
    testing::ProgramFixture mainFails;
    mainFails.host.timerToFail = 1;
    EXPECT_FALSE(StartAfterWindow(mainFails.program));
    EXPECT_EQ(mainFails.host.events,
              (std::vector<std::string>{
                  "hold screen", "timer 1000",
                  "message Critical Error: 0x08200a12\n\nThe program will now exit."}));
    EXPECT_FALSE(fs::exists(mainFails.folder.File("Documents")));

    testing::ProgramFixture trackFails;
    trackFails.host.timerToFail = 2;
    EXPECT_TRUE(StartAfterWindow(trackFails.program));
    ASSERT_EQ(trackFails.host.messages.size(), 1u);
    EXPECT_EQ(trackFails.host.messages[0].text,
              "Create Track Timer failed: 0x08200a13\n\nPress OK to continue...");
    EXPECT_TRUE(fs::is_directory(trackFails.folder.File("Documents/My GPS/Track Log")));
}

TEST(StartupTest, ASquareScreenUses110DpiAndTheSmallLayout) {
    testing::ProgramFixture fixture;
    Program& program = fixture.program;
    const WindowSetup square = PrepareWindow(program, {96, 96, 320, 320});
    EXPECT_EQ(program.screen.dpiX, 110);
    EXPECT_EQ(program.screen.dpiY, 110);
    EXPECT_EQ(square.fonts.BaseHeight(), 17);
    EXPECT_FALSE(square.largeLayout);

    const WindowSetup sharp = PrepareWindow(program, {192, 192, 480, 640});
    EXPECT_EQ(program.screen.dpiY, 192);
    EXPECT_EQ(sharp.fonts.BaseHeight(), 30);
    EXPECT_TRUE(sharp.largeLayout);
    EXPECT_FALSE(PrepareWindow(program, {96, 96, 480, 640}).largeLayout);
    EXPECT_TRUE(PrepareWindow(program, {110, 110, 320, 240}).largeLayout);
}

TEST(StartupTest, TheDataTreeIsMadeCompletedOrLeftAloneForAFileNamedMyGps) {
    testing::TemporaryFolder folder;
    const std::string documents = folder.File("Documents");
    const std::string tree[] = {"Reference Points", "Track Log", "NMEA0183", "POI/My POI",
                                "Destinations"};
    AppState fresh;  // no storage location: the documents folder
    PrepareDataFolders(fresh, documents + "/");
    EXPECT_EQ(fresh.runtime.storageLocation, documents);
    for (const std::string& name : tree) {
        EXPECT_TRUE(fs::is_directory(documents + "/My GPS/" + name)) << name;
    }
    EXPECT_EQ(fresh.folders.poiDir, documents + "/My GPS/POI/My POI");

    const std::string card = folder.File("card");
    fs::create_directories(card + "/My GPS/Track Log");
    AppState partial;
    partial.runtime.storageLocation = card;
    PrepareDataFolders(partial, documents);
    EXPECT_EQ(partial.folders.root, card);
    for (const std::string& name : tree) {
        EXPECT_TRUE(fs::is_directory(card + "/My GPS/" + name)) << name;
    }

    const std::string blocked = folder.File("blocked");
    fs::create_directories(blocked);
    testing::WriteFileBytes(blocked + "/My GPS", "not a folder");
    AppState file;
    file.runtime.storageLocation = blocked;
    PrepareDataFolders(file, documents);
    EXPECT_EQ(file.folders.poiDir, blocked + "/My GPS/POI");
    EXPECT_EQ(fs::file_size(blocked + "/My GPS"), 12u);

    AppState removedCard;  // a location whose parent is gone cannot be made
    removedCard.runtime.storageLocation = folder.File("gone/card");
    PrepareDataFolders(removedCard, documents);
    EXPECT_EQ(removedCard.folders.root, documents);
    EXPECT_EQ(removedCard.runtime.storageLocation, documents);
    DefaultPointLocations(removedCard);
    EXPECT_EQ(removedCard.runtime.poiFolder, documents + "/My GPS/POI/My POI");
    EXPECT_EQ(removedCard.runtime.waypointFile, documents + "/My GPS/Waypoint.csv");
}

TEST(StartupTest, ThePointListsLoadTheWaypointFileAndThePoiFolderWhenAsked) {
    testing::TemporaryFolder folder;
    AppState app;
    PrepareDataFolders(app, folder.Path());
    DefaultPointLocations(app);
    testing::WriteFileBytes(app.runtime.waypointFile, "11.5,48.1,Home\r\n");
    testing::WriteFileBytes(app.folders.poiDir + "/b.CSV", "2,1,B\r\n2,2,C\r\n");
    testing::WriteFileBytes(app.folders.poiDir + "/a.csv", "1,1,A\r\n");
    testing::WriteFileBytes(app.folders.poiDir + "/notes.txt", "3,3,D\r\n");
    LoadPointLists(app);
    EXPECT_EQ(app.points.waypoints.Count(), 1);
    EXPECT_EQ(app.points.pois.Count(), 0);

    // Loading again, as the Options dialog does, replaces the lists.
    app.options.loadPoiAtStartup = 1;
    LoadPointLists(app);
    EXPECT_EQ(app.points.waypoints.Count(), 1);
    ASSERT_EQ(app.points.pois.Count(), 3);
    app.points.pois.SeekTo(0);
    EXPECT_EQ(app.points.pois.Current().name, "A");
}

}  // namespace
}  // namespace tolvane
