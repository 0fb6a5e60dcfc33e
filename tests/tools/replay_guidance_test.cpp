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
#include <thread>

#include "core/data/geo_point_file.h"
#include "core/data/options.h"
#include "core/data/track_file.h"
#include "tests/core/nav/fake_services.h"
#include "tests/core/test_support.h"
#include "tests/tools/run_tool.h"
#include "tests/tools/shell_command.h"

namespace tolvane::tool {
namespace {

using testing::Destination;
using testing::GpsbabelRows;
using testing::IsWellFormedXml;

// A walk of about twenty metres in Brisbane: 74 seconds, 68 of them with a
// fix, speeds between 0 and 3.5 knots.
const std::string kWalk = testing::TestDataFile("gpsd/haicom-305N.log");
constexpr int kWalkFixes = 68;

// The track files in a folder; a document that was being created when the
// process died is left as a ".part" file and is not one of them.
std::vector<std::string> FilesIn(const std::string& folder) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".part") files.push_back(entry.path().string());
    }
    return files;
}

class ReplayGuidanceTest : public ::testing::Test {
  protected:
    // Two points on the walk (reached at about its 10th and 50th second),
    // one far away that is never reached.
    std::string WriteDestinations() {
        DynamicList<GeoPoint> points;
        points.Append(Destination(-27.210782, 153.052130, 5));
        points.Append(Destination(-27.210858, 153.051905, 5));
        points.Append(Destination(-27.3, 153.1, 5));
        const std::string path = folder_.File("destinations.csv");
        EXPECT_TRUE(SavePointFile(path, points));
        return path;
    }

    std::vector<int> DestinationIndexes(Arguments arguments) {
        arguments.insert(arguments.begin(), {"replay", kWalk, "--json"});
        const Result result = RunCommand(arguments);
        EXPECT_EQ(result.code, kExitOk) << result.err;
        std::vector<int> indexes;
        for (const nlohmann::json& tick : JsonLines(result.out)) {
            indexes.push_back(tick["destinationIndex"]);
        }
        return indexes;
    }

    testing::TemporaryFolder folder_;
};

TEST_F(ReplayGuidanceTest, TrackFilesHoldEveryFixAndOtherToolsReadThem) {
    // gpsbabel reads the KML placemarks as waypoints; its rows start with
    // the point's number, latitude and longitude.
    const struct {
        const char* format;
        const char* gpsbabelInput;
        std::string secondRow;
    } kFormats[] = {
        {"log", "", ""},
        {"gpx", "-t -i gpx", "2,-27.210912,153.052250,3.0,0.99,134.0,2007/04/08,09:53:05"},
        {"kml", "-i kml", "2,-27.210912,153.052250,\"TP 2\",3.0,"}};
    for (const auto& [format, gpsbabelInput, secondRow] : kFormats) {
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
        if (secondRow.empty()) {
            const std::string log = testing::ReadFileBytes(files[0]);
            EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), kWalkFixes);
            continue;
        }
        EXPECT_TRUE(IsWellFormedXml(files[0]));
        const std::vector<std::string> rows = GpsbabelRows(gpsbabelInput, files[0]);
        ASSERT_EQ(rows.size(), static_cast<std::size_t>(kWalkFixes)) << format;
        EXPECT_EQ(rows[1].rfind(secondRow, 0), 0u) << rows[1];
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
    // 200 m for every destination the first two are reached one after the
    // other from the first fix on.
    const std::vector<int> off =
        DestinationIndexes({"--destinations", destinations, "--navigation", "0"});
    EXPECT_EQ(std::count(off.begin(), off.end(), 0), 74);
    const std::vector<int> wide =
        DestinationIndexes({"--destinations", destinations, "--always-default-range"});
    const auto firstInWide = [&](int index) {
        return std::find(wide.begin(), wide.end(), index) - wide.begin();
    };
    EXPECT_EQ(firstInWide(2), firstInWide(1) + 1);
    EXPECT_LT(firstInWide(1), firstOf(1));

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
    for (const nlohmann::json& tick : JsonLines(result.out)) {
        const bool tooFast = tick["speedKnots"].get<double>() * 1.852 >= 4.0;
        EXPECT_EQ(tick["alarmSounding"], tick["connected"] == 1 && tooFast ? 1 : 0) << tick.dump();
        sounding += tick["alarmSounding"].get<int>();
    }
    EXPECT_GT(sounding, 10);
    EXPECT_LT(sounding, 60);

    const Result off = RunCommand({"replay", kWalk, "--json", "--options",
                                   folder_.File("Options.dat"), "--speed-alarm", "-1"});
    for (const nlohmann::json& tick : JsonLines(off.out)) EXPECT_EQ(tick["alarmSounding"], 0);
    EXPECT_EQ(RunCommand({"replay", kWalk, "--speed-alarm", "8"}).code, kExitUsage);
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

