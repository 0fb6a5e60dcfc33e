#include "core/app/options_form.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "core/app/commands.h"
#include "core/app/main_timer.h"
#include "core/app/startup.h"
#include "core/geo/formatting.h"
#include "core/geo/units.h"
#include "tests/core/app/program_fixture.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;

Options SavedOptions(const testing::ProgramFixture& fixture) {
    Options saved{};
    EXPECT_TRUE(LoadOptions(fixture.folder.File("Options.dat"), saved, 1));
    return saved;
}

bool Contains(const std::vector<std::string>& events, const std::string& event) {
    return std::find(events.begin(), events.end(), event) != events.end();
}

// The form opens on the settings, and OK stores every control in the form
// the record keeps, applies the backlight at once and saves the file.
TEST(OptionsDialogTest, OkStoresEveryControlAndSavesAtOnce) {
    testing::ProgramFixture fixture;
    Program& program = fixture.program;
    ASSERT_TRUE(StartAfterWindow(program));
    EXPECT_TRUE(program.screenHeld);  // "Keep backlight on" is on by default
    OptionsForm form = OpenOptionsForm(program.app);
    EXPECT_EQ(form.minimumSpeed, "0");
    EXPECT_EQ(form.proximityRange, "200");
    EXPECT_EQ(form.testSentence, "You have arrived at your destination.");
    EXPECT_EQ(form.storageLocation, fixture.folder.File("Documents"));

    form.autoBluetooth = form.startGpsAtStartup = form.loadPoiAtStartup = true;
    form.alwaysUseDefaultRange = true;
    form.keepBacklightOn = false;
    form.unitSystem = kNautical;
    form.coordinateFormat = kDecimalDeg;
    form.dataProcessor = 2;
    form.minimumSpeed = "-5";
    form.proximityRange = " 350 ";
    fixture.host.events.clear();
    ApplyOptionsForm(program, form);
    Options saved = SavedOptions(fixture);
    EXPECT_EQ(saved.autoBluetooth + saved.startGpsAtStartup + saved.loadPoiAtStartup +
                  saved.alwaysUseDefaultRange,
              4);
    EXPECT_EQ(saved.keepBacklightOn, 0);
    EXPECT_EQ(saved.unitSystem, kNautical);
    EXPECT_EQ(saved.coordinateFormat, kDecimalDeg);
    EXPECT_EQ(saved.dataProcessor, 2);
    EXPECT_EQ(saved.minimumSpeed, 0.0);
    EXPECT_EQ(saved.defaultProximityRange, 350);
    EXPECT_TRUE(Contains(fixture.host.events, "release screen"));
    EXPECT_FALSE(program.screenHeld);

    form = OpenOptionsForm(program.app);
    form.keepBacklightOn = true;
    form.minimumSpeed = "12.5";
    form.proximityRange = "12 m";  // not a whole number
    ApplyOptionsForm(program, form);
    saved = SavedOptions(fixture);
    EXPECT_EQ(saved.minimumSpeed, 12.5);
    EXPECT_EQ(saved.defaultProximityRange, 0);
    EXPECT_TRUE(Contains(fixture.host.events, "hold screen"));
    EXPECT_EQ(OpenOptionsForm(program.app).minimumSpeed, "12.5");
    program.app.options.minimumSpeed = 1e-7;  // shown as typed, not as "1e-07"
    EXPECT_EQ(MinimumSpeedFromField(OpenOptionsForm(program.app).minimumSpeed), 1e-7);

    // Numbers beyond what a user means stay harmless.
    EXPECT_EQ(MinimumSpeedFromField("nan"), 0.0);
    EXPECT_EQ(MinimumSpeedFromField("+3.25 km/h"), 3.25);
    EXPECT_EQ(ProximityRangeFromField("99999999999999999999"), 2147483647);
}

// While the dialog is open, the unit labels follow the chosen system and
// Test waits for an engine and a sentence; the combos read the language
// file, and the current storage location is always one of the choices.
TEST(OptionsDialogTest, TheOpenDialogFollowsItsControls) {
    const std::pair<int, UnitLabels> labels[] = {
        {kMetric, {"km/h", "m"}}, {kImperial, {"MPH", "ft"}}, {kNautical, {"kts", "ft"}}};
    for (const auto& [system, expected] : labels) {
        EXPECT_EQ(OptionsUnitLabels(system).speed, expected.speed);
        EXPECT_EQ(OptionsUnitLabels(system).range, expected.range);
    }

    testing::ProgramFixture fixture;
    OptionsForm form = OpenOptionsForm(fixture.program.app);
    EXPECT_FALSE(CanTestVoice(fixture.program, form));
    fixture.host.engineProgram = "/usr/bin/espeak-ng";
    EXPECT_TRUE(CanTestVoice(fixture.program, form));
    form.testSentence.clear();
    EXPECT_FALSE(CanTestVoice(fixture.program, form));

    EXPECT_EQ(
        OptionsComboEntries(OptionsCombo::kUnitSystem),
        (std::vector<std::string>{"Metric (km/h, m)", "Imperial (MPH, ft)", "Nautical (kts, ft)"}));
    EXPECT_EQ(OptionsComboEntries(OptionsCombo::kTrackLogFormat).size(), 3u);
    EXPECT_EQ(OptionsComboEntries(OptionsCombo::kCoordinateFormat)[1], "WGS84 dd°mm.mmmm'");

    const std::vector<std::string> machine = {"/home/a/Documents", "/media/a/CARD"};
    EXPECT_EQ(StorageChoices(machine, "/media/a/card"), machine);
    EXPECT_EQ(StorageChoices(machine, "/mnt/gone").front(), "/mnt/gone");
    EXPECT_EQ(StorageChoiceIndex(machine, "/media/a/card"), 1);
    EXPECT_EQ(StorageChoiceIndex(machine, "/mnt/gone"), 0);
}

