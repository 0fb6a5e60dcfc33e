#include "core/nav/distance.h"

#include <cmath>

namespace tolvane {

double DistanceKm(double latitude1, double longitude1, double latitude2, double longitude2) {
    // s is twice the mean latitude, so the cosines are of 2, 1 and 3 times it.
    const double s = latitude1 + latitude2;
    const double kmPerDegreeLatitude = 111.133 - 0.559 * std::cos(s * 0.017453292519943295);
    const double kmPerDegreeLongitude =
        114.413 * std::cos(s * 0.008726646259971648) - 0.094 * std::cos(s * 0.026179938779914945);
    const double dy = kmPerDegreeLatitude * (latitude2 - latitude1);
    const double dx = kmPerDegreeLongitude * (longitude2 - longitude1);
    return std::sqrt(dx * dx + dy * dy);
}

}  // namespace tolvane
