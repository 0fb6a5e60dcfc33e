#pragma once

#include "core/views/canvas.h"
#include "core/views/view_context.h"

namespace tolvane {

// Where a map view puts the earth: ProjectToScreen's origin and distance.
struct MapPlacement {
    double x0 = 0;
    double y0 = 0;
    double distance = 1;
};

// Draws what both map views lay over their picture.
void DrawMapLayers(Canvas& canvas, const ViewContext& context, const MapPlacement& placement);

}  // namespace tolvane
