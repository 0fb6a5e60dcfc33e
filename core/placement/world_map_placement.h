#pragma once

#include <vector>

#include "core/geo/map_projection.h"
#include "core/placement/map_placement.h"
#include "core/state/app_state.h"

namespace tolvane {

// The World Map's projection: a degree of longitude is this many km at the
// scale factor, a degree of latitude this many (stretched away from the
// equator), and the map ends at 80 degrees north and south.
inline constexpr double kKmPerDegreeLongitude = 114.319;
inline constexpr double kKmPerDegreeLatitude = 111.0;
inline constexpr double kCutLatitude = 80.0;

// The World Map's zoom: at level 0 the world fills the map, its whole
// width across a tall map or its whole height down a wide one, and every
// 16 levels double the scale.
inline constexpr int kWorldMapZoomStepsPerDoubling = 16;
// The World Map's scale limit: zoomed out, the world shrinks to no less
// than half the map's width, beyond which it would only be a smaller dot.
inline constexpr int kWorldMapLowestZoom = -kWorldMapZoomStepsPerDoubling;

// Where the world lies in body at the World Map's zoom and centre. The
// world is shifted up or down no further than its 80 degree edges allow,
// so that it fills the height it can.
MapPlacement WorldMapPlacement(const AppState& app, const Rect& body);

// The placements of every copy of the world that shows in body, the map
// repeating east and west of the 180 degree meridian as the earth does.
std::vector<MapPlacement> WorldMapCopies(const AppState& app, const Rect& body);

// Moves the World Map's centre by east and south screen pixels of the map
// as placed at distance; the latitude stays within the 80 degrees it shows.
void PanWorldMap(AppState& app, double east, double south, double distance);

// Moves the World Map by arrow key steps: each an eighth of the world's
// width at zoom 0, smaller as the map is zoomed in.
void StepWorldMap(AppState& app, int east, int south);

// The width of one copy of the world, and half its height, in pixels of
// the placed map.
double WorldWidth(const MapPlacement& placement, const AppState& app);
double HalfHeight(const MapPlacement& placement, const AppState& app);

// A longitude of a repeated world, brought back into -180..180.
double WrapLongitude(double longitude);

// Screen pixels to the km, east and west, at the middle of body on a map
// placed at placement; the scale bar of both map views measures by it.
double PixelsPerKmAtMiddle(const AppState& app, const MapPlacement& placement, const Rect& body);

// The latitude at a signed distance y from the equator (pixels, north
// positive); the inverse of LatitudeToY within the 80 degrees it covers.
double YToLatitude(const MapProjection& projection, double y, double distance);

}  // namespace tolvane
