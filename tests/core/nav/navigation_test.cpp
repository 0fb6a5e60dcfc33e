#include "core/nav/navigation.h"

#include <gtest/gtest.h>

#include <cmath>

#include "core/data/options.h"
#include "core/geo/distance.h"
#include "core/geo/units.h"
#include "core/gps/gps_processing.h"
#include "core/gps/gps_state.h"
#include "core/nav/speed_alarm.h"
#include "core/nav/voice_guide.h"
#include "tests/core/nav/fake_services.h"

namespace tolvane {
namespace {

using testing::Destination;

class NavigationTest : public ::testing::Test {
  protected:
    NavigationTest() {
        ResetOptions(options);
        options.voiceGuide = 0;
        state.connected = 1;
        state.fixValid = 1;
        alarm.path = "/program/Alarm.wav";
    }

    void Open(std::initializer_list<GeoPoint> points) {
        DynamicList<GeoPoint> loaded;
        for (const GeoPoint& point : points) loaded.Append(point);
        OpenDestinationList(navigation, loaded);
    }

    // The reached flags of the list, then the current and the previous
    // destination: "110 2 1".
    std::string Round() {
        std::string text;
        navigation.destinations.ForEach(
            [&](const GeoPoint& point) { text += point.reached != 0 ? '1' : '0'; });
        return text + " " + std::to_string(navigation.current) + " " +
               std::to_string(navigation.previous);
    }

    // Puts the fix distanceKm away from the current destination and runs the
    // arrival check.
    bool ArriveAt(double distanceKm) {
        state.destinationDistanceKm = distanceKm;
        return CheckArrival(state, options, navigation, voice, alarm, sound);
    }

    int AlarmPlays() const {
        int plays = 0;
        for (const auto& call : sound.calls) {
            if (call.what == "play" && call.path == alarm.path) ++plays;
        }
        return plays;
    }

