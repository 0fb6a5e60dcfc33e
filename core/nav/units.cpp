#include "core/nav/units.h"

#include "core/gps/gps_state.h"

namespace tolvane {

double ConvertSpeed(const GpsState& state, int unitSystem) {
    switch (unitSystem) {
        case kMetric:
            return state.speedKnots * kKmPerNauticalMile;
        case kImperial:
            return state.speedKnots * kMilesPerKnot;
        default:
            return state.speedKnots;
    }
}

double ConvertAltitude(const GpsState& state, int unitSystem) {
    return unitSystem == kMetric ? state.altitude : state.altitude * kFeetPerMetre;
}

}  // namespace tolvane
