#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string_view>

#include "tests/core/test_support.h"
#include "tests/tools/run_tool.h"
#include "tests/tools/shell_command.h"
#include "tools/replay/recording_device.h"
#include "tools/tolvane-tool/tool_commands.h"

namespace tolvane::tool {
namespace {

std::vector<nlohmann::json> Ticks(const std::string& out) {
    std::vector<nlohmann::json> ticks;
    std::istringstream lines(out);
    for (std::string line; std::getline(lines, line);) ticks.push_back(nlohmann::json::parse(line));
    return ticks;
}

TEST(SplitIntoSecondsTest, SecondsBeginAtEachRmcLineWithANewTime) {
    const std::string recording =
        "# header\n$GPGGA,000000,,,,,0,00*00\r\n"  // before the first RMC: first second
        "$GPRMC,101500,A,,,,,,,040711*00\r\n"      // begins the first second
        "$GPRMC,101500,A,,,,,,,040711*00\r\n"      // same time: same second
        "x$GPRMC,101502,A,,,,,,,040711*00\n"       // not at a line start
        "$GPRMC,101501,V,,,,,,,040711*FF\n"        // a bad checksum still begins one
        "$GPRMC,996161,V,,,,,,,040711*FF\n";       // no calendar time
    const std::vector<RecordedSecond> seconds = SplitIntoSeconds(recording);
    ASSERT_EQ(seconds.size(), 3u);
    EXPECT_EQ(seconds[0].begin, 0u);
    EXPECT_EQ(recording.substr(seconds[1].begin, 14), "$GPRMC,101501,");
    EXPECT_EQ(seconds[0].end, seconds[1].begin);
    EXPECT_EQ(seconds[1].end, seconds[2].begin);
    EXPECT_EQ(seconds[2].end, recording.size());
    EXPECT_EQ(seconds[0].utc, *CivilToFileTime({2011, 7, 4, 10, 15, 0, 0}));
    EXPECT_EQ(seconds[1].utc, seconds[0].utc + kFileTimeTicksPerSecond);
    EXPECT_EQ(seconds[2].utc, seconds[1].utc + kFileTimeTicksPerSecond);

    EXPECT_TRUE(SplitIntoSeconds("").empty());
    EXPECT_EQ(SplitIntoSeconds("$GPGGA,1*00\r\n").size(), 1u);

    // An RMC line first in the recording, and one last without a line end.
    const std::string bare = "$GPRMC,101500,A*00\n\n$GPRMC,101501,A";
    const std::vector<RecordedSecond> bareSeconds = SplitIntoSeconds(bare);
    ASSERT_EQ(bareSeconds.size(), 2u);
    EXPECT_EQ(bareSeconds[1].begin, bare.find("$GPRMC,101501"));
    EXPECT_EQ(bareSeconds[1].end, bare.size());

    // The date is the ninth field of the RMC line itself, never of the next.
    const std::vector<RecordedSecond> shortLines = SplitIntoSeconds(
        "$GPRMC,101500,A,,,,,,,040711*00\n$GPRMC,101501,,,,\n,,,,010199*00\n"
        "$GPRMC,101502,A,,,,,,,040711*00\n");
    ASSERT_EQ(shortLines.size(), 3u);
    EXPECT_EQ(shortLines[1].utc, shortLines[0].utc + kFileTimeTicksPerSecond);
    EXPECT_EQ(shortLines[2].utc, shortLines[1].utc + kFileTimeTicksPerSecond);

    // Each pair of digits is read as std::from_chars reads it: a minus and
    // a digit is a number, a plus or a blank is none.
    const std::vector<RecordedSecond> signs = SplitIntoSeconds(
        "$GPRMC,101500,A,,,,,,,0407-5*00\n$GPRMC,101501,A,,,,,,,0407+5*00\n"
        "$GPRMC,101502,A,,,,,,,04 711*00\n");
    ASSERT_EQ(signs.size(), 3u);
    EXPECT_EQ(signs[0].utc, *CivilToFileTime({1995, 7, 4, 10, 15, 0, 0}));
    EXPECT_EQ(signs[1].utc, signs[0].utc + kFileTimeTicksPerSecond);
    EXPECT_EQ(signs[2].utc, signs[1].utc + kFileTimeTicksPerSecond);
}

// The seconds of a recording scanned as it would be read in pieces of the
// given size, its text kept only from where the splitter still needs it.
std::vector<RecordedSecond> SplitInPieces(std::string_view recording, std::size_t pieceSize) {
    SecondSplitter splitter;
    std::vector<RecordedSecond> seconds;
    std::string window;
    std::size_t windowAt = 0;
    for (std::size_t at = 0; at < recording.size(); at += pieceSize) {
        window += recording.substr(at, pieceSize);
        splitter.Scan(window, windowAt, false, seconds);
        const std::size_t done = splitter.KeepFrom() - windowAt;
        window.erase(0, done);
        windowAt += done;
    }
    splitter.Scan(window, windowAt, true, seconds);
    return seconds;
}

TEST(SplitIntoSecondsTest, ARecordingReadInPiecesIsCutAsAWhole) {
    std::vector<std::string> recordings = {
        "", "no line end", "$GPRMC,1", "\n\n$GPRMC,101500,A,,,,,,,040711*00",
        "$GPRMC,101500,A*00\r\n$GPRMC,101500,A*00\r\n$GPGGA\r\n$GPRMC,101501,A,,,,,,,0407-5\n"};
    for (const auto& entry : std::filesystem::directory_iterator(testing::TestDataFile("gpsd"))) {
        recordings.push_back(testing::ReadFileBytes(entry.path().string()));
    }
    for (const std::string& recording : recordings) {
        const std::vector<RecordedSecond> whole = SplitIntoSeconds(recording);
        for (const std::size_t pieceSize : {1, 2, 7, 80, 4096}) {
            const std::vector<RecordedSecond> pieces = SplitInPieces(recording, pieceSize);
            ASSERT_EQ(pieces.size(), whole.size()) << recording.substr(0, 80) << " / " << pieceSize;
            for (std::size_t i = 0; i < whole.size(); ++i) {
                EXPECT_EQ(pieces[i].begin, whole[i].begin);
                EXPECT_EQ(pieces[i].end, whole[i].end);
                EXPECT_EQ(pieces[i].utc, whole[i].utc);
            }
        }
    }
}

TEST(ReplayTest, PrintsOneSaneTickPerRecordedSecond) {
    const Result result =
        RunCommand({"replay", testing::TestDataFile("gpsd/bu353s4.log"), "--json"});
    ASSERT_EQ(result.code, kExitOk) << result.err;
    const std::vector<nlohmann::json> ticks = Ticks(result.out);
    ASSERT_EQ(ticks.size(), 25u);
    std::int64_t previousTime = 0;
    for (const nlohmann::json& tick : ticks) {
        EXPECT_EQ(tick["connected"], 1);
        EXPECT_EQ(tick["fixValid"], 1);
        EXPECT_NEAR(tick["latitude"].get<double>(), -37.785, 0.001);  // Hamilton, Waikato
        EXPECT_NEAR(tick["longitude"].get<double>(), 175.315, 0.001);
        EXPECT_EQ(tick["satPrn"].size(), 12u);
        EXPECT_EQ(tick["fixType"], 3);
        EXPECT_GT(tick["fixTime"].get<std::int64_t>(), previousTime);
        previousTime = tick["fixTime"];
    }
    EXPECT_EQ(ticks.back()["connectedSeconds"], 25);
    EXPECT_GT(ticks.back()["tripDistanceKm"].get<double>(), 0);
}

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
    const std::vector<nlohmann::json> moving = Ticks(RunCommand({"replay", log, "--json"}).out);
    ASSERT_FALSE(moving.empty());
    EXPECT_GT(moving.back()["tripDistanceKm"].get<double>(), 0.1);

    // Every speed of the walk is below 100: position and speed are held.
    const std::vector<nlohmann::json> held =
        Ticks(RunCommand({"replay", log, "--json", "--unit", "0", "--min-speed", "100"}).out);
    ASSERT_EQ(held.size(), moving.size());
    EXPECT_EQ(held.back()["tripDistanceKm"], 0);
    EXPECT_EQ(held.back()["maxSpeedKnots"], 0);

    testing::TemporaryFolder folder;
    ASSERT_EQ(RunCommand({"options", "reset", folder.File("Options.dat")}).code, kExitOk);
    // The single options win over the settings record, whatever the order.
    const std::vector<nlohmann::json> smoothed =
        Ticks(RunCommand({"replay", log, "--processor", "2", "--options",
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
        for (const nlohmann::json& tick : Ticks(RunCommand({"replay", log, "--json"}).out)) {
            EXPECT_EQ(tick["fixValid"], 0);
        }
        const Result result = RunCommand({"replay", log, "--json", "--multi-gnss"});
        ASSERT_EQ(result.code, kExitOk) << result.err;
        const std::vector<nlohmann::json> ticks = Ticks(result.out);
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
