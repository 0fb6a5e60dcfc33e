#include "core/geo/units.h"

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

}  // namespace tolvane
