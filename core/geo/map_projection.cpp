#include "core/geo/map_projection.h"

#include <cmath>

namespace tolvane {
namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr double kKmPerDegreeLongitudeAtEquator = 114.319;
// The vertical scale deliberately uses its own round figure.
constexpr double kKmPerDegreeLatitude = 111.0;
constexpr double kMaximumLatitude = 80.0;

int StretchIndex(double latitude) {
    const int index = static_cast<int>(std::fabs(std::trunc(latitude)));
    return index < kStretchTableSize ? index : kStretchTableSize - 1;
}

}  // namespace

void MapProjection::BuildStretchTable() {
    for (int k = 0; k < kStretchTableSize; ++k) {
        table_[k] = kKmPerDegreeLongitudeAtEquator / (114.413 * std::cos(k * kRadiansPerDegree) -
                                                      0.094 * std::cos(k * 0.05235987755982989));
    }
}

double MapProjection::LatitudeToY(double latitude, double distance) const {
    const double pixelsPerDegree = scale_ / distance * kKmPerDegreeLatitude;
    const double a = std::fmin(std::fabs(latitude), kMaximumLatitude);
    const int whole = static_cast<int>(a);
    double y = 0;
    for (int k = 0; k < whole; ++k) y += table_[k] * pixelsPerDegree;
    if (whole < kStretchTableSize) y += table_[whole] * (a - whole) * pixelsPerDegree;
    return latitude < 0 ? -y : y;
}

MapProjection::Point MapProjection::ProjectToScreen(double latitude, double longitude, double x0,
                                                    double y0, double distance) const {
    return {scale_ / distance * longitude * kKmPerDegreeLongitudeAtEquator + x0,
            y0 - LatitudeToY(latitude, distance)};
}

double MapProjection::AdjustForLatitude(double latitude, double value) const {
    return value / table_[StretchIndex(latitude)];
}

}  // namespace tolvane
