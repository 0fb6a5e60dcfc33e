// Runs the built tolvane-tool against a receiver on a pseudo-terminal that
// the test feeds, as a user would run it against a real one.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>

#include "tests/core/nmea_sentence.h"
#include "tests/platform/pseudo_terminal.h"
#include "tests/tools/run_tool.h"
#include "tests/tools/shell_command.h"

namespace {

using tolvane::testing::NmeaSentence;
using tolvane::testing::RunShell;
using tolvane::testing::ShellResult;

const std::string kTool = std::string(TOLVANE_PROGRAM_DIR) + "/tolvane-tool";

TEST(WatchEndToEndTest, TicksOfALiveReceiverCarryTheFedPositions) {
    tolvane::testing::PseudoTerminal receiver;
    ASSERT_TRUE(receiver.IsOpen());
    // The receiver moves north by a thousandth of a minute each fix.
    std::atomic<bool> feeding{true};
    std::thread feeder([&] {
        for (int fix = 0; feeding; ++fix) {
            char body[160];
            std::snprintf(body, sizeof body,
                          "GPRMC,0930%02d.00,A,4807.%03d,N,01131.000,E,001.0,000.0,040711,,",
                          fix % 60, fix % 1000);
            if (!receiver.Send(NmeaSentence(body) +
                               NmeaSentence("GPGGA,093000.00,4807.000,N,01131.000,E,1,07,1.0,"
                                            "545.4,M,46.9,M,,"))) {
                break;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
        }
    });
    const ShellResult output = RunShell(kTool + " watch --source port --port " +
                                        receiver.SlaveName() + " --baud 4800 --seconds 3 --json");
    feeding = false;
    feeder.join();

    ASSERT_EQ(output.exitCode, 0) << output.output;
    const std::vector<nlohmann::json> ticks = tolvane::tool::JsonLines(output.output);
    ASSERT_EQ(ticks.size(), 3u) << output.output;
    for (const nlohmann::json& tick : ticks) EXPECT_EQ(tick["connected"], 1);
    // The reader parses once a second, so the first tick may come before
    // the first parse; the last one has a fix.
    const nlohmann::json& last = ticks.back();
    EXPECT_EQ(last["fixValid"], 1);
    EXPECT_NEAR(last["latitude"].get<double>(), 48.1167, 0.001);
    EXPECT_NEAR(last["longitude"].get<double>(), 11.5167, 0.0001);
    EXPECT_EQ(last["satellitesUsed"], 7);
    EXPECT_NEAR(last["altitude"].get<double>(), 545.4, 1e-9);
}

TEST(WatchEndToEndTest, AMissingPortIsAClearErrorAndBadArgumentsAUsageError) {
    const ShellResult missing = RunShell(
        kTool + " watch --source port --port /nonexistent/tty --baud 4800 --seconds 1 2>&1");
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_NE(missing.output.find("/nonexistent/tty"), std::string::npos);
    EXPECT_NE(missing.output.find("0x08200a06"), std::string::npos);

    const ShellResult wrong = RunShell(kTool + " watch --source gid --port COM1 --baud 4800 2>&1");
    EXPECT_EQ(wrong.exitCode, 2);
    EXPECT_NE(wrong.output.find("Usage: tolvane-tool"), std::string::npos);
}

}  // namespace
