#include "core/placement/map_placement.h"

#include <algorithm>
#include <cmath>
#include <mutex>

#include "core/geo/distance.h"
#include "core/geo/formatting.h"

namespace tolvane {

int ClampCoordinate(double value) {
    // A coordinate that is not a number (a position or a placement that
    // overflowed) has no integer; it is put off the screen.
    if (std::isnan(value)) return static_cast<int>(-kCoordinateLimit);
    return static_cast<int>(std::lround(std::clamp(value, -kCoordinateLimit, kCoordinateLimit)));
}

Point MapPoint(const AppState& app, const MapPlacement& placement, double latitude,
               double longitude) {
    const MapProjection::Point at = app.projection.ProjectToScreen(
        latitude, longitude, placement.x0, placement.y0, placement.distance);
    return {ClampCoordinate(at.x), ClampCoordinate(at.y)};
}

double MapRadius(const AppState& app, const MapPlacement& placement, double latitude, double km) {
    const MapProjection& projection = app.projection;
    return km * projection.Scale() / projection.AdjustForLatitude(latitude, placement.distance);
}

std::optional<TappedPoint> FindPointAt(const AppState& app, const MapPlacement& placement, Point at,
                                       int reach) {
    std::optional<GeoPoint> nearest;
    long best = static_cast<long>(reach) * reach + 1;
    const auto consider = [&](const DynamicList<GeoPoint>& points) {
        points.ForEach([&](const GeoPoint& point) {
            const Point shown = MapPoint(app, placement, point.latitude, point.longitude);
            const long dx = shown.x - at.x;
            const long dy = shown.y - at.y;
            if (dx * dx + dy * dy >= best) return;
            best = dx * dx + dy * dy;
            nearest = point;
        });
    };
    {
        const PointLists& lists = app.points;
        const std::lock_guard<std::mutex> guard(lists.lock);
        if (app.options.showWaypoint) consider(lists.waypoints);
        if (app.options.showPoi) consider(lists.pois);
    }
    if (app.options.showDestinations) {
        const Navigation& navigation = app.navigation;
        const std::lock_guard<std::mutex> guard(navigation.lock);
        consider(navigation.destinations);
    }
    if (!nearest) return std::nullopt;
    TappedPoint tapped{nearest->name, {}};
    if (HasLiveFix(app.gps)) {
        FormatDistance(
            app.options.unitSystem,
            DistanceKm(app.gps.latitude, app.gps.longitude, nearest->latitude, nearest->longitude),
            &tapped.distance);
    }
    return tapped;
}

}  // namespace tolvane
