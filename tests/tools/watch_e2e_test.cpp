// Runs the built tolvane-tool against a receiver on a pseudo-terminal that
// the test feeds, as a user would run it against a real one.
#include <gtest/gtest.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

#include "tests/core/nmea_sentence.h"
#include "tests/tools/shell_command.h"

namespace {

using tolvane::testing::NmeaSentence;

using tolvane::testing::RunShell;
using tolvane::testing::ShellResult;

std::vector<nlohmann::json> JsonLines(const std::string& text) {
    std::vector<nlohmann::json> lines;
    std::size_t start = 0;
    for (std::size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
        lines.push_back(nlohmann::json::parse(text.substr(start, end - start)));
    }
    return lines;
}

TEST(WatchEndToEndTest, TicksOfALiveReceiverCarryTheFedPositions) {
    int master = -1, slave = -1;
    char name[256] = {};
    ASSERT_EQ(openpty(&master, &slave, name, nullptr, nullptr), 0);
    termios line{};
    tcgetattr(slave, &line);
    cfmakeraw(&line);
    tcsetattr(slave, TCSANOW, &line);

    // The receiver moves north by a thousandth of a minute each fix.
    std::atomic<bool> feeding{true};
    std::thread receiver([&] {
        for (int fix = 0; feeding; ++fix) {
            char body[160];
            std::snprintf(body, sizeof body,
                          "GPRMC,0930%02d.00,A,4807.%03d,N,01131.000,E,001.0,000.0,040711,,",
                          fix % 60, fix % 1000);
            const std::string bytes =
                NmeaSentence(body) + NmeaSentence(
                                         "GPGGA,093000.00,4807.000,N,01131.000,E,1,07,1.0,"
                                         "545.4,M,46.9,M,,");
            if (write(master, bytes.data(), bytes.size()) < 0) break;
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
        }
    });

    const ShellResult output =
        RunShell(std::string(TOLVANE_PROGRAM_DIR) + "/tolvane-tool watch --source port --port " +
                 name + " --baud 4800 --seconds 3 --json");
    feeding = false;
    receiver.join();
    close(master);
    close(slave);

    ASSERT_EQ(output.exitCode, 0) << output.output;
    const std::vector<nlohmann::json> ticks = JsonLines(output.output);
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
    const std::string tool = std::string(TOLVANE_PROGRAM_DIR) + "/tolvane-tool";
    const ShellResult missing = RunShell(
        tool + " watch --source port --port /nonexistent/tty --baud 4800 --seconds 1 2>&1");
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_NE(missing.output.find("/nonexistent/tty"), std::string::npos);
    EXPECT_NE(missing.output.find("0x08200a06"), std::string::npos);

    const ShellResult wrong = RunShell(tool + " watch --source gid --port COM1 --baud 4800 2>&1");
    EXPECT_EQ(wrong.exitCode, 2);
    EXPECT_NE(wrong.output.find("Usage: tolvane-tool"), std::string::npos);
}

}  // namespace
