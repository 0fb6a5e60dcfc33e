#include "core/geo/distance.h"

#include <cmath>

namespace tolvane {

namespace {

// Kilometres north and east from the first position to the second.
struct FlatOffset {
    double dx;
    double dy;
};

FlatOffset OffsetKm(double latitude1, double latitude2, double dLatitude, double dLongitude) {
    // s is twice the mean latitude, so the cosines are of 2, 1 and 3 times it.
    const double s = latitude1 + latitude2;
    const double kmPerDegreeLatitude = 111.133 - 0.559 * std::cos(s * 0.017453292519943295);
    const double kmPerDegreeLongitude =
        114.413 * std::cos(s * 0.008726646259971648) - 0.094 * std::cos(s * 0.026179938779914945);
    return {kmPerDegreeLongitude * dLongitude, kmPerDegreeLatitude * dLatitude};
}

}  // namespace

double DistanceKm(double latitude1, double longitude1, double latitude2, double longitude2) {
    const FlatOffset d =
        OffsetKm(latitude1, latitude2, latitude2 - latitude1, longitude2 - longitude1);
    return std::sqrt(d.dx * d.dx + d.dy * d.dy);
}

double BearingDegrees(double latitude1, double longitude1, double latitude2, double longitude2) {
    const double dLongitude = std::remainder(longitude2 - longitude1, 360.0);
    const FlatOffset d = OffsetKm(latitude1, latitude2, latitude2 - latitude1, dLongitude);
    const double degrees = std::atan2(d.dx, d.dy) * 57.29577951308232;
    return degrees < 0 ? degrees + 360.0 : degrees;
}

}  // namespace tolvane