// A replay killed at any moment, while it starts the track, while it
// writes it some tens of kilobytes at a time or while it finishes it,
// leaves no GPX or KML track or a well-formed one (as xmllint reads it)
// with every point of a run that was not killed. The ".part" file it was
// writing into is the program's own, and a start of the track logger
// removes it once it is abandoned, without touching the track.
TEST_F(ReplayGuidanceTest, AKilledReplayLeavesNoBrokenTrack) {
    std::string recording;
    const std::string walk = testing::ReadFileBytes(kWalk);
    for (int copy = 0; copy < 150; ++copy) recording += walk;
    const std::string log = folder_.File("long.log");
    testing::WriteFileBytes(log, recording);

    const std::string tool = std::string(TOLVANE_PROGRAM_DIR) + "/tolvane-tool";
    const auto replay = [&](const std::string& format, const std::string& out) {
        std::filesystem::create_directory(out);
        const pid_t child = fork();
        if (child == 0) {
            execl(tool.c_str(), "tolvane-tool", "replay", log.c_str(), "--track-format",
                  format.c_str(), "--interval", "1", "--out", out.c_str(),
                  static_cast<char*>(nullptr));
            _exit(127);
        }
        return child;
    };
    for (const std::string format : {"gpx", "kml"}) {
        const std::string babel = format == "gpx" ? "-t -i gpx" : "-i kml";
        const std::string whole = folder_.File("whole-" + format);
        int status = 0;
        const auto started = std::chrono::steady_clock::now();
        waitpid(replay(format, whole), &status, 0);
        const auto wholeRun = std::chrono::steady_clock::now() - started;
        ASSERT_EQ(status, 0);
        const std::vector<std::string> all = GpsbabelRows(babel, FilesIn(whole)[0]);
        ASSERT_EQ(all.size(), 150u * kWalkFixes);

        // Kills spread over the whole run and a little past its start.
        std::mt19937 random(12345);
        std::uniform_int_distribution<long> delay(
            1, std::chrono::duration_cast<std::chrono::microseconds>(wholeRun).count());
        for (int run = 0; run < 10; ++run) {
            const std::string out = folder_.File("killed-" + format + std::to_string(run));
            const pid_t child = replay(format, out);
            std::this_thread::sleep_for(std::chrono::microseconds(delay(random)));
            kill(child, SIGKILL);
            waitpid(child, &status, 0);
            const std::vector<std::string> tracks = FilesIn(out);
            ASSERT_LE(tracks.size(), 1u);
            std::vector<std::string> before;
            for (const std::string& track : tracks) {
                before.push_back(testing::ReadFileBytes(track));
                ASSERT_TRUE(IsWellFormedXml(track)) << format << " run " << run;
                const std::vector<std::string> kept = GpsbabelRows(babel, track);
                EXPECT_TRUE(kept == all) << format << " run " << run;
            }
            // The ".part" file of the killed run, once it is left alone long
            // enough to count as abandoned.
            for (const auto& entry : std::filesystem::directory_iterator(out)) {
                std::filesystem::last_write_time(
                    entry.path(),
                    std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
            }
            EXPECT_EQ(RepairTrackFolder(out), 0);
            const auto entries = std::distance(std::filesystem::directory_iterator(out),
                                               std::filesystem::directory_iterator());
            EXPECT_EQ(static_cast<std::size_t>(entries), tracks.size());
            for (std::size_t i = 0; i < tracks.size(); ++i) {
                EXPECT_EQ(testing::ReadFileBytes(tracks[i]), before[i]);
            }
        }
    }
}

}  // namespace
}  // namespace tolvane::tool
