// The trip figures of the Trip Stat and Speed views at every second of the
// demo as the window plays it, and of captures of receivers that stand
// still with a wandering fix or whose fix jumps.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "core/geo/units.h"
#include "core/nav/instrument_memory.h"
#include "headless/demo_recording.h"
#include "tests/core/test_support.h"
#include "tests/headless/replay_text.h"

namespace tolvane::headless {
namespace {

std::string DemoText() {
    return testing::ReadFileBytes(std::string(TOLVANE_SOURCE_DIR) + "/resources/demo/demo.nmea");
}

// Replays the recording with the program's default settings and the other
// talkers read, checking the figures at every tick: they add up,
// the average stays at or below the maximum and the distance never exceeds
// the GPS state's own. Gives the figures at the end.
TripFigures ReplayChecked(const std::string& recording) {
    RunSettings settings;
    settings.multiGnss = true;
    TripFigures last;
    int tick = 0;
    EXPECT_TRUE(testing::ReplayText(recording, settings, [&](AppState& app, FileTime) {
        const TripFigures& trip = app.instruments.tripFigures;
        ++tick;
        EXPECT_LE(TripAverageKnots(trip), trip.maxSpeedKnots + 1e-12) << "tick " << tick;
        EXPECT_EQ(trip.movingSeconds + TripStoppedSeconds(trip), app.gps.connectedSeconds)
            << "tick " << tick;
        EXPECT_LE(trip.distanceKm, app.gps.tripDistanceKm + 1e-12) << "tick " << tick;
        last = trip;
        return true;
    }));
    return last;
}

TEST(TripFiguresTest, TheDemoLoopsWithoutAJumpAndItsFiguresAgreeAtEverySecond) {
    const std::string text = DemoText();
    const DemoRecording demo = MakeDemoRecording(text);
    ASSERT_GT(demo.seconds.size(), kShortestDemoLap);
    EXPECT_GT(demo.loopFrom, 0u);
    EXPECT_LE(demo.loopFrom + kShortestDemoLap, demo.seconds.size());

    // Three laps as the demo receiver plays them: the whole recording, then
    // twice from the loop's start.
    std::string laps = text;
    for (int lap = 0; lap < 2; ++lap) {
        for (std::size_t i = demo.loopFrom; i < demo.seconds.size(); ++i) laps += demo.seconds[i];
    }
    std::vector<double> distanceKm;
    ASSERT_TRUE(testing::ReplayText(laps, {}, [&distanceKm](AppState& app, FileTime) {
        distanceKm.push_back(app.gps.tripDistanceKm);
        return true;
    }));
    // Where a lap begins again, even the GPS state's own distance, which
    // counts every step, sees one step of a walker, not a jump.
    const std::size_t lap = demo.seconds.size() - demo.loopFrom;
    ASSERT_EQ(distanceKm.size(), demo.seconds.size() + 2 * lap);
    for (const std::size_t seam : {demo.seconds.size(), demo.seconds.size() + lap}) {
        EXPECT_LT(distanceKm[seam] - distanceKm[seam - 1], 0.003) << "tick " << seam;
    }

    const TripFigures trip = ReplayChecked(laps);
    // Two minutes of walking at about 1.2 m/s, a little over 4 km/h.
    EXPECT_GT(trip.movingSeconds, 120);
    EXPECT_NEAR(TripAverageKnots(trip) * kKmPerNauticalMile, 4.2, 0.4);
}

TEST(TripFiguresTest, ASettlingFixAndAFixThatWandersInPlaceAddNoDistance) {
    // A phone's modem whose fixes jump by hundreds of metres.
    const TripFigures jumps =
        ReplayChecked(testing::ReadFileBytes(testing::TestDataFile("gpsd/quectel-eg25-g.log")));
    // A receiver that stands still for three minutes while its fix wanders
    // by some ten metres.
    const TripFigures still =
        ReplayChecked(testing::ReadFileBytes(testing::TestDataFile("gpsd/telit-he910.log")));
    EXPECT_LT(jumps.distanceKm, 0.05);
    EXPECT_LT(still.distanceKm, 0.002);
}

}  // namespace
}  // namespace tolvane::headless
