#include "core/gps/gps_processing.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

GpsFix Fix(double latitude, double longitude, double speedKnots = 0, double altitude = 0) {
    GpsFix fix;
    fix.fixValid = 1;
    fix.latitude = latitude;
    fix.longitude = longitude;
    fix.speedKnots = speedKnots;
    fix.altitude = altitude;
    fix.satellitesInView = 2;
    fix.satPrn[1] = 17;
    fix.fixType = 3.0;
    fix.fixTime = 1000 * kFileTimeTicksPerSecond;
    return fix;
}

class ProcessorTest : public ::testing::Test {
  protected:
    void Tick(int processor, const GpsFix& fix, std::int32_t connected = 1) {
        UpdateGpsState(state_, processor_, processor, connected, fix);
    }
    GpsState state_;
    ProcessorState processor_;
};

TEST_F(ProcessorTest, RawPublishesTheFixAndClearsTheOtherProcessors) {
    Tick(kProcessorAveraging, Fix(1, 2));
    Tick(kProcessorRaw, Fix(10, 20, 5, 100));
    EXPECT_EQ(state_.latitude, 10);
    EXPECT_EQ(state_.satPrn[1], 17);
    EXPECT_EQ(processor_.history[kAveragingSlots - 1].valid, 0);
    // An unknown processor publishes nothing.
    Tick(7, Fix(3, 4));
    EXPECT_EQ(state_.latitude, 10);
    EXPECT_EQ(state_.connected, 1);
}

TEST_F(ProcessorTest, AveragingOverTheValidSlots) {
    Tick(kProcessorAveraging, Fix(10, 20, 4, 100));
    EXPECT_EQ(state_.latitude, 10);  // only the newest slot is valid: the raw fix
    Tick(kProcessorAveraging, Fix(12, 22, 6, 200));
    EXPECT_DOUBLE_EQ(state_.latitude, 11);
    EXPECT_DOUBLE_EQ(state_.longitude, 21);
    EXPECT_DOUBLE_EQ(state_.speedKnots, 5);
    EXPECT_DOUBLE_EQ(state_.altitude, 150);
    for (int i = 0; i < 5; ++i) Tick(kProcessorAveraging, Fix(20, 30));
    EXPECT_DOUBLE_EQ(state_.latitude, 20);  // the old fixes have left the history

    // An invalid fix publishes unchanged and forgets the history.
    GpsFix invalid = Fix(50, 60);
    invalid.fixValid = 0;
    Tick(kProcessorAveraging, invalid);
    EXPECT_EQ(state_.latitude, 50);
    EXPECT_EQ(state_.fixValid, 0);
    Tick(kProcessorAveraging, Fix(1, 1));
    EXPECT_EQ(state_.latitude, 1);
}

TEST_F(ProcessorTest, AveragingAcrossTheAntimeridianMirrorsTheHistory) {
    const double longitudes[] = {179.5, -179.6, 179.7, 179.8, -179.9};
    for (const double longitude : longitudes) Tick(kProcessorAveraging, Fix(0, longitude));
    // Mirrored: 0.5, -0.4, 0.3, 0.2, -0.1 average 0.1, mirrored back to 179.9.
    EXPECT_NEAR(state_.longitude, 179.9, 1e-9);
    EXPECT_NEAR(processor_.history[0].longitude, 0.5, 1e-9);
    EXPECT_NEAR(processor_.history[1].longitude, -0.4, 1e-9);
    EXPECT_NEAR(processor_.history[4].longitude, -0.1, 1e-9);
    // The mirrored values stay: one fix away from the seam now averages
    // with them.
    Tick(kProcessorAveraging, Fix(0, 10));
    EXPECT_NEAR(state_.longitude, (-0.4 + 0.3 + 0.2 - 0.1 + 10) / 5, 1e-9);
}

TEST_F(ProcessorTest, SmoothingStartsWithTheFixThenHalvesTheStep) {
    Tick(kProcessorSmoothing, Fix(10, 20, 4, 100));
    EXPECT_EQ(state_.latitude, 10);
    EXPECT_EQ(state_.speedKnots, 4);
    Tick(kProcessorSmoothing, Fix(12, 24, 8, 300));
    EXPECT_DOUBLE_EQ(state_.latitude, 11);
    EXPECT_DOUBLE_EQ(state_.longitude, 22);
    EXPECT_DOUBLE_EQ(state_.speedKnots, 6);
    EXPECT_EQ(state_.altitude, 300);  // altitude is not smoothed
    // The variance after the first step is Q/2, so the next gain is 3/5.
    Tick(kProcessorSmoothing, Fix(16, 22, 6, 300));
    EXPECT_NEAR(state_.latitude, 11 + 0.6 * 5, 1e-9);
    EXPECT_NEAR(state_.speedKnots, 6, 1e-9);
}

