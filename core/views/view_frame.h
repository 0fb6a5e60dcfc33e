#pragma once

#include "core/views/canvas.h"
#include "core/views/font_set.h"

namespace tolvane {

// Where the parts of the window's client area lie for its current size:
// the title bar, the view itself and the coordinate strip at its foot.
struct ViewLayout {
    Rect client;    // everything above the soft-key bar
    Rect titleBar;  // empty in full screen
    Rect view;      // the area a view paints
    Rect strip;     // the coordinate strip
    int barHeight = 0;  // the shared bar height of the layout metrics
    bool large = false;  // the large layout metrics
};

// Lays the views out in a client area of width x height logical pixels.
ViewLayout LayOutViews(int width, int height, bool largeLayout, bool fullScreen,
                       const FontSet& fonts);

// The colours of the day and the night palette.
struct Palette {
    Color background;
    Color text;
    Color dimText;
    Color line;
    Color titleBackground;
    Color titleText;
};
const Palette& PaletteFor(bool night);

}  // namespace tolvane
