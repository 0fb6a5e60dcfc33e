// The wait for the first fix as GPS Info and Trip Stat show it, over a
// capture that starts with seconds without a fix.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "core/nav/instrument_memory.h"
#include "core/views/gps_info_view.h"
#include "core/views/trip_stat_view.h"
#include "tests/core/test_support.h"
#include "tests/headless/replay_text.h"

namespace tolvane::headless {
namespace {

// The capture's first six seconds have no fix: their RMC sentences say V.
// The replay plays one tick for each RMC time of the recording, as the
// receiver sends one RMC a second; this capture has skipped three of them.
constexpr int kSecondsWithoutFix = 6;

// What one tick of the replay shows.
struct Second {
    bool fix = false;
    std::string searchingLine;
    TripTile firstFixTile;
    std::string connectedTime;
};

std::vector<Second> ReplayHaicom(const std::string& recording,
                                 const std::function<void(AppState&, int tick)>& atTick) {
    std::vector<Second> seconds;
    testing::ReplayText(recording, {}, [&](AppState& app, FileTime) {
        atTick(app, static_cast<int>(seconds.size()) + 1);
        const std::vector<TripTile> tiles = TripTiles(app);
        seconds.push_back(
            {HasLiveFix(app.gps), SearchingLine(app), tiles.back(), tiles[tiles.size() - 2].value});
        return true;
    });
    return seconds;
}

TEST(FirstFixTest, TheSearchAndTheTimeToFirstFixAgreeWithTheRecording) {
    const std::string recording =
        testing::ReadFileBytes(testing::TestDataFile("gpsd/haicom-305N.log"));
    constexpr int kClearAt = 20;
    const std::vector<Second> seconds = ReplayHaicom(recording, [](AppState& app, int tick) {
        // Enter in Trip Stat clears the trip, not the start's first fix.
        if (tick == kClearAt) ClearTrip(app.gps, app.instruments);
    });
    ASSERT_GT(seconds.size(), static_cast<std::size_t>(kClearAt));

    // Each second of the search counts, with the satellites the recording's
    // GSV sentences hear: PRN 30 at 44 dB-Hz in the first second's last
    // page, then PRN 5 and 12 at 45 as well.
    EXPECT_EQ(seconds[0].searchingLine, "Searching 0:01 \u2014 1 satellite heard, 44 dB-Hz");
    EXPECT_EQ(seconds[1].searchingLine,
              "Searching 0:02 \u2014 3 satellites heard, best 45 dB-Hz");
    for (int i = 0; i < kSecondsWithoutFix; ++i) {
        EXPECT_FALSE(seconds[i].fix) << "second " << i + 1;
        EXPECT_EQ(seconds[i].searchingLine.rfind("Searching 0:0" + std::to_string(i + 1), 0), 0u)
            << seconds[i].searchingLine;
        EXPECT_EQ(seconds[i].firstFixTile.value, "--");
        EXPECT_FALSE(seconds[i].firstFixTile.known);
    }
    // The first fix ends the search; the time it took stays, through the
    // clearing of the trip.
    const std::string timeToFix = "0:0" + std::to_string(kSecondsWithoutFix + 1);
    for (std::size_t i = kSecondsWithoutFix; i < seconds.size(); ++i) {
        EXPECT_TRUE(seconds[i].searchingLine.empty()) << "second " << i + 1;
        EXPECT_EQ(seconds[i].firstFixTile.label, "Time to first fix");
        EXPECT_EQ(seconds[i].firstFixTile.value, timeToFix) << "second " << i + 1;
    }
    EXPECT_EQ(seconds[kClearAt - 1].connectedTime, "00:00:00");
}

}  // namespace
}  // namespace tolvane::headless
