#include "core/nav/instrument_memory.h"

#include <algorithm>
#include <span>

#include "core/data/options.h"
#include "core/geo/distance.h"
#include "core/geo/units.h"
#include "core/gps/gps_state.h"
#include "core/nav/speed_alarm.h"

namespace tolvane {
namespace {

constexpr int kKmhScales[] = {10, 20, 40, 60, 100, 160, 250, 400};
constexpr int kMphScales[] = {10, 20, 40, 60, 100, 160, 250};
constexpr int kKnotScales[] = {5, 10, 20, 40, 60, 100};

std::span<const int> ScalesOf(int unitSystem) {
    switch (unitSystem) {
        case kMetric:
            return kKmhScales;
        case kImperial:
            return kMphScales;
        default:
            return kKnotScales;
    }
}

}  // namespace

int ChooseFullScale(double speed, double alarmLimit, int unitSystem) {
    const std::span<const int> scales = ScalesOf(unitSystem);
    const double needed = std::max(1.2 * speed, 1.1 * alarmLimit);
    const auto fitting =
        std::find_if(scales.begin(), scales.end(), [needed](int scale) { return scale >= needed; });
    return fitting == scales.end() ? scales.back() : *fitting;
}

void AdvanceSpeedScale(SpeedScale& scale, double speed, double alarmLimit, int unitSystem) {
    const int fitting = ChooseFullScale(speed, alarmLimit, unitSystem);
    if (scale.fullScale == 0 || scale.unitSystem != unitSystem || fitting > scale.fullScale) {
        scale = {fitting, unitSystem, 0};
        return;
    }
    if (speed >= 0.4 * scale.fullScale) {
        scale.slowSeconds = 0;
        return;
    }
    if (++scale.slowSeconds >= kScaleStepDownSeconds) scale = {fitting, unitSystem, 0};
}

void AdvanceCourseMemory(CourseMemory& memory, const GpsState& gps) {
    memory.live = HasLiveFix(gps) && SpeedInUnit(gps.speedKnots, kMetric) >= kCourseMinimumKmh;
    if (memory.live) {
        memory.have = true;
        memory.degrees = gps.course;
        memory.ageSeconds = 0;
    } else if (memory.have) {
        ++memory.ageSeconds;
    }
}

void AdvanceTripExtras(TripExtras& trip, const GpsState& gps) {
    // A 2D fix carries no altitude of its own.
    if (!HasLiveFix(gps) || gps.fixType < 3.0) return;
    const double altitude = gps.altitude;
    if (!trip.haveAltitude) {
        trip = {true, altitude, altitude, altitude, trip.ascentMetres, trip.descentMetres};
        return;
    }
    trip.lowestMetres = std::min(trip.lowestMetres, altitude);
    trip.highestMetres = std::max(trip.highestMetres, altitude);
    const double change = altitude - trip.anchorMetres;
    if (change >= kClimbStepMetres) {
        trip.ascentMetres += change;
    } else if (change <= -kClimbStepMetres) {
        trip.descentMetres -= change;
    } else {
        return;
    }
    trip.anchorMetres = altitude;
}

void AdvanceTripFigures(TripFigures& trip, const GpsState& gps) {
    if (!gps.connected) {
        // No step is counted across a time without the receiver.
        trip.stoppedSeconds += trip.pendingSeconds;
        trip.pendingSeconds = 0;
        trip.havePoint = false;
        return;
    }
    ++trip.pendingSeconds;
    if (!gps.fixValid) return;
    const bool moving = trip.havePoint && gps.speedKnots > 0;
    if (moving) {
        const double stepKm = DistanceKm(trip.latitude, trip.longitude, gps.latitude, gps.longitude);
        const double carriedKm = gps.speedKnots * kKmPerNauticalMile * trip.pendingSeconds / 3600.0;
        trip.distanceKm += std::min(stepKm, carriedKm);
        trip.movingSeconds += trip.pendingSeconds;
        trip.maxSpeedKnots = std::max(trip.maxSpeedKnots, gps.speedKnots);
    } else {
        trip.stoppedSeconds += trip.pendingSeconds;
    }
    trip.pendingSeconds = 0;
    trip.havePoint = true;
    trip.latitude = gps.latitude;
    trip.longitude = gps.longitude;
}

void StartFirstFix(FirstFix& firstFix, const GpsState& gps) {
    firstFix = {};
    firstFix.searching = !HasLiveFix(gps);
    if (!firstFix.searching) firstFix.timeToFixSeconds = 0;
}

void AdvanceFirstFix(FirstFix& firstFix, const GpsState& gps) {
    if (!firstFix.searching) return;
    ++firstFix.startedSeconds;
    if (HasLiveFix(gps)) {
        firstFix.searching = false;
        firstFix.timeToFixSeconds = firstFix.startedSeconds;
    } else if (gps.connected) {
        ++firstFix.searchingSeconds;
    }
}

double TripAverageKnots(const TripFigures& trip) {
    if (trip.movingSeconds == 0) return 0;
    return trip.distanceKm / kKmPerNauticalMile / trip.movingSeconds * 3600.0;
}

int TripStoppedSeconds(const TripFigures& trip) {
    return trip.stoppedSeconds + trip.pendingSeconds;
}

double SelectedAlarmLimit(const Options& options) {
    const int index = options.speedAlarmIndex;
    return index >= 0 && index <= kLastSpeedAlarm ? options.speedAlarmValues[index] : 0.0;
}

void AdvanceInstrumentMemory(InstrumentMemory& memory, const GpsState& gps,
                             const Options& options) {
    const double speed = HasLiveFix(gps) ? SpeedInUnit(gps.speedKnots, options.unitSystem) : 0.0;
    AdvanceSpeedScale(memory.speedScale, speed, SelectedAlarmLimit(options), options.unitSystem);
    AdvanceCourseMemory(memory.course, gps);
    AdvanceTripExtras(memory.trip, gps);
    AdvanceTripFigures(memory.tripFigures, gps);
    AdvanceFirstFix(memory.firstFix, gps);
}

void ClearTrip(GpsState& gps, InstrumentMemory& memory) {
    gps.havePreviousPoint = 0;
    gps.maxSpeedKnots = 0;
    gps.averageSpeedKmh = 0;
    gps.tripDistanceKm = 0;
    gps.connectedSeconds = 0;
    gps.movingSeconds = 0;
    memory.trip = {};
    memory.tripFigures = {};
}

}  // namespace tolvane
