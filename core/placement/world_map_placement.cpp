#include "core/placement/world_map_placement.h"

#include <algorithm>
#include <cmath>

namespace tolvane {
namespace {

constexpr int kMaximumCopies = 3;

double ZoomFactor(int level) {
    return std::exp2(static_cast<double>(level) / kWorldMapZoomStepsPerDoubling);
}

// Pixels per km at the equator for a map of width x height at the zoom.
double PixelsPerKm(const AppState& app, double width, double height) {
    const MapProjection& projection = app.projection;
    const double worldHeightKm = 2 * projection.LatitudeToY(kCutLatitude, projection.Scale());
    const double fill = std::max(width / (360.0 * kKmPerDegreeLongitude), height / worldHeightKm);
    return fill * ZoomFactor(app.mapKeys.worldMapZoom);
}

}  // namespace

double WorldWidth(const MapPlacement& placement, const AppState& app) {
    return app.projection.Scale() / placement.distance * 360.0 * kKmPerDegreeLongitude;
}

double HalfHeight(const MapPlacement& placement, const AppState& app) {
    return app.projection.LatitudeToY(kCutLatitude, placement.distance);
}

double WrapLongitude(double longitude) {
    return longitude - 360.0 * std::floor((longitude + 180.0) / 360.0);
}

double YToLatitude(const MapProjection& projection, double y, double distance) {
    const double pixelsPerDegree = projection.Scale() / distance * kKmPerDegreeLatitude;
    double left = std::fabs(y);
    double latitude = 0;
    for (int k = 0; k < static_cast<int>(kCutLatitude); ++k) {
        const double degree = projection.StretchFactor(k) * pixelsPerDegree;
        if (left < degree) {
            latitude = k + left / degree;
            break;
        }
        left -= degree;
        latitude = k + 1;
    }
    return y < 0 ? -latitude : latitude;
}

MapPlacement WorldMapPlacement(const AppState& app, const Rect& body) {
    const double pixelsPerKm = PixelsPerKm(app, body.Width(), body.Height());
    MapPlacement placement;
    placement.distance = app.projection.Scale() / pixelsPerKm;
    const MapCentre& centre = app.worldMapCentre;
    const double middleX = (body.left + body.right) / 2.0;
    const double middleY = (body.top + body.bottom) / 2.0;
    placement.x0 = middleX - pixelsPerKm * centre.longitude * kKmPerDegreeLongitude;
    placement.y0 = middleY + app.projection.LatitudeToY(centre.latitude, placement.distance);
    const double half = HalfHeight(placement, app);
    if (2 * half <= body.Height()) {
        placement.y0 = middleY;
    } else {
        // No ground beyond the 80 degree edges while the world can fill the height.
        placement.y0 = std::clamp(placement.y0, body.bottom - half, body.top + half);
    }
    return placement;
}

std::vector<MapPlacement> WorldMapCopies(const AppState& app, const Rect& body) {
    const MapPlacement placement = WorldMapPlacement(app, body);
    const double width = WorldWidth(placement, app);
    std::vector<MapPlacement> copies;
    for (int copy = -kMaximumCopies; copy <= kMaximumCopies; ++copy) {
        MapPlacement shifted = placement;
        shifted.x0 += copy * width;
        if (shifted.x0 + width / 2 > body.left && shifted.x0 - width / 2 < body.right) {
            copies.push_back(shifted);
        }
    }
    return copies;
}

void PanWorldMap(AppState& app, double east, double south, double distance) {
    const MapProjection& projection = app.projection;
    const double pixelsPerKm = projection.Scale() / distance;
    MapCentre& centre = app.worldMapCentre;
    centre.longitude =
        WrapLongitude(centre.longitude + east / (pixelsPerKm * kKmPerDegreeLongitude));
    const double y = projection.LatitudeToY(centre.latitude, distance) - south;
    centre.latitude = YToLatitude(projection, y, distance);
}

void StepWorldMap(AppState& app, int east, int south) {
    // A map one pixel a step wide, at the world's zoom.
    constexpr int kStepsPerWorld = 8;
    const double distance = app.projection.Scale() / PixelsPerKm(app, kStepsPerWorld, 0);
    PanWorldMap(app, east, south, distance);
}

double PixelsPerKmAtMiddle(const AppState& app, const MapPlacement& placement, const Rect& body) {
    const double middle = (body.top + body.bottom) / 2.0;
    const double latitude = YToLatitude(app.projection, placement.y0 - middle, placement.distance);
    return MapRadius(app, placement, latitude, 1.0);
}

}  // namespace tolvane
