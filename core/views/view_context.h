#pragma once

#include "core/app/app_state.h"
#include "core/base/file_time.h"
#include "core/views/font_set.h"
#include "core/views/view_frame.h"

namespace tolvane {

// What a painter reads: the application state, the layout of the window's
// current size, the fonts and the current time (for the sun and the ages
// of figures).
struct ViewContext {
    const AppState& app;
    const ViewLayout& layout;
    const FontSet& fonts;
    FileTime nowUtc = 0;
};

}  // namespace tolvane
