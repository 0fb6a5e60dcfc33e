#pragma once

#include "core/views/canvas.h"
#include "core/views/view_context.h"

namespace tolvane {

// The Map view: the visible part of the picture, the shared map layers,
// the reference points and the cross-hair of the point being placed; the
// coordinate strip, or the picture pixel strip without calibration.
void PaintMapView(Canvas& canvas, const ViewContext& context);

}  // namespace tolvane
