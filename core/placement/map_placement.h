#pragma once

#include <optional>
#include <string>

#include "core/base/pixels.h"
#include "core/state/app_state.h"

namespace tolvane {

// Where a map lies on the screen: latitude 0, longitude 0 would be at (x0, y0);
// distance is the D of the projection (the scale Z is app.projection.Scale()).
struct MapPlacement {
    double x0 = 0;
    double y0 = 0;
    double distance = 1;
};

// Screen coordinates stay far inside int even when a map is zoomed in on
// a point far away; the painter's clip keeps what lies outside unseen.
inline constexpr double kCoordinateLimit = 1e8;

// A screen coordinate rounded and kept within kCoordinateLimit; one that is
// not a number lies at -kCoordinateLimit, off the screen. Every conversion
// of a computed screen position to an integer goes through it.
int ClampCoordinate(double value);

// The screen position of a latitude and longitude on a placed map.
Point MapPoint(const AppState& app, const MapPlacement& placement, double latitude,
               double longitude);

// The radius in pixels of a circle of km around a point at latitude: the
// projection stretches lengths there, so the distance is adjusted first.
double MapRadius(const AppState& app, const MapPlacement& placement, double latitude, double km);

// A shown point under a tap: its name and, with a fix, how far it is.
struct TappedPoint {
    std::string name;
    std::string distance;  // empty without a position to measure from
};

// The waypoint, POI or destination drawn nearest to at, within reach
// pixels; none when no shown point is that close.
std::optional<TappedPoint> FindPointAt(const AppState& app, const MapPlacement& placement, Point at,
                                       int reach);

}  // namespace tolvane
