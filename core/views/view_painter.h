#pragma once

#include "core/views/canvas.h"
#include "core/views/view_context.h"

namespace tolvane {

// Paints the frame and the current view into the whole client area.
void PaintView(Canvas& canvas, const ViewContext& context);

}  // namespace tolvane
