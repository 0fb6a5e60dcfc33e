#pragma once

namespace tolvane {

// Kilometres between two positions in degrees: a flat-earth approximation
// with latitude-dependent degree lengths, the distance every view shows.
// Longitude differences are not wrapped at 180 degrees.
double DistanceKm(double latitude1, double longitude1, double latitude2, double longitude2);

// The direction from the first position to the second in degrees true,
// 0 up to 360, on the same flat approximation, so that the bearing a view
// shows agrees with the distance beside it. The longitude difference is
// taken the short way round.
double BearingDegrees(double latitude1, double longitude1, double latitude2, double longitude2);

}  // namespace tolvane
