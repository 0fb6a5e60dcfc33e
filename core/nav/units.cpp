#include "core/nav/units.h"

#include "core/gps/gps_state.h"

namespace tolvane {

double SpeedInUnit(double knots, int unitSystem) {
    switch (unitSystem) {
        case kMetric:
            return knots * kKmPerNauticalMile;
        case kImperial:
            return knots * kMilesPerKnot;
        default:
            return knots;
    }
}

double AltitudeInUnit(double metres, int unitSystem) {
    return unitSystem == kMetric ? metres : metres * kFeetPerMetre;
}

double ConvertSpeed(const GpsState& state, int unitSystem) {
    return SpeedInUnit(state.speedKnots, unitSystem);
}

double ConvertAltitude(const GpsState& state, int unitSystem) {
    return AltitudeInUnit(state.altitude, unitSystem);
}

}  // namespace tolvane
