// The replay with the track logger, the destination list and the speed
// alarm switched on: what a user scripting the tool sees, checked against
// the files and the per-tick JSON.

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>
#include <thread>

#include "core/data/geo_point_file.h"
#include "core/data/options.h"
#include "core/data/track_file.h"
#include "tests/core/test_support.h"
#include "tests/platform/scoped_environment.h"
#include "tests/tools/run_tool.h"
#include "tests/tools/shell_command.h"

namespace tolvane::tool {
namespace {

using testing::GpsbabelRows;
using testing::IsWellFormedXml;

// A walk of about twenty metres in Brisbane: 74 seconds, 68 of them with a
// fix, speeds between 0 and 3.5 knots.
const std::string kWalk = testing::TestDataFile("gpsd/haicom-305N.log");
constexpr int kWalkFixes = 68;

std::vector<nlohmann::json> Ticks(const std::string& out) {
    std::vector<nlohmann::json> ticks;
    std::istringstream lines(out);
    for (std::string line; std::getline(lines, line);) ticks.push_back(nlohmann::json::parse(line));
    return ticks;
}

// The track files in a folder; a document that was being created when the
// process died is left as a ".part" file and is not one of them.
std::vector<std::string> FilesIn(const std::string& folder) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".part") files.push_back(entry.path().string());
    }
    return files;
}

GeoPoint Destination(double latitude, double longitude, int range, const std::string& voice = {}) {
    GeoPoint point;
    point.latitude = latitude;
    point.longitude = longitude;
    point.proximityRange = range;
    point.voiceGuide = voice;
    return point;
}

class ReplayGuidanceTest : public ::testing::Test {
  protected:
    // Two points on the walk (reached at about its 10th and 50th second),
    // one far away that is never reached.
    std::string WriteDestinations(const std::string& voice = {}) {
        DynamicList<GeoPoint> points;
        points.Append(Destination(-27.210782, 153.052130, 5, voice));
        points.Append(Destination(-27.210858, 153.051905, 5, voice));
        points.Append(Destination(-27.3, 153.1, 5, voice));
        const std::string path = folder_.File("destinations.csv");
        EXPECT_TRUE(SavePointFile(path, points));
        return path;
    }

    std::vector<int> DestinationIndexes(Arguments arguments) {
        arguments.insert(arguments.begin(), {"replay", kWalk, "--json"});
        const Result result = RunCommand(arguments);
        EXPECT_EQ(result.code, kExitOk) << result.err;
        std::vector<int> indexes;
        for (const nlohmann::json& tick : Ticks(result.out))
            indexes.push_back(tick["destinationIndex"]);
        return indexes;
    }

    testing::TemporaryFolder folder_;
};

TEST_F(ReplayGuidanceTest, TrackFilesHoldEveryFixAndOtherToolsReadThem) {
    for (const char* format : {"log", "gpx", "kml"}) {
        const std::string out = folder_.File(format);
        std::filesystem::create_directory(out);
        const Result result = RunCommand(
            {"replay", kWalk, "--track-format", format, "--interval", "1", "--out", out});
        ASSERT_EQ(result.code, kExitOk) << result.err;
        const std::vector<std::string> files = FilesIn(out);
        ASSERT_EQ(files.size(), 1u) << format;
        // Named from the recording's clock at the first tick, in local time (UTC here).
        EXPECT_EQ(std::filesystem::path(files[0]).filename().string(),
                  std::string("20070408095255.") + format);
        if (std::string(format) == "log") {
            const std::string log = testing::ReadFileBytes(files[0]);
            EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), kWalkFixes);
            continue;
        }
        EXPECT_TRUE(IsWellFormedXml(files[0]));
        // gpsbabel reads the KML placemarks as waypoints.
        const std::string input = std::string(format) == "gpx" ? "-t -i gpx" : "-i kml";
        EXPECT_EQ(GpsbabelRows(input, files[0]).size(), static_cast<std::size_t>(kWalkFixes))
            << format;
    }
    // A longer interval logs fewer points: the first fix, then every 10 s.
    const std::string out = folder_.File("sparse");
    std::filesystem::create_directory(out);
    ASSERT_EQ(
        RunCommand({"replay", kWalk, "--track-format", "gpx", "--interval", "10", "--out", out})
            .code,
        kExitOk);
    EXPECT_EQ(GpsbabelRows("-t -i gpx", FilesIn(out)[0]).size(), 7u);
}