    Options options;
    GpsState state;
    Navigation navigation;
    AlarmSound alarm;
    testing::RecordingSound sound;
    testing::FakeProcessRunner runner;
    testing::FakeEngineFinder finder;
    VoiceGuide voice{finder, runner, sound};
};

TEST_F(NavigationTest, OpeningStartsAtTheFirstUnreachedDestination) {
    GeoPoint reached = Destination(1, 1);
    reached.reached = 1;
    Open({reached, Destination(2, 2), Destination(3, 3)});
    EXPECT_EQ(Round(), "100 1 -1");
    GeoPoint current;
    ASSERT_TRUE(CopyCurrentDestination(navigation, current));
    EXPECT_EQ(current.latitude, 2);

    CloseDestinationList(navigation);
    EXPECT_EQ(CurrentDestinationIndex(navigation), kNoDestination);
    EXPECT_FALSE(CopyCurrentDestination(navigation, current));
}

TEST_F(NavigationTest, NextPreviousAndResetWalkTheRoundAndDoNothingOnAnEmptyList) {
    Open({Destination(1, 1), Destination(2, 2), Destination(3, 3)});
    PreviousDestination(navigation);  // nothing reached: stays on the first
    EXPECT_EQ(Round(), "000 0 -1");
    NextDestination(navigation);
    NextDestination(navigation);
    EXPECT_EQ(Round(), "110 2 1");
    PreviousDestination(navigation);
    EXPECT_EQ(Round(), "100 1 0");
    NextDestination(navigation);
    NextDestination(navigation);
    NextDestination(navigation);
    EXPECT_EQ(Round(), "111 -1 2");
    // With every destination reached, Previous takes the last one back.
    PreviousDestination(navigation);
    EXPECT_EQ(Round(), "110 2 1");
    ResetDestinations(navigation);
    EXPECT_EQ(Round(), "000 0 -1");

    // On an empty list every command is without effect.
    Open({});
    NextDestination(navigation);
    PreviousDestination(navigation);
    ResetDestinations(navigation);
    EXPECT_EQ(Round(), " -1 -1");
    EXPECT_FALSE(ArriveAt(0.0));
    EXPECT_TRUE(sound.calls.empty());
}

TEST_F(NavigationTest, NextSkipsDestinationsReachedOutOfOrder) {
    GeoPoint reached = Destination(2, 2);
    reached.reached = 1;
    Open({Destination(1, 1), reached, Destination(3, 3)});
    NextDestination(navigation);
    EXPECT_EQ(navigation.current, 2);
    // Previous looks at the reached run from the head of the list only.
    PreviousDestination(navigation);
    EXPECT_EQ(Round(), "100 1 0");
}

TEST_F(NavigationTest, DistanceToTheCurrentDestinationFeedsTheTripStatistics) {
    Open({Destination(0, 1)});
    const DestinationDistance distance = [&](double latitude, double longitude, double& km) {
        return UpdateDestinationFigures(navigation, options, latitude, longitude, km);
    };
    state.speedKnots = 10;
    AdvanceTripStatistics(state, distance);
    EXPECT_NEAR(state.destinationDistanceKm, 114.319, 1e-9);
    EXPECT_EQ(state.destinationSeconds, 22221);  // 114.319 km at 18.52 km/h

    // Navigation switched off keeps the last distance.
    options.navigation = 0;
    state.latitude = 5;
    AdvanceTripStatistics(state, distance);
    EXPECT_NEAR(state.destinationDistanceKm, 114.319, 1e-9);

    options.navigation = 1;
    CloseDestinationList(navigation);
    double km = -1;
    EXPECT_FALSE(UpdateDestinationFigures(navigation, options, 0, 0, km));
    EXPECT_EQ(km, -1);
}

TEST_F(NavigationTest, RangeInMetresOrFeet) {
    options.defaultProximityRange = 200;
    EXPECT_DOUBLE_EQ(ProximityRangeKm(Destination(0, 0, -1), options), 0.2);
    EXPECT_DOUBLE_EQ(ProximityRangeKm(Destination(0, 0, 50), options), 0.05);
    options.alwaysUseDefaultRange = 1;
    EXPECT_DOUBLE_EQ(ProximityRangeKm(Destination(0, 0, 50), options), 0.2);
    options.alwaysUseDefaultRange = 0;
    options.unitSystem = kImperial;
    EXPECT_NEAR(ProximityRangeKm(Destination(0, 0, -1), options), 0.061, 0.0005);
    options.unitSystem = kNautical;
    EXPECT_NEAR(ProximityRangeKm(Destination(0, 0, 3281), options), 1.0, 0.0001);
}

TEST_F(NavigationTest, ArrivalWithinRangeSoundsTheAlarmOnceAndMovesOn) {
    Open({Destination(0, 0, 100), Destination(1, 1, -1)});
    // Only with a connected valid fix and navigation on.
    state.fixValid = 0;
    EXPECT_FALSE(ArriveAt(0.0));
    state.fixValid = 1;
    state.connected = 0;
    EXPECT_FALSE(ArriveAt(0.0));
    state.connected = 1;
    options.navigation = 0;
    EXPECT_FALSE(ArriveAt(0.0));
    options.navigation = 1;

    alarm.sounding = true;
    EXPECT_FALSE(ArriveAt(0.1001));
    // Exactly the range counts as arrived.
    EXPECT_TRUE(ArriveAt(ProximityRangeKm(Destination(0, 0, 100), options)));
    ASSERT_EQ(AlarmPlays(), 1);
    EXPECT_EQ(sound.calls.back().mode, SoundMode::kOnce);
    EXPECT_FALSE(alarm.sounding);
    EXPECT_EQ(Round(), "10 1 0");

    // The second one has no range of its own: the default 200 m applies.
    EXPECT_FALSE(ArriveAt(0.21));
    EXPECT_TRUE(ArriveAt(0.19));
    EXPECT_FALSE(ArriveAt(0.0));
    EXPECT_EQ(AlarmPlays(), 2);
}

TEST_F(NavigationTest, ArrivalSpeaksTheVoiceTextOrFallsBackToTheAlarm) {
    options.voiceGuide = 1;
    Open({Destination(0, 0, -1, "A"), Destination(0, 0, -1, ""), Destination(0, 0, -1, "Home"),
          Destination(0, 0, -1, "Gate")});
    alarm.sounding = true;
    // A one-character text is spoken, and the alarm is left alone.
    EXPECT_TRUE(ArriveAt(0.0));
    ASSERT_EQ(runner.runs.size(), 1u);
    EXPECT_EQ(runner.runs[0].back(), "A");
    EXPECT_EQ(AlarmPlays(), 0);
    EXPECT_TRUE(alarm.sounding);
    // An empty text, an engine that cannot be started and the voice guide
    // switched off give the alarm sound, retried until it plays.
    EXPECT_TRUE(ArriveAt(0.0));
    runner.canStart = false;
    EXPECT_TRUE(ArriveAt(0.0));
    EXPECT_EQ(runner.runs.size(), 2u);
    options.voiceGuide = 0;
    sound.failuresBeforeSuccess = 2;
    EXPECT_TRUE(ArriveAt(0.0));
    EXPECT_EQ(runner.runs.size(), 2u);
    EXPECT_EQ(AlarmPlays(), 5);
}

TEST(DistanceTest, FlatEarthWithTheProgramsOwnCoefficients) {
    // The longitude coefficient is 114.413 on purpose.
    EXPECT_NEAR(DistanceKm(0, 0, 0, 1), 114.413 - 0.094, 1e-9);
    EXPECT_NEAR(DistanceKm(0, 0, 1, 0), 111.133 - 0.559 * std::cos(0.017453292519943295), 1e-9);
    EXPECT_DOUBLE_EQ(DistanceKm(10, 20, 10, 20), 0.0);
    // No wrap at the antimeridian.
    EXPECT_GT(DistanceKm(0, 179.9, 0, -179.9), 40000);
}

}  // namespace
}  // namespace tolvane
