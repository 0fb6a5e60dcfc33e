// No track is lost or broken by an unlucky disk or run: a full disk, a
// track name that is taken, a folder that cannot be written, a recording
// without dates at its start and standard output that cannot be written.
// The full disk is the kernel's own refusal to write past a file size limit
// (ulimit -f), which any user can set.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <map>

#include "core/app/main_timer.h"
#include "core/data/track_file.h"
#include "tests/core/app/recording_host.h"
#include "tests/core/data/track_test_support.h"
#include "tests/core/test_support.h"
#include "tests/tools/shell_command.h"

namespace tolvane::tool {
namespace {

using testing::GpsbabelRows;
using testing::IsWellFormedXml;
using testing::Quoted;
using testing::ReadFileBytes;
using testing::RunShell;
using testing::ShellResult;

const std::string kWalk = testing::TestDataFile("gpsd/haicom-305N.log");
const std::string kTool = std::string(TOLVANE_PROGRAM_DIR) + "/tolvane-tool";
constexpr char kFailure[] = "could not be written";

std::vector<std::string> FilesIn(const std::string& folder) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        files.push_back(entry.path().string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

int Count(const std::string& text, const std::string& part) {
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

// A replay of the walk into out, with files limited to limitBlocks of 512
// bytes when not negative; standard error comes with the output.
testing::ShellResult Replay(const std::string& format, const std::string& out, int limitBlocks = -1,
                            const std::string& log = kWalk) {
    const std::string limit =
        limitBlocks >= 0 ? "trap '' XFSZ; ulimit -f " + std::to_string(limitBlocks) + "; " : "";
    return RunShell(limit + Quoted(kTool) + " replay " + Quoted(log) + " --track-format " + format +
                    " --interval 1 --out " + Quoted(out) + " 2>&1");
}

// The points a track file holds, as gpsbabel reads them.
std::vector<std::string> Points(const std::string& format, const std::string& path) {
    if (format == "log") {
        std::vector<std::string> lines;
        std::istringstream in(ReadFileBytes(path));
        for (std::string line; std::getline(in, line);) lines.push_back(line);
        return lines;
    }
    return GpsbabelRows(format == "gpx" ? "-t -i gpx" : "-i kml", path);
}

TEST(TrackSafetyTest, AFullDiskKeepsEveryWrittenPointAndTellsOnce) {
    testing::TemporaryFolder folder;
    for (const std::string format : {"gpx", "kml", "log"}) {
        const std::string whole = folder.File("whole-" + format);
        const std::string full = folder.File("full-" + format);
        const std::string none = folder.File("none-" + format);
        for (const std::string& out : {whole, full, none}) std::filesystem::create_directory(out);
        ASSERT_EQ(Replay(format, whole).exitCode, 0);
        const std::vector<std::string> all = Points(format, FilesIn(whole)[0]);

        // Room for the header and some points: the file stays a complete
        // document holding the first points of the whole track.
        const ShellResult cut = Replay(format, full, 8);
        EXPECT_EQ(cut.exitCode, 1) << format;
        EXPECT_EQ(Count(cut.output, kFailure), 1) << cut.output;
        const std::string path = FilesIn(full)[0];
        EXPECT_TRUE(format == "log" || IsWellFormedXml(path)) << format;
        const std::vector<std::string> kept = Points(format, path);
        EXPECT_GT(kept.size(), 3u) << format;
        ASSERT_LT(kept.size(), all.size()) << format;
        EXPECT_TRUE(std::equal(kept.begin(), kept.end(), all.begin())) << format;

        // No room even for the header: no file at all.
        const ShellResult empty = Replay(format, none, 0);
        EXPECT_EQ(empty.exitCode, 1) << format;
        EXPECT_EQ(Count(empty.output, kFailure), 1) << empty.output;
        EXPECT_TRUE(FilesIn(none).empty()) << format;
    }
}

// The program itself writes each point at once: the point that does not
// fit leaves the file as it was, and the user is told once.
TEST(TrackSafetyTest, TheProgramTellsOnceAndKeepsTheFileWhole) {
    testing::TemporaryFolder folder;
    AppState app;
    app.options = testing::LoggingOptions(kTrackFormatGpx);
    app.options.trackIntervalIndex = 0;
    app.options.trackIntervalValues[0] = 1;
    app.folders.trackLogDir = folder.Path();
    app.gpsRunning = true;
    app.gps = testing::MovingFix();
    testing::RecordingHost host;
    TrackTimerProc(app, host);
    const std::string path = app.track.currentPath;
    const std::string onePoint = ReadFileBytes(path);

    rlimit saved{};
    getrlimit(RLIMIT_FSIZE, &saved);
    rlimit limit = saved;
    limit.rlim_cur = onePoint.size() + 100;  // room for less than a point
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &limit);
    for (int tick = 0; tick < 3; ++tick) TrackTimerProc(app, host);
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, oldHandler);

    EXPECT_EQ(ReadFileBytes(path), onePoint);
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(host.messages[0].icon, MessageIcon::kStop);
}

TEST(TrackSafetyTest, ANewTrackNeverWritesIntoAnExistingFile) {
    testing::TemporaryFolder folder;
    ASSERT_EQ(Replay("gpx", folder.Path()).exitCode, 0);
    const std::string first = FilesIn(folder.Path())[0];
    const std::string before = ReadFileBytes(first);
    ASSERT_EQ(Replay("gpx", folder.Path()).exitCode, 0);
    const std::vector<std::string> files = FilesIn(folder.Path());
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(ReadFileBytes(first), before);
    EXPECT_EQ(files[1], first.substr(0, first.size() - 4) + "_2.gpx");
    EXPECT_EQ(ReadFileBytes(files[1]), before);
}

// Two programs that start a track in the same second (two replays of one
// recording, run at once into one folder) get two files, each holding the
// whole track, in every format.
TEST(TrackSafetyTest, TwoReplaysAtOnceWriteTwoFiles) {
    for (const std::string format : {"gpx", "kml", "log"}) {
        for (int round = 0; round < 5; ++round) {
            testing::TemporaryFolder folder;
            const std::string replay = Quoted(kTool) + " replay " + Quoted(kWalk) +
                                       " --track-format " + format + " --interval 1 --out " +
                                       Quoted(folder.Path());
            ASSERT_EQ(RunShell(replay + " & " + replay + " & wait").exitCode, 0);
            const std::vector<std::string> files = FilesIn(folder.Path());
            ASSERT_EQ(files.size(), 2u) << format;
            EXPECT_EQ(ReadFileBytes(files[0]), ReadFileBytes(files[1])) << format;
            EXPECT_TRUE(format == "log" || IsWellFormedXml(files[1])) << format;
        }
    }
}

// The time of the first point of a GPX track's last segment.
std::string LastSegmentStart(const std::string& gpx) {
    const std::size_t time = gpx.find("<time>", gpx.rfind("<trkseg>")) + 6;
    return gpx.substr(time, gpx.find('<', time) - time);
}

// A recording with 30 seconds cut out, as a suspend leaves it, gives a GPX
// track of two segments, which gpsbabel reads as two, and a KML track; both
// are well-formed and hold every point of the log. The whole recording,
// whose fixes are up to two seconds apart, stays one segment.
TEST(TrackSafetyTest, AGapInTheRecordingBeginsANewSegment) {
    testing::TemporaryFolder folder;
    const std::string walk = ReadFileBytes(kWalk);
    const auto lineOf = [&](const std::string& time) {
        return walk.rfind('\n', walk.find("," + time + ".")) + 1;
    };
    const std::string log = folder.File("suspended.nmea");
    testing::WriteFileBytes(log, walk.substr(0, lineOf("095320")) + walk.substr(lineOf("095351")));
    std::map<std::string, std::string> tracks;
    for (const std::string format : {"log", "gpx", "kml", "whole"}) {
        const std::string out = folder.File(format);
        std::filesystem::create_directory(out);
        ASSERT_EQ(format == "whole" ? Replay("gpx", out).exitCode
                                    : Replay(format, out, -1, log).exitCode,
                  0);
        tracks[format] = FilesIn(out)[0];
    }
    const std::size_t points = Points("log", tracks["log"]).size();
    EXPECT_GT(points, 30u);
    for (const std::string format : {"gpx", "kml"}) {
        EXPECT_TRUE(IsWellFormedXml(tracks[format])) << format;
        EXPECT_EQ(Points(format, tracks[format]).size(), points) << format;
    }
    const std::string gpx = ReadFileBytes(tracks["gpx"]);
    EXPECT_EQ(Count(gpx, "<trkseg>"), 2);
    EXPECT_EQ(LastSegmentStart(gpx), "2007-04-08T09:53:51Z");
    const ShellResult babel = RunShell(Quoted(TOLVANE_GPSBABEL_PROGRAM) + " -t -i gpx -f " +
                                       Quoted(tracks["gpx"]) + " -o gpx -F - 2>&1");
    EXPECT_EQ(Count(babel.output, "<trkseg>"), 2) << babel.output;
    EXPECT_EQ(LastSegmentStart(babel.output), "2007-04-08T09:53:51Z");
    EXPECT_EQ(Count(ReadFileBytes(tracks["whole"]), "<trkseg>"), 1);
}

TEST(TrackSafetyTest, UnwritableFoldersDatelessStartsAndFullOutputAreClear) {
    // /proc takes no new files, not even from root.
    const ShellResult unwritable = Replay("gpx", "/proc");
    EXPECT_EQ(unwritable.exitCode, 1);
    EXPECT_NE(unwritable.output.find("/proc"), std::string::npos) << unwritable.output;

    // Receivers leave the date out until their first fix: the track is
    // named from the first real date and time.
    testing::TemporaryFolder folder;
    const std::string log = folder.File("dateless.nmea");
    testing::WriteFileBytes(log,
                            "$GPRMC,235958.00,V,,,,,,,,,,N*7E\r\n"
                            "$GPRMC,235959.00,V,,,,,,,,,,N*7F\r\n" +
                                ReadFileBytes(kWalk));
    const std::string out = folder.File("out");
    std::filesystem::create_directory(out);
    ASSERT_EQ(Replay("gpx", out, -1, log).exitCode, 0);
    EXPECT_EQ(std::filesystem::path(FilesIn(out)[0]).filename(), "20070408095255.gpx");

    const ShellResult full =
        RunShell(Quoted(kTool) + " replay " + Quoted(kWalk) + " 2>&1 >/dev/full");
    EXPECT_EQ(full.exitCode, 1);
    EXPECT_NE(full.output.find("cannot write the output"), std::string::npos) << full.output;
}

}  // namespace
}  // namespace tolvane::tool