TEST_F(ProcessorTest, TimeIsResyncedEveryEleventhTick) {
    GpsFix fix = Fix(1, 2);
    Tick(kProcessorRaw, fix);
    EXPECT_EQ(state_.fixTime, fix.fixTime);
    for (int tick = 1; tick <= 10; ++tick) {
        fix.fixTime += 3 * kFileTimeTicksPerSecond;  // a receiver that runs fast
        Tick(kProcessorRaw, fix);
        EXPECT_EQ(state_.fixTime, 1000 * kFileTimeTicksPerSecond + tick * kFileTimeTicksPerSecond);
    }
    fix.fixTime += kFileTimeTicksPerSecond;
    Tick(kProcessorRaw, fix);
    EXPECT_EQ(state_.fixTime, fix.fixTime);
    Tick(kProcessorRaw, fix, 0);  // disconnected: the next valid tick resyncs
    EXPECT_EQ(state_.timeResyncCountdown, 0);
}

TEST(MinimumSpeedHoldTest, FirstTickKeepsPositionLaterTicksFreeze) {
    GpsState state;
    state.connected = 1;
    state.fixValid = 1;
    state.latitude = 10;
    state.course = 90;
    state.speedKnots = 1;  // 1.852 km/h
    ApplyMinimumSpeedHold(state, 0, 5.0);
    EXPECT_EQ(state.speedKnots, 0);
    EXPECT_EQ(state.latitude, 10);
    EXPECT_EQ(state.hadFixLastTick, 1);

    state.latitude = 11;
    state.course = 180;
    state.speedKnots = 2;
    ApplyMinimumSpeedHold(state, 0, 5.0);
    EXPECT_EQ(state.latitude, 10);
    EXPECT_EQ(state.course, 90);
    EXPECT_EQ(state.speedKnots, 0);

    // Equal to the minimum is not held (strict comparison): 5 knots in the
    // nautical system against a minimum of 5.
    state.latitude = 12;
    state.speedKnots = 5;
    ApplyMinimumSpeedHold(state, 2, 5.0);
    EXPECT_EQ(state.latitude, 12);
    EXPECT_EQ(state.heldLatitude, 12);

    state.fixValid = 0;
    ApplyMinimumSpeedHold(state, 0, 5.0);
    EXPECT_EQ(state.hadFixLastTick, 0);
}

TEST(TripStatisticsTest, DistancesTimesAndDestination) {
    GpsState state;
    state.connected = 1;
    state.fixValid = 1;
    state.speedKnots = 10;
    int calls = 0;
    const DestinationDistance toDestination = [&](double, double, double& km) {
        ++calls;
        km = 18.52;
        return true;
    };
    AdvanceTripStatistics(state, toDestination);
    EXPECT_EQ(state.tripDistanceKm, 0);
    EXPECT_EQ(state.movingSeconds, 1);
    EXPECT_EQ(state.destinationSeconds, 3600);  // 18.52 km at 18.52 km/h
    state.longitude = 1;
    AdvanceTripStatistics(state, toDestination);
    EXPECT_NEAR(state.tripDistanceKm, 114.319, 1e-9);
    EXPECT_NEAR(state.averageSpeedKmh, 114.319 * 3600, 1e-6);  // before this tick's second
    EXPECT_EQ(state.maxSpeedKnots, 10);
    EXPECT_EQ(calls, 2);

    state.speedKnots = 0;
    AdvanceTripStatistics(state, {});
    EXPECT_EQ(state.destinationSeconds, -1);
    EXPECT_EQ(state.movingSeconds, 2);
    EXPECT_EQ(state.connectedSeconds, 3);

    state.fixValid = 0;
    AdvanceTripStatistics(state, toDestination);
    EXPECT_EQ(state.connectedSeconds, 4);
    EXPECT_EQ(calls, 2);
    state.connected = 0;
    AdvanceTripStatistics(state, toDestination);
    EXPECT_EQ(state.havePreviousPoint, 0);
    EXPECT_EQ(state.connectedSeconds, 4);
}

}  // namespace
}  // namespace tolvane