TEST_F(ReplayGuidanceTest, DestinationsAdvanceOnArrival) {
    const std::string destinations = WriteDestinations();
    const std::vector<int> indexes = DestinationIndexes({"--destinations", destinations});
    ASSERT_EQ(indexes.size(), 74u);
    EXPECT_EQ(indexes.front(), 0);
    EXPECT_EQ(indexes.back(), 2);  // the far one stays current
    // Each destination is reached once, in list order.
    EXPECT_TRUE(std::is_sorted(indexes.begin(), indexes.end()));
    const auto firstOf = [&](int index) {
        return std::find(indexes.begin(), indexes.end(), index) - indexes.begin();
    };
    EXPECT_LT(firstOf(1), 20);
    EXPECT_GT(firstOf(2), 40);

    // Without navigation nothing is reached; with the default range of
    // 200 m for every destination the first two are reached at the first fix.
    const std::vector<int> off =
        DestinationIndexes({"--destinations", destinations, "--navigation", "0"});
    EXPECT_EQ(std::count(off.begin(), off.end(), 0), 74);
    const std::vector<int> wide =
        DestinationIndexes({"--destinations", destinations, "--always-default-range"});
    EXPECT_EQ(firstOf(1) > 0, true);
    EXPECT_EQ(std::find(wide.begin(), wide.end(), 2) - wide.begin(),
              std::find(wide.begin(), wide.end(), 1) - wide.begin() + 1);
    // Ranges read in feet in the imperial system: 5 ft is too close to reach.
    const std::vector<int> feet =
        DestinationIndexes({"--destinations", destinations, "--unit", "1"});
    EXPECT_LT(std::count(feet.begin(), feet.end(), 0),
              std::count(indexes.begin(), indexes.end(), 0) + 40);

    const Result missing =
        RunCommand({"replay", kWalk, "--destinations", folder_.File("none.csv")});
    EXPECT_EQ(missing.code, kExitFailure);
    EXPECT_NE(missing.err.find(folder_.File("none.csv")), std::string::npos);
}

TEST_F(ReplayGuidanceTest, TheAlarmFollowsTheSpeed) {
    Options options;
    ResetOptions(options);
    options.speedAlarmValues[3] = 4;  // km/h
    ASSERT_TRUE(SaveOptions(folder_.File("Options.dat"), options, 1));
    const Result result =
        RunCommand({"replay", kWalk, "--json", "--options", folder_.File("Options.dat"), "--unit",
                    "0", "--speed-alarm", "3"});
    ASSERT_EQ(result.code, kExitOk) << result.err;
    int sounding = 0;
    for (const nlohmann::json& tick : Ticks(result.out)) {
        const bool tooFast = tick["speedKnots"].get<double>() * 1.852 >= 4.0;
        EXPECT_EQ(tick["alarmSounding"], tick["connected"] == 1 && tooFast ? 1 : 0) << tick.dump();
        sounding += tick["alarmSounding"].get<int>();
    }
    EXPECT_GT(sounding, 10);
    EXPECT_LT(sounding, 60);

    const Result off = RunCommand({"replay", kWalk, "--json", "--options",
                                   folder_.File("Options.dat"), "--speed-alarm", "-1"});
    for (const nlohmann::json& tick : Ticks(off.out)) EXPECT_EQ(tick["alarmSounding"], 0);
    EXPECT_EQ(RunCommand({"replay", kWalk, "--speed-alarm", "8"}).code, kExitUsage);
}