// A new storage location gets the folder tree and its own waypoint file;
// the same location in another letter case is no change at all.
TEST(OptionsDialogTest, ANewStorageLocationMovesTheDataTreeAndTheSameOneChangesNothing) {
    testing::ProgramFixture fixture;
    Program& program = fixture.program;
    ASSERT_TRUE(StartAfterWindow(program));
    const std::string card = fixture.folder.File("Card");
    fs::create_directories(card + "/My GPS");
    testing::WriteFileBytes(card + "/My GPS/Waypoint.csv", "11.5,48.1,Home\r\n");

    OptionsForm form = OpenOptionsForm(program.app);
    form.storageLocation = card;
    ApplyOptionsForm(program, form);
    for (const char* folder :
         {"Reference Points", "Track Log", "NMEA0183", "POI", "Destinations"}) {
        EXPECT_TRUE(fs::is_directory(card + "/My GPS/" + folder)) << folder;
    }
    EXPECT_EQ(program.app.points.waypoints.Count(), 1);
    Options saved = SavedOptions(fixture);
    EXPECT_EQ(ReadWideField(saved.storageLocation), card);
    EXPECT_EQ(ReadWideField(saved.waypointFile), card + "/My GPS/Waypoint.csv");

    form.storageLocation = fixture.folder.File("CARD");
    ApplyOptionsForm(program, form);
    EXPECT_FALSE(fs::exists(form.storageLocation));
    EXPECT_EQ(program.app.runtime.storageLocation, card);
    EXPECT_EQ(ReadWideField(SavedOptions(fixture).storageLocation), card);
}

// While logging, a new track format or a new storage location starts a new
// track file, and the NMEA log begins when switched on and moves with the
// storage; with the GPS stopped only the settings change.
TEST(OptionsDialogTest, TheRunningLogsRestartWhereTheyMustAndOnlyThere) {
    testing::ProgramFixture fixture;
    Program& program = fixture.program;
    AppState& app = program.app;
    ASSERT_TRUE(StartAfterWindow(program));
    app.options.trackLoggerEnabled = 1;
    OptionsForm form = OpenOptionsForm(app);
    form.trackLogFormat = kTrackFormatGpx;
    form.logNmea = true;
    ApplyOptionsForm(program, form);
    EXPECT_EQ(app.options.trackLogFormat, kTrackFormatGpx);
    EXPECT_TRUE(app.track.currentPath.empty());
    EXPECT_TRUE(fs::is_empty(app.folders.trackLogDir));
    EXPECT_TRUE(program.port.NmeaLogPath().empty());

    form.trackLogFormat = kTrackFormatLog;
    form.logNmea = false;
    ApplyOptionsForm(program, form);
    OnCommand(program, kCommandStartGps);
    ASSERT_TRUE(app.gpsRunning);
    TrackTimerProc(app, fixture.host);
    const std::string firstFile = app.track.currentPath;
    ASSERT_TRUE(firstFile.ends_with(".log"));

    form.trackLogFormat = kTrackFormatKml;
    form.logNmea = true;
    ApplyOptionsForm(program, form);
    EXPECT_EQ(app.track.currentPath.substr(0, firstFile.size() - 4),
              firstFile.substr(0, firstFile.size() - 4));
    EXPECT_TRUE(app.track.currentPath.ends_with(".kml"));
    EXPECT_TRUE(fs::exists(app.track.currentPath));
    EXPECT_TRUE(program.port.logNmea);
    EXPECT_TRUE(program.port.NmeaLogPath().starts_with(app.folders.nmeaDir + "/"));

    const std::string card = fixture.folder.File("Card");
    form.storageLocation = card;
    ApplyOptionsForm(program, form);
    EXPECT_TRUE(app.track.currentPath.starts_with(card + "/My GPS/Track Log/"));
    EXPECT_TRUE(app.track.currentPath.ends_with(".kml"));
    EXPECT_TRUE(program.port.NmeaLogPath().starts_with(card + "/My GPS/NMEA0183/"));

    const std::string trackFile = app.track.currentPath;
    form.logNmea = false;
    ApplyOptionsForm(program, form);
    EXPECT_FALSE(program.port.logNmea);
    EXPECT_EQ(app.track.currentPath, trackFile);
}

}  // namespace
}  // namespace tolvane
