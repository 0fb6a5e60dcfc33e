#pragma once

#include "core/placement/map_placement.h"
#include "core/views/canvas.h"
#include "core/views/view_context.h"

namespace tolvane {

// How bright map pictures and tiles are drawn in the night palette, so
// that a paper map's white does not dazzle.
inline constexpr double kNightPictureBrightness = 0.45;

// Draws the track, waypoints, POI (a small mark per category), destinations with
// the line to the current one, labels, proximity ranges, destination info and the
// position with its course arrow, as the Show toggles of Options say.
void DrawMapLayers(Canvas& canvas, const ViewContext& context, const MapPlacement& placement);

// The scale bar in the map's bottom left corner, for the scale at the
// middle of the view of a map placed at placement, in the unit system's
// units; a quarter of the view wide at the most.
void DrawScaleBar(Canvas& canvas, const ViewContext& context, const MapPlacement& placement);

}  // namespace tolvane
