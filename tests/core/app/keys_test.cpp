#include "core/app/keys.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/placement/world_map_placement.h"
#include "tests/core/app/program_fixture.h"

namespace tolvane {
namespace {

constexpr FileTime kMillisecond = kFileTimeTicksPerSecond / 1000;

int Count(const std::vector<std::string>& events, const std::string& event) {
    return static_cast<int>(std::count(events.begin(), events.end(), event));
}

TEST(KeysTest, DigitsSwitchViewsAndZeroStartsAndStopsTheGps) {
    testing::ProgramFixture fixture;
    Program& program = fixture.program;
    OnKeyDown(program, Key::kDigit3);  // no map loaded: nothing, not even a sound
    EXPECT_EQ(program.app.currentView, kViewGpsInfo);
    EXPECT_TRUE(fixture.host.events.empty());
    OnKeyDown(program, Key::kDigit5);
    EXPECT_EQ(program.app.currentView, kViewSpeed);
    OnKeyDown(program, Key::kDigit7);
    EXPECT_EQ(program.app.currentView, kViewSatellites);
    OnKeyDown(program, Key::kDigit0);
    EXPECT_TRUE(program.app.gpsRunning);
    EXPECT_TRUE(fixture.device.open);
    OnKeyDown(program, Key::kDigit0);
    EXPECT_FALSE(program.app.gpsRunning);
    EXPECT_FALSE(fixture.device.open);
    EXPECT_TRUE(fixture.host.messages.empty());
    OnKeyDown(program, Key::kStar);
    EXPECT_EQ(fixture.host.events.back(), "dialog 40033");  // GPS Setup
}

TEST(KeysTest, LeftAndRightStepTheSpeedAlarmAndStopAtTheEnds) {
    testing::ProgramFixture fixture;
    Program& program = fixture.program;
    Options& options = program.app.options;
    program.app.currentView = kViewSpeed;
    options.speedAlarmIndex = kLastSpeedAlarm;
    OnKeyDown(program, Key::kRight);
    options.speedAlarmIndex = kSpeedAlarmOff;
    OnKeyDown(program, Key::kLeft);
    EXPECT_EQ(options.speedAlarmIndex, kSpeedAlarmOff);
    EXPECT_TRUE(fixture.host.events.empty());
    OnKeyDown(program, Key::kRight);
    OnKeyDown(program, Key::kRight);
    EXPECT_EQ(options.speedAlarmIndex, 1);
    OnKeyDown(program, Key::kLeft);
    EXPECT_EQ(options.speedAlarmIndex, 0);
}

// A held key repeats faster than the map should move: each arrow key steps
// at most once per 100 ms unless it was released in between.
TEST(KeysTest, AHeldArrowStepsAtMostOncePer100Milliseconds) {
    testing::ProgramFixture fixture;
    Program& program = fixture.program;
    MapKeys& map = program.app.mapKeys;
    program.app.currentView = kViewMap;
    const FileTime start = 1000 * kFileTimeTicksPerSecond;
    for (const int ms : {0, 50, 99}) {
        fixture.host.now = start + ms * kMillisecond;
        OnKeyDown(program, Key::kUp);
    }
    EXPECT_EQ(map.mapZoom, 1);
    fixture.host.now = start + 100 * kMillisecond;
    OnKeyDown(program, Key::kUp);
    EXPECT_EQ(map.mapZoom, 2);
    OnKeyDown(program, Key::kDown);  // another key has its own time
    EXPECT_EQ(map.mapZoom, 1);
    OnKeyUp(program, Key::kUp);
    OnKeyDown(program, Key::kUp);
    EXPECT_EQ(map.mapZoom, 2);

    OnKeyUp(program, Key::kLeft);
    OnKeyDown(program, Key::kLeft);  // no step in zoom mode
    map.mapZoom = 255;
    OnKeyUp(program, Key::kUp);
    OnKeyDown(program, Key::kUp);
    EXPECT_EQ(map.mapZoom, 255);
    EXPECT_EQ(Count(fixture.host.events, "beep"), 2);

    OnKeyDown(program, Key::kEnter);  // pan mode
    program.app.gps.connected = 1;
    OnKeyUp(program, Key::kLeft);
    OnKeyDown(program, Key::kLeft);
    EXPECT_EQ(map.panColumns, -1);
    EXPECT_EQ(program.app.mapCountdown, kPanFollowPauseTicks);
}

// The World Map zooms out only to its scale limit, above the level's own
// floor, and in to 255; the wheel takes the same steps and stops at the
// same ends with one beep.
TEST(KeysTest, TheWorldMapZoomStopsAtItsScaleLimitWithTheLimitBeep) {
    testing::ProgramFixture fixture;
    Program& program = fixture.program;
    MapKeys& map = program.app.mapKeys;
    OnKeyDown(program, Key::kDigit2);
    ASSERT_EQ(program.app.currentView, kViewWorldMap);
    for (int press = 0; press < 20; ++press) {
        fixture.host.now += 100 * kMillisecond;
        OnKeyDown(program, Key::kDown);
    }
    EXPECT_EQ(map.worldMapZoom, kWorldMapLowestZoom);
    EXPECT_EQ(Count(fixture.host.events, "beep"), 20 + kWorldMapLowestZoom);
    ZoomShownMap(program, 300);
    EXPECT_EQ(map.worldMapZoom, 255);
    EXPECT_EQ(Count(fixture.host.events, "beep"), 21 + kWorldMapLowestZoom);
    ZoomShownMap(program, -8);
    EXPECT_EQ(map.worldMapZoom, 247);

    // A drag pans the World Map and pauses following while the GPS is on.
    program.app.gps.connected = 1;
    program.app.worldMapCentre = {0, 0};
    map.worldMapZoom = 0;
    DragShownMap(program, 500, 0, {0, 0, 1000, 600});  // half the width to the east
    EXPECT_NEAR(program.app.worldMapCentre.longitude, -180, 1e-9);
    EXPECT_EQ(program.app.mapCountdown, kPanFollowPauseTicks);
}

TEST(KeysTest, EnterClearsTheTripAfterAskingAndSwitchesTheCompass) {
    testing::ProgramFixture fixture;
    Program& program = fixture.program;
    GpsState& gps = program.app.gps;
    program.app.currentView = kViewTripStat;
    gps.tripDistanceKm = 12.5;
    gps.movingSeconds = 600;
    gps.maxSpeedKnots = 30;
    fixture.host.answer = false;
    OnKeyDown(program, Key::kEnter);
    EXPECT_EQ(gps.tripDistanceKm, 12.5);
    // Without a language file the question is the built-in English one.
    EXPECT_EQ(fixture.host.events, std::vector<std::string>{"ask Clear the trip statistics?"});
    fixture.host.answer = true;
    OnKeyDown(program, Key::kEnter);
    EXPECT_EQ(gps.tripDistanceKm, 0);
    EXPECT_EQ(gps.movingSeconds, 0);
    EXPECT_EQ(gps.maxSpeedKnots, 0);
    EXPECT_EQ(Count(fixture.host.events, "repaint"), 1);

    program.app.currentView = kViewCompass;
    OnKeyDown(program, Key::kEnter);
    EXPECT_EQ(program.app.compassMode, kCompassCourseUp);
    OnKeyDown(program, Key::kEnter);
    EXPECT_EQ(program.app.compassMode, kCompassNorthUp);
}

}  // namespace
}  // namespace tolvane
