#pragma once

#include "core/base/file_time.h"

namespace tolvane {

// Where the sun stands, in degrees: azimuth true from north, clockwise;
// elevation above the horizon, negative below it.
struct SunPosition {
    double azimuth = 0;
    double elevation = 0;
};

// The sun's place for an observer at a time in UTC, from the short
// fractional-year series of solar position (good to about a minute of
// time and a few tenths of a degree), with no refraction.
SunPosition SunPositionAt(FileTime utc, double latitude, double longitude);

// The point of the earth where the sun stands overhead at a time in UTC,
// in degrees; the day-night line of the World Map is drawn around it.
struct SubsolarPoint {
    double latitude = 0;
    double longitude = 0;
};
SubsolarPoint SubsolarPointAt(FileTime utc);

enum class SunDay { kRisesAndSets, kAlwaysUp, kAlwaysDown };

// The sun's rising and setting on one day, as UTC file times. Near the
// poles the sun may stay above or below the horizon all day; the times
// are then 0.
struct SunTimes {
    SunDay day = SunDay::kAlwaysDown;
    FileTime sunriseUtc = 0;
    FileTime sunsetUtc = 0;
};

// Sunrise and sunset of the local calendar day that contains nowUtc, for
// an observer at the position; the upper limb touching the horizon with
// standard refraction (the sun's centre 0.833 degrees below it).
SunTimes TodaysSunTimes(FileTime nowUtc, double latitude, double longitude);

}  // namespace tolvane
