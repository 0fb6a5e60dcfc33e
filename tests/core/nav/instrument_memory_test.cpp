#include "core/nav/instrument_memory.h"

#include <gtest/gtest.h>

#include "core/geo/solar.h"
#include "core/geo/units.h"
#include "core/gps/gps_state.h"

namespace tolvane {
namespace {

TEST(SpeedScaleTest, PicksTheSmallestScaleAboveSpeedAndAlarm) {
    EXPECT_EQ(ChooseFullScale(0, 0, kMetric), 10);
    EXPECT_EQ(ChooseFullScale(9, 0, kMetric), 20);     // 10.8 needed
    EXPECT_EQ(ChooseFullScale(50, 80, kMetric), 100);  // the alarm's 88 wins over 60
    EXPECT_EQ(ChooseFullScale(500, 0, kMetric), 400);  // the largest; the digits go on
    EXPECT_EQ(ChooseFullScale(300, 0, kImperial), 250);
    EXPECT_EQ(ChooseFullScale(4, 0, kNautical), 5);
    EXPECT_EQ(ChooseFullScale(90, 0, kNautical), 100);
}

TEST(SpeedScaleTest, RisesAtOnceAndStepsDownAfterAMinuteBelowFortyPercent) {
    SpeedScale scale;
    AdvanceSpeedScale(scale, 90, 0, kMetric);
    EXPECT_EQ(scale.fullScale, 160);
    // 60 km/h is below 40 % of 160: the scale holds for 59 seconds.
    for (int second = 1; second < 60; ++second) AdvanceSpeedScale(scale, 60, 0, kMetric);
    EXPECT_EQ(scale.fullScale, 160);
    AdvanceSpeedScale(scale, 60, 0, kMetric);
    EXPECT_EQ(scale.fullScale, 100);

    // One second at 40 % or more starts the minute again.
    for (int second = 0; second < 59; ++second) AdvanceSpeedScale(scale, 10, 0, kMetric);
    AdvanceSpeedScale(scale, 40, 0, kMetric);
    for (int second = 0; second < 59; ++second) AdvanceSpeedScale(scale, 10, 0, kMetric);
    EXPECT_EQ(scale.fullScale, 100);
    AdvanceSpeedScale(scale, 10, 0, kMetric);
    EXPECT_EQ(scale.fullScale, 20);
    // An alarm limit above the scale raises it at once and keeps it up.
    AdvanceSpeedScale(scale, 10, 120, kMetric);
    EXPECT_EQ(scale.fullScale, 160);
    for (int second = 0; second < 120; ++second) AdvanceSpeedScale(scale, 10, 120, kMetric);
    EXPECT_EQ(scale.fullScale, 160);
    // Another unit starts from its own scales.
    AdvanceSpeedScale(scale, 10, 0, kNautical);
    EXPECT_EQ(scale.fullScale, 20);
}

GpsState Fix(double altitude, double fixType = 3.0) {
    GpsState gps;
    gps.connected = gps.fixValid = 1;
    gps.altitude = altitude;
    gps.fixType = fixType;
    return gps;
}

TEST(TripExtrasTest, CountsClimbsOfFiveMetresAndKeepsTheRange) {
    TripExtras trip;
    for (const double altitude : {100.0, 103.0, 104.0, 106.0, 102.0, 103.0, 100.0, 101.0, 99.0}) {
        AdvanceTripExtras(trip, Fix(altitude));
    }
    // Up 6 (100 to 106) and down 6 (106 to 100); the wobbles of up to 4
    // metres around them count nothing.
    EXPECT_DOUBLE_EQ(trip.ascentMetres, 6);
    EXPECT_DOUBLE_EQ(trip.descentMetres, 6);
    EXPECT_DOUBLE_EQ(trip.lowestMetres, 99);
    EXPECT_DOUBLE_EQ(trip.highestMetres, 106);
    // A 2D fix or no fix carries no altitude.
    AdvanceTripExtras(trip, Fix(500, 2.0));
    GpsState lost = Fix(500);
    lost.fixValid = 0;
    AdvanceTripExtras(trip, lost);
    EXPECT_DOUBLE_EQ(trip.highestMetres, 106);

    InstrumentMemory memory;
    memory.trip = trip;
    GpsState gps = Fix(100);
    gps.tripDistanceKm = 3;
    gps.movingSeconds = gps.connectedSeconds = 60;
    gps.maxSpeedKnots = 10;
    gps.averageSpeedKmh = 180;
    gps.havePreviousPoint = 1;
    ClearTrip(gps, memory);
    EXPECT_FALSE(memory.trip.haveAltitude);
    EXPECT_EQ(memory.trip.ascentMetres, 0);
    EXPECT_EQ(gps.tripDistanceKm + gps.movingSeconds + gps.connectedSeconds + gps.maxSpeedKnots +
                  gps.averageSpeedKmh + gps.havePreviousPoint,
              0);
    EXPECT_DOUBLE_EQ(gps.altitude, 100);  // the fix itself stays
}

TEST(CourseMemoryTest, KeepsTheLastCourseFromTwoKilometresAnHourAndAgesIt) {
    CourseMemory memory;
    GpsState gps = Fix(0);
    gps.course = 123;
    gps.speedKnots = 1.9 / kKmPerNauticalMile;
    AdvanceCourseMemory(memory, gps);
    EXPECT_FALSE(memory.have);
    gps.speedKnots = 2.0 / kKmPerNauticalMile;
    AdvanceCourseMemory(memory, gps);
    EXPECT_TRUE(memory.live);
    gps.course = 300;
    gps.speedKnots = 0;
    for (int second = 0; second < 3; ++second) AdvanceCourseMemory(memory, gps);
    EXPECT_FALSE(memory.live);
    EXPECT_EQ(memory.degrees, 123);
    EXPECT_EQ(memory.ageSeconds, 3);
}

FileTime Utc(int year, int month, int day, int hour, int minute) {
    return *CivilToFileTime({year, month, day, hour, minute, 0, 0});
}

// Minutes between two times, for comparing with published sunrise tables.
double MinutesApart(FileTime a, FileTime b) {
    return std::abs(static_cast<double>(a - b)) / (60.0 * kFileTimeTicksPerSecond);
}

// Published sunrise and sunset (to the minute):
// London at midsummer and New York at midwinter, in UTC (the tests run in
// UTC, so "local" is UTC here).
TEST(SolarTest, SunriseAndSunsetMatchPublishedTimes) {
    const SunTimes london = TodaysSunTimes(Utc(2024, 6, 21, 12, 0), 51.5074, -0.1278);
    ASSERT_EQ(london.day, SunDay::kRisesAndSets);
    EXPECT_LE(MinutesApart(london.sunriseUtc, Utc(2024, 6, 21, 3, 43)), 1.0);
    EXPECT_LE(MinutesApart(london.sunsetUtc, Utc(2024, 6, 21, 20, 21)), 1.0);
    const SunTimes newYork = TodaysSunTimes(Utc(2024, 12, 21, 15, 0), 40.7128, -74.0060);
    EXPECT_LE(MinutesApart(newYork.sunriseUtc, Utc(2024, 12, 21, 12, 16)), 1.0);
    EXPECT_LE(MinutesApart(newYork.sunsetUtc, Utc(2024, 12, 21, 21, 32)), 1.0);

    EXPECT_EQ(TodaysSunTimes(Utc(2024, 12, 21, 12, 0), 69.65, 18.96).day, SunDay::kAlwaysDown);
    EXPECT_EQ(TodaysSunTimes(Utc(2024, 6, 21, 12, 0), 69.65, 18.96).day, SunDay::kAlwaysUp);

    // Around local noon in London the sun stands due south, 90 - 51.5 +
    // 23.4 degrees high; before sunrise it is below the horizon in the
    // north-east.
    const SunPosition noon = SunPositionAt(Utc(2024, 6, 21, 12, 2), 51.5074, -0.1278);
    EXPECT_NEAR(noon.azimuth, 180, 1.0);
    EXPECT_NEAR(noon.elevation, 61.9, 0.3);
    const SunPosition dawn = SunPositionAt(Utc(2024, 6, 21, 3, 0), 51.5074, -0.1278);
    EXPECT_LT(dawn.elevation, 0);
    EXPECT_GT(dawn.azimuth, 30);
    EXPECT_LT(dawn.azimuth, 60);
}

}  // namespace
}  // namespace tolvane
