#include "core/geo/solar.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tolvane {
namespace {

constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;
constexpr FileTime kTicksPerMinute = 60 * kFileTimeTicksPerSecond;
constexpr FileTime kTicksPerDay = 1440 * kTicksPerMinute;
// The sun's centre at sunrise and sunset: refraction and its half disc.
constexpr double kHorizonZenithDegrees = 90.833;

// The equation of time (minutes) and the declination (radians) of a
// moment, from the fractional year.
struct SolarDay {
    double equationMinutes;
    double declination;
};

SolarDay SolarDayAt(FileTime utc) {
    const CivilTime civil = FileTimeToCivil(utc);
    const FileTime yearStart = CivilToFileTime({civil.year, 1, 1}).value_or(utc);
    const FileTime nextYear =
        CivilToFileTime({civil.year + 1, 1, 1}).value_or(utc + 365 * kTicksPerDay);
    const double daysInYear = static_cast<double>(nextYear - yearStart) / kTicksPerDay;
    // Days since the year's first noon, so that the series' phase is
    // (day of year - 1 + (hour - 12) / 24).
    const double days = static_cast<double>(utc - yearStart) / kTicksPerDay - 0.5;
    const double g = 2.0 * std::numbers::pi / daysInYear * days;
    const double equation = 229.18 * (0.000075 + 0.001868 * std::cos(g) - 0.032077 * std::sin(g) -
                                      0.014615 * std::cos(2 * g) - 0.040849 * std::sin(2 * g));
    const double declination = 0.006918 - 0.399912 * std::cos(g) + 0.070257 * std::sin(g) -
                               0.006758 * std::cos(2 * g) + 0.000907 * std::sin(2 * g) -
                               0.002697 * std::cos(3 * g) + 0.00148 * std::sin(3 * g);
    return {equation, declination};
}

// The start of the UTC day that holds utc.
FileTime UtcMidnight(FileTime utc) {
    return utc - utc % kTicksPerDay;
}

// The cosine of the hour angle at which the sun's centre crosses the
// sunrise zenith; outside -1..1 when it never does that day.
double HorizonHourAngleCosine(double latitude, double declination) {
    const double phi = latitude * kRadiansPerDegree;
    return std::cos(kHorizonZenithDegrees * kRadiansPerDegree) /
               (std::cos(phi) * std::cos(declination)) -
           std::tan(phi) * std::tan(declination);
}

// One sunrise (sign -1) or sunset (sign +1) near the given UTC day, refined
// by taking the sun's motion at the event's own time; false when the sun
// does not cross the horizon.
bool HorizonCrossing(FileTime utcDay, double latitude, double longitude, int sign, FileTime& event,
                     double& cosine) {
    event = utcDay + kTicksPerDay / 2;
    for (int pass = 0; pass < 3; ++pass) {
        const SolarDay solar = SolarDayAt(event);
        cosine = HorizonHourAngleCosine(latitude, solar.declination);
        if (cosine < -1.0 || cosine > 1.0) return false;
        const double hourAngle = std::acos(cosine) / kRadiansPerDegree;
        const double minutes = 720.0 - 4.0 * (longitude - sign * hourAngle) - solar.equationMinutes;
        event = utcDay + static_cast<FileTime>(std::llround(minutes * kTicksPerMinute));
    }
    return true;
}

}  // namespace

SunPosition SunPositionAt(FileTime utc, double latitude, double longitude) {
    const SolarDay solar = SolarDayAt(utc);
    const double minutesOfDay = static_cast<double>(utc - UtcMidnight(utc)) / kTicksPerMinute;
    const double trueSolarMinutes = minutesOfDay + solar.equationMinutes + 4.0 * longitude;
    const double hourAngle = (trueSolarMinutes / 4.0 - 180.0) * kRadiansPerDegree;
    const double phi = latitude * kRadiansPerDegree;
    const double d = solar.declination;
    const double sinElevation =
        std::sin(phi) * std::sin(d) + std::cos(phi) * std::cos(d) * std::cos(hourAngle);
    // Measured from the south, westward, then turned to start at the north.
    const double fromSouth = std::atan2(
        std::sin(hourAngle), std::cos(hourAngle) * std::sin(phi) - std::tan(d) * std::cos(phi));
    double azimuth = fromSouth / kRadiansPerDegree + 180.0;
    if (azimuth >= 360.0) azimuth -= 360.0;
    return {azimuth, std::asin(std::clamp(sinElevation, -1.0, 1.0)) / kRadiansPerDegree};
}

SubsolarPoint SubsolarPointAt(FileTime utc) {
    const SolarDay solar = SolarDayAt(utc);
    const double minutesOfDay = static_cast<double>(utc - UtcMidnight(utc)) / kTicksPerMinute;
    // Where the true solar time is noon: the hour angle is zero there.
    double longitude = (720.0 - minutesOfDay - solar.equationMinutes) / 4.0;
    if (longitude < -180.0) longitude += 360.0;
    return {solar.declination / kRadiansPerDegree, longitude};
}

SunTimes TodaysSunTimes(FileTime nowUtc, double latitude, double longitude) {
    // The UTC day whose date is today's local date; the series gives the
    // events of the solar day at the observer's longitude around its noon.
    const FileTime localNow = UtcToLocal(nowUtc);
    const FileTime utcDay = UtcMidnight(localNow);
    SunTimes times;
    double cosine = 0;
    if (!HorizonCrossing(utcDay, latitude, longitude, -1, times.sunriseUtc, cosine) ||
        !HorizonCrossing(utcDay, latitude, longitude, +1, times.sunsetUtc, cosine)) {
        times = {cosine < -1.0 ? SunDay::kAlwaysUp : SunDay::kAlwaysDown, 0, 0};
        return times;
    }
    times.day = SunDay::kRisesAndSets;
    return times;
}

}  // namespace tolvane
