#pragma once

namespace tolvane {

// The unit systems, in the order of the Options combo.
enum UnitSystem : int { kMetric = 0, kImperial = 1, kNautical = 2 };

inline constexpr double kKmPerNauticalMile = 1.852;
inline constexpr double kMilesPerKnot = 1.151;
inline constexpr double kFeetPerMetre = 3.2808;

// A speed in the speed unit of the unit system (km/h, mph or knots), and an
// altitude in metres (Metric) or feet.
double SpeedInUnit(double knots, int unitSystem);
double AltitudeInUnit(double metres, int unitSystem);

}  // namespace tolvane
