#pragma once

namespace tolvane {

struct GpsState;

// The unit systems, in the order of the Options combo.
enum UnitSystem : int { kMetric = 0, kImperial = 1, kNautical = 2 };

inline constexpr double kKmPerNauticalMile = 1.852;
inline constexpr double kMilesPerKnot = 1.151;
inline constexpr double kFeetPerMetre = 3.2808;

// The current speed of state in the speed unit of the unit system: km/h,
// mph or knots.
double ConvertSpeed(const GpsState& state, int unitSystem);

// The current altitude of state in metres (Metric) or feet.
double ConvertAltitude(const GpsState& state, int unitSystem);

// The same conversions for a figure other than the current one, such as
// the trip's maximum speed or its highest altitude.
double SpeedInUnit(double knots, int unitSystem);
double AltitudeInUnit(double metres, int unitSystem);

}  // namespace tolvane
