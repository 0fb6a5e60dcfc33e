#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/core/test_support.h"
#include "tests/tools/run_tool.h"
#include "tests/tools/shell_command.h"
#include "tools/tolvane-tool/tool_commands.h"

namespace tolvane::tool {
namespace {

TEST(ReplayTest, SummaryCountsTicksFixesAndDroppedSentences) {
    const Result firefly = RunCommand({"replay", testing::TestDataFile("gpsd/firefly-II.log")});
    ASSERT_EQ(firefly.code, kExitOk) << firefly.err;
    EXPECT_NE(firefly.out.find(
                  "23 ticks, 23 fixes, 23 dropped sentences (23 checksum failures, 0 broken)"),
              std::string::npos)
        << firefly.out;

    const Result garmin = RunCommand({"replay", testing::TestDataFile("gpsd/GPSmap-76S.log")});
    EXPECT_NE(garmin.out.find("12 ticks, 0 fixes, 0 dropped"), std::string::npos) << garmin.out;

    const Result garmin48 = RunCommand({"replay", testing::TestDataFile("gpsd/garmin48.log")});
    EXPECT_NE(
        garmin48.out.find("7 ticks, 7 fixes, 1 dropped sentence (1 checksum failure, 0 broken)"),
        std::string::npos)
        << garmin48.out;
}

TEST(ReplayTest, OptionsShapeTheTicks) {
    const std::string log = testing::TestDataFile("gpsd/haicom-305N.log");
    const std::vector<nlohmann::json> moving = JsonLines(RunCommand({"replay", log, "--json"}).out);
    ASSERT_FALSE(moving.empty());
    EXPECT_GT(moving.back()["tripDistanceKm"].get<double>(), 0.1);

    // Every speed of the walk is below 100: position and speed are held.
    const std::vector<nlohmann::json> held =
        JsonLines(RunCommand({"replay", log, "--json", "--unit", "0", "--min-speed", "100"}).out);
    ASSERT_EQ(held.size(), moving.size());
    EXPECT_EQ(held.back()["tripDistanceKm"], 0);
    EXPECT_EQ(held.back()["maxSpeedKnots"], 0);

    testing::TemporaryFolder folder;
    ASSERT_EQ(RunCommand({"options", "reset", folder.File("Options.dat")}).code, kExitOk);
    // The single options win over the settings record, whatever the order.
    const std::vector<nlohmann::json> smoothed =
        JsonLines(RunCommand({"replay", log, "--processor", "2", "--options",
                              folder.File("Options.dat"), "--json"})
                      .out);
    ASSERT_EQ(smoothed.size(), moving.size());
    EXPECT_NE(smoothed.back()["latitude"], moving.back()["latitude"]);
}

TEST(ReplayTest, BadArgumentsGiveUsageAndAMissingLogNamesTheFile) {
    for (const Arguments& arguments :
         {Arguments{"replay"}, Arguments{"replay", "a.log", "b.log"},
          Arguments{"replay", "a.log", "--frobnicate"}, Arguments{"replay", "a.log", "--unit"},
          Arguments{"replay", "a.log", "--processor", "x"},
          Arguments{"replay", "a.log", "--processor", "3"},
          Arguments{"replay", "a.log", "--min-speed", "-3"},
          Arguments{"replay", "a.log", "--min-speed", "nan"}}) {
        const Result result = RunCommand(arguments);
        EXPECT_EQ(result.code, kExitUsage);
        EXPECT_NE(result.err.find("Usage: tolvane-tool"), std::string::npos);
    }
    testing::TemporaryFolder folder;
    const Result missing = RunCommand({"replay", folder.File("none.log")});
    EXPECT_EQ(missing.code, kExitFailure);
    EXPECT_NE(missing.err.find(folder.File("none.log")), std::string::npos);

    const Result badOptions =
        RunCommand({"replay", folder.File("none.log"), "--options", folder.File("none.dat")});
    EXPECT_EQ(badOptions.code, kExitFailure);
    EXPECT_NE(badOptions.err.find(folder.File("none.dat") + ": No such file"), std::string::npos);

    // A settings record goes through the checks of the start-up load.
    const Result notARecord =
        RunCommand({"replay", folder.File("none.log"), "--options", "/bin/ls"});
    EXPECT_EQ(notARecord.code, kExitFailure);
    EXPECT_NE(notARecord.err.find("/bin/ls is not a settings record of version 2.4.0.3151"),
              std::string::npos)
        << notARecord.err;
}

TEST(ReplayTest, ARecordingWithoutUsableSentencesPlaysInBoundedMemoryAndTheSummarySaysWhy) {
    testing::TemporaryFolder folder;
    std::string otherTalker;
    for (int second = 0; second < 3600; ++second) {
        otherTalker += "$GNRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*74\r\n";
    }
    testing::WriteFileBytes(folder.File("gn.log"), otherTalker);
    const Result result = RunCommand({"replay", folder.File("gn.log")});
    EXPECT_NE(result.out.find(
                  "0 fixes: 3600 $GNRMC sentences were ignored; this program reads GP sentences"),
              std::string::npos)
        << result.out;

    // 40 MB without a line end, through a process that may not hold them.
    const testing::ShellResult zeros = testing::RunShell(
        "ulimit -v 40000; head -c 40000000 /dev/zero | " + std::string(TOLVANE_PROGRAM_DIR) +
        "/tolvane-tool replay /dev/stdin 2>&1");
    EXPECT_EQ(zeros.exitCode, 0) << zeros.output;
    EXPECT_NE(zeros.output.find("40000000 zero bytes"), std::string::npos) << zeros.output;
}

// Receivers that combine satellite systems send their position as GN:
// without the multi-GNSS reading no second has a fix, with it every second
// the receiver had one has it too, where the receiver was, with the
// satellites of every system.
TEST(ReplayTest, GnCapturesHaveFixesOnlyWithTheMultiGnssReading) {
    struct GnCapture {
        const char* name;
        std::size_t seconds;
        int fixes;
        double latitude;
        double longitude;
        int lastInView;
    };
    const GnCapture kCaptures[] = {
        {"ublox-8.log", 5, 5, 44.0689, -121.3142, 25},             // Bend, Oregon
        {"ublox-neo-m9n-nmea.log", 5, 5, 38.1105, -122.6269, 43},  // Novato, California
        {"bu353-glonass.log", 19, 9, 55.6866, 37.6215, 22},        // Moscow; the fix is lost
        {"unicore-um621.log", 3, 3, 44.0688, -121.3141, 44},       // each signal counted once
    };
    for (const GnCapture& capture : kCaptures) {
        SCOPED_TRACE(capture.name);
        const std::string log = testing::TestDataFile(std::string("gnss/") + capture.name);
        for (const nlohmann::json& tick : JsonLines(RunCommand({"replay", log, "--json"}).out)) {
            EXPECT_EQ(tick["fixValid"], 0);
        }
        const Result result = RunCommand({"replay", log, "--json", "--multi-gnss"});
        ASSERT_EQ(result.code, kExitOk) << result.err;
        const std::vector<nlohmann::json> ticks = JsonLines(result.out);
        ASSERT_EQ(ticks.size(), capture.seconds);
        int fixes = 0;
        for (const nlohmann::json& tick : ticks) {
            if (tick["fixValid"] == 0) continue;
            ++fixes;
            EXPECT_NEAR(tick["latitude"].get<double>(), capture.latitude, 0.001);
            EXPECT_NEAR(tick["longitude"].get<double>(), capture.longitude, 0.001);
        }
        EXPECT_EQ(fixes, capture.fixes);
        EXPECT_EQ(ticks.back()["satellitesInView"], capture.lastInView);
    }
}

}  // namespace
}  // namespace tolvane::tool
