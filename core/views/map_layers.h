#pragma once

#include <optional>
#include <string>

#include "core/views/canvas.h"
#include "core/views/view_context.h"

namespace tolvane {

// Where a map lies on the screen: latitude 0, longitude 0 would be at (x0, y0);
// distance is the D of the projection (the scale Z is app.projection.Scale()).
struct MapPlacement {
    double x0 = 0;
    double y0 = 0;
    double distance = 1;
};

// Whether a view is one of the two maps, which share the arrow keys, the
// layers and "Full Screen (Map)".
bool IsMapView(int view);

// Whether the window is laid out full screen now: "Full Screen (Map)" is
// set and a map is shown; the other views keep their title and soft keys.
bool IsFullScreenShown(const AppState& app);

// Draws the track, waypoints, POI (a small mark per category), destinations with
// the line to the current one, labels, proximity ranges, destination info and the
// position with its course arrow, as the Show toggles of Options say.
void DrawMapLayers(Canvas& canvas, const ViewContext& context, const MapPlacement& placement);

// The screen position of a latitude and longitude on a placed map.
Point MapPoint(const ViewContext& context, const MapPlacement& placement, double latitude,
               double longitude);

// The radius in pixels of a circle of km around a point at latitude: the
// projection stretches lengths there, so the distance is adjusted first.
double MapRadius(const ViewContext& context, const MapPlacement& placement, double latitude,
                 double km);

// A shown point under a tap: its name and, with a fix, how far it is.
struct TappedPoint {
    std::string name;
    std::string distance;  // empty without a position to measure from
};

// The waypoint, POI or destination drawn nearest to at, within reach
// pixels; none when no shown point is that close.
std::optional<TappedPoint> FindPointAt(const ViewContext& context, const MapPlacement& placement,
                                       Point at, int reach);

}  // namespace tolvane
