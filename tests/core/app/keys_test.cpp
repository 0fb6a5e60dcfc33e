#include "core/app/keys.h"

#include <gtest/gtest.h>

#include <algorithm>

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