TEST_F(ReplayGuidanceTest, ArrivalsAreSpokenWithTheRealEngine) {
    testing::ScopedEnvironment temporary("TMPDIR", folder_.Path().c_str());
    const std::string destinations = WriteDestinations("Turn left at the gate");
    ASSERT_EQ(RunCommand({"replay", kWalk, "--destinations", destinations, "--voice", "1"}).code,
              kExitOk);
    const std::string wave = testing::ReadFileBytes(folder_.File("geotool_goto_voice_guide.wav"));
    ASSERT_GT(wave.size(), 1000u);
    EXPECT_EQ(wave.substr(0, 4), "RIFF");
}

TEST_F(ReplayGuidanceTest, ArgumentsThatDoNotGoTogetherGiveUsage) {
    for (const Arguments& arguments :
         {Arguments{"replay", kWalk, "--track-format", "gpx"},
          Arguments{"replay", kWalk, "--track-format", "csv", "--out", "/tmp"},
          Arguments{"replay", kWalk, "--interval", "5"}, Arguments{"replay", kWalk, "--voice", "2"},
          Arguments{"replay", kWalk, "--navigation", "yes"}}) {
        EXPECT_EQ(RunCommand(arguments).code, kExitUsage) << arguments[2];
    }
    const Result noFolder =
        RunCommand({"replay", kWalk, "--track-format", "gpx", "--out", folder_.File("missing")});
    EXPECT_EQ(noFolder.code, kExitFailure);
    EXPECT_NE(noFolder.err.find("no such folder"), std::string::npos);
}

// The points of a GPX track file, as gpsbabel reads them.
std::vector<std::string> TrackPoints(const std::string& path) {
    return GpsbabelRows("-t -i gpx", path);
}

// A replay killed at random moments leaves a GPX file that is well-formed
// and holds every point written before the kill: the first points of the
// track of a run that was not killed. A kill that lands while the kernel
// copies a point's write across a page boundary cuts that point short; the
// next start of the track logger mends the file, as checked here.
TEST_F(ReplayGuidanceTest, AKilledReplayLeavesACompleteTrack) {
    std::string recording;
    const std::string walk = testing::ReadFileBytes(kWalk);
    for (int copy = 0; copy < 150; ++copy) recording += walk;
    const std::string log = folder_.File("long.log");
    testing::WriteFileBytes(log, recording);

    const std::string tool = std::string(TOLVANE_PROGRAM_DIR) + "/tolvane-tool";
    const auto replay = [&](const std::string& out) {
        std::filesystem::create_directory(out);
        const pid_t child = fork();
        if (child == 0) {
            execl(tool.c_str(), "tolvane-tool", "replay", log.c_str(), "--track-format", "gpx",
                  "--interval", "1", "--out", out.c_str(), static_cast<char*>(nullptr));
            _exit(127);
        }
        return child;
    };
    const std::string whole = folder_.File("whole");
    int status = 0;
    waitpid(replay(whole), &status, 0);
    ASSERT_EQ(status, 0);
    const std::vector<std::string> all = TrackPoints(FilesIn(whole)[0]);
    ASSERT_EQ(all.size(), 150u * kWalkFixes);

    std::mt19937 random(12345);
    std::uniform_int_distribution<int> delay(5, 150);
    for (int run = 0; run < 8; ++run) {
        const std::string out = folder_.File("killed" + std::to_string(run));
        const pid_t child = replay(out);
        std::this_thread::sleep_for(std::chrono::milliseconds(delay(random)));
        kill(child, SIGKILL);
        waitpid(child, &status, 0);
        const std::vector<std::string> files = FilesIn(out);
        if (files.empty()) continue;  // killed before the file was started
        if (!IsWellFormedXml(files[0])) {
            EXPECT_EQ(RepairTrackFolder(out), 1);
        }
        ASSERT_TRUE(IsWellFormedXml(files[0])) << "run " << run;
        const std::vector<std::string> kept = TrackPoints(files[0]);
        ASSERT_LE(kept.size(), all.size());
        EXPECT_TRUE(std::equal(kept.begin(), kept.end(), all.begin())) << "run " << run;
    }
}

}  // namespace
}  // namespace tolvane::tool
