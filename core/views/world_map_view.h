#pragma once

#include <vector>

#include "core/views/canvas.h"
#include "core/views/map_layers.h"
#include "core/views/view_context.h"

namespace tolvane {

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

// Paints the World Map: the pictures of the earth with the night side
// shaded, the graticule, the layers and the coordinate strip. Without the
// pictures the graticule stands on a plain ground, with a note.
void PaintWorldMapView(Canvas& canvas, const ViewContext& context);

}  // namespace tolvane
