#include "core/app/local_settings.h"

#include <gtest/gtest.h>

#include "core/app/commands.h"
#include "tests/core/app/program_fixture.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

bool MultiGnssOf(std::string_view text) {
    AppState app;
    ReadLocalSettings(text, app);
    return app.multiGnss;
}

TEST(LocalSettingsTest, OnlyAReadableLineSetsTheSwitch) {
    EXPECT_TRUE(MultiGnssOf("# kept beside Options.dat\r\n  multi-gnss\t=  1 \r\n"));
    EXPECT_FALSE(MultiGnssOf("multi-gnss = 1\nmulti-gnss = 0\n"));
    EXPECT_FALSE(MultiGnssOf("# multi-gnss = 1"));
    EXPECT_FALSE(MultiGnssOf("multi-gnss = yes\nmulti-gnss 1\nmultignss = 1\n=\n"));
}

TEST(LocalSettingsTest, TheBluetoothChannelIsKeptWhenItIsAnRfcommChannel) {
    AppState app;
    app.runtime.bluetoothChannel = 5;
    AppState read;
    ReadLocalSettings(LocalSettingsText(app), read);
    EXPECT_EQ(read.runtime.bluetoothChannel, 5);
    for (const char* bad : {"bluetooth-channel = 31", "bluetooth-channel = 0",
                            "bluetooth-channel = 3x", "bluetooth-channel = -2"}) {
        AppState kept;
        ReadLocalSettings(bad, kept);
        EXPECT_EQ(kept.runtime.bluetoothChannel, 0) << bad;
    }
}

// The tile maps come back in their order, each line one map; a path that
// could not stand on a line is not written, and reading a file replaces the
// list rather than adding to it.
TEST(LocalSettingsTest, TheTileMapsKeepTheirOrderAndTheFileHoldsTheWholeList) {
    AppState app;
    app.runtime.tileSources = {"/maps/sea chart.mbtiles", "/maps/osm", "/maps/a\nb", "/maps/osm"};
    AppState read;
    read.runtime.tileSources = {"/maps/earlier"};
    ReadLocalSettings(LocalSettingsText(app), read);
    EXPECT_EQ(read.runtime.tileSources,
              (std::vector<std::string>{"/maps/sea chart.mbtiles", "/maps/osm", "/maps/osm"}));
    ReadLocalSettings("tile-source = maps/relative\ntile-source =\n# tile-source = /maps/x\n",
                      read);
    EXPECT_TRUE(read.runtime.tileSources.empty());
}

// The file is written beside Options.dat, read by the next start, and the
// switch reaches the port source when the GPS starts.
TEST(LocalSettingsTest, TheSwitchSurvivesARestartAndReachesThePortSourceAtStart) {
    testing::ProgramFixture first;
    first.program.app.multiGnss = true;
    ASSERT_TRUE(SaveLocalSettings(first.program));
    EXPECT_EQ(LocalSettingsPath(first.program.files.optionsPath),
              first.folder.File("tolvane.conf"));

    testing::ProgramFixture second;
    testing::WriteFileBytes(second.folder.File("tolvane.conf"),
                            testing::ReadFileBytes(first.folder.File("tolvane.conf")));
    LoadLocalSettings(second.program);
    ASSERT_TRUE(second.program.app.multiGnss);
    EXPECT_EQ(second.program.port.talkers, NmeaTalkers::kGpOnly);
    OnCommand(second.program, kCommandStartGps);
    ASSERT_TRUE(second.program.app.gpsRunning);
    EXPECT_EQ(second.program.port.talkers, NmeaTalkers::kMultiGnss);
    OnCommand(second.program, kCommandStopGps);

    // A folder that cannot be written leaves the switch unsaved and says so.
    testing::ProgramFixture third;
    third.program.files.optionsPath = third.folder.File("missing/Options.dat");
    EXPECT_FALSE(SaveLocalSettings(third.program));
}

}  // namespace
}  // namespace tolvane
