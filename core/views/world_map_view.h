#pragma once

#include "core/views/canvas.h"
#include "core/views/view_context.h"

namespace tolvane {

// Paints the World Map: the pictures of the earth with the night side
// shaded, the graticule, the layers and the coordinate strip. Without the
// pictures the graticule stands on a plain ground, with a note.
void PaintWorldMapView(Canvas& canvas, const ViewContext& context);

}  // namespace tolvane
