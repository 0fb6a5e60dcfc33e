#pragma once

namespace tolvane {

// Kilometres between two positions in degrees: a flat-earth approximation
// with latitude-dependent degree lengths, the distance every view shows.
// Longitude differences are not wrapped at 180 degrees.
double DistanceKm(double latitude1, double longitude1, double latitude2, double longitude2);

}  // namespace tolvane
