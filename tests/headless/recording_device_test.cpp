#include "headless/recording_device.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tests/core/test_support.h"

namespace tolvane::headless {
namespace {

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

}  // namespace
}  // namespace tolvane::headless
