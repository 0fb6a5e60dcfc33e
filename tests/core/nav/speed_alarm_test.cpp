#include "core/nav/speed_alarm.h"

#include <gtest/gtest.h>

#include "core/data/options.h"
#include "core/geo/units.h"
#include "core/gps/gps_state.h"
#include "tests/core/nav/fake_services.h"

namespace tolvane {
namespace {

class SpeedAlarmTest : public ::testing::Test {
  protected:
    SpeedAlarmTest() {
        ResetOptions(options);
        state.connected = 1;
        state.fixValid = 1;
        alarm.path = "/program/Alarm.wav";
    }

    // Runs one check and returns the sound calls it made.
    std::vector<std::string> Check(double speedKnots) {
        state.speedKnots = speedKnots;
        sound.calls.clear();
        CheckSpeedAlarm(state, options, alarm, sound);
        std::vector<std::string> calls;
        for (const auto& call : sound.calls) calls.push_back(call.what);
        return calls;
    }

    using Calls = std::vector<std::string>;

    Options options;
    GpsState state;
    AlarmSound alarm;
    testing::RecordingSound sound;
};

TEST_F(SpeedAlarmTest, SpeedAtTheLimitStartsTheLoopOnceAndBelowStopsIt) {
    options.unitSystem = kNautical;
    options.speedAlarmIndex = 0;  // 50, read as knots
    EXPECT_EQ(Check(49.9), Calls{});
    ASSERT_EQ(Check(50.0), Calls{"play"});
    EXPECT_EQ(sound.calls[0].path, "/program/Alarm.wav");
    EXPECT_EQ(sound.calls[0].mode, SoundMode::kLoop);
    EXPECT_TRUE(alarm.sounding);
    EXPECT_EQ(Check(70.0), Calls{});
    EXPECT_EQ(Check(49.0), Calls{"stop"});
    EXPECT_FALSE(alarm.sounding);
}

TEST_F(SpeedAlarmTest, LimitsAreReadInTheCurrentSpeedUnit) {
    options.unitSystem = kMetric;
    options.speedAlarmIndex = 0;            // 50 km/h
    EXPECT_EQ(Check(27.0), Calls{"play"});  // 50.004 km/h
    options.speedAlarmIndex = 4;            // 90 km/h
    EXPECT_EQ(Check(27.0), Calls{"stop"});
    options.unitSystem = kImperial;
    options.speedAlarmIndex = 0;      // 50 mph
    EXPECT_EQ(Check(43.0), Calls{});  // 49.493 mph
    EXPECT_EQ(Check(43.5), Calls{"play"});
}

TEST_F(SpeedAlarmTest, OffOrGpsGoneStopsTheAlarm) {
    options.speedAlarmIndex = 1;
    EXPECT_EQ(Check(100), Calls{"play"});
    options.speedAlarmIndex = kSpeedAlarmOff;
    EXPECT_EQ(Check(100), Calls{"stop"});
    EXPECT_EQ(Check(100), Calls{});

    options.speedAlarmIndex = 1;
    EXPECT_EQ(Check(100), Calls{"play"});
    state.connected = 0;
    EXPECT_EQ(Check(100), Calls{"stop"});

    // An index the loader would not let through counts as "Off".
    state.connected = 1;
    options.speedAlarmIndex = 8;
    EXPECT_EQ(Check(100), Calls{});
}

TEST_F(SpeedAlarmTest, ZeroLimitSoundsWhileStandingAndAClearedFlagRestartsTheLoop) {
    options.speedAlarmIndex = 2;
    options.speedAlarmValues[2] = 0;
    state.fixValid = 0;
    EXPECT_EQ(Check(0.0), Calls{"play"});
    alarm.sounding = false;  // another sound took the device
    EXPECT_EQ(Check(0.0), Calls{"play"});
}

TEST_F(SpeedAlarmTest, SoundCallsAreRepeatedUntilTheySucceed) {
    options.speedAlarmIndex = 0;
    sound.failuresBeforeSuccess = 2;
    EXPECT_EQ(Check(100), (Calls{"play", "play", "play"}));
    sound.failuresBeforeSuccess = 1;
    EXPECT_EQ(Check(0), (Calls{"stop", "stop"}));
}

TEST(SpeedAlarmMenuTest, SteppingStopsAtBothEndsAndCommandsMapToIndexes) {
    EXPECT_EQ(StepSpeedAlarmIndex(0, SpeedAlarmStep::kDown), kSpeedAlarmOff);
    EXPECT_EQ(StepSpeedAlarmIndex(kSpeedAlarmOff, SpeedAlarmStep::kDown), kSpeedAlarmOff);
    EXPECT_EQ(StepSpeedAlarmIndex(kSpeedAlarmOff, SpeedAlarmStep::kUp), 0);
    EXPECT_EQ(StepSpeedAlarmIndex(7, SpeedAlarmStep::kUp), 7);

    EXPECT_EQ(SpeedAlarmCommand(kSpeedAlarmOff), 40034);
    EXPECT_EQ(SpeedAlarmCommand(7), 40042);
    int index = 99;
    EXPECT_TRUE(SpeedAlarmIndexFromCommand(40034, index));
    EXPECT_EQ(index, kSpeedAlarmOff);
    EXPECT_FALSE(SpeedAlarmIndexFromCommand(40043, index));
    EXPECT_FALSE(SpeedAlarmIndexFromCommand(40033, index));
    EXPECT_EQ(index, kSpeedAlarmOff);
}

TEST(SpeedAlarmMenuTest, MenuAndDialogTextsAndTheDialogReadsUnsignedNumbers) {
    EXPECT_EQ(SpeedAlarmMenuText(80, kMetric), "80 km/h");
    EXPECT_EQ(SpeedAlarmMenuText(120, kImperial), "120 MPH");
    EXPECT_EQ(SpeedAlarmMenuText(50, kNautical), "50 kts");
    EXPECT_EQ(SpeedAlarmUnitLabel(kNautical), "(kts)");
    EXPECT_EQ(SpeedAlarmValueText(110), "110");
    EXPECT_EQ(SpeedAlarmValueText(-1), "4294967295");
    // The dialog reads the limits back as unsigned numbers.
    EXPECT_EQ(SpeedAlarmValueFromText(""), 0);
    EXPECT_EQ(SpeedAlarmValueFromText("  7"), 7);
    EXPECT_EQ(SpeedAlarmValueFromText("12a"), 0);
    EXPECT_EQ(SpeedAlarmValueFromText("-5"), 0);
    EXPECT_EQ(SpeedAlarmValueFromText("4294967295"), -1);
    EXPECT_EQ(SpeedAlarmValueFromText("4294967296"), 0);
    EXPECT_EQ(SpeedAlarmValueFromText(SpeedAlarmValueText(-7)), -7);
}

}  // namespace
}  // namespace tolvane
