#pragma once

#include "core/app/app_state.h"
#include "core/base/file_time.h"
#include "core/views/canvas.h"
#include "core/views/font_set.h"
#include "core/views/view_frame.h"

namespace tolvane {

// What a painter reads: the application state, the layout of the window's
// current size, the fonts and the current time (for the ages of figures).
struct ViewContext {
    const AppState& app;
    const ViewLayout& layout;
    const FontSet& fonts;
    FileTime nowUtc = 0;
};

// Paints the frame and the current view into the whole client area.
void PaintView(Canvas& canvas, const ViewContext& context);

}  // namespace tolvane
