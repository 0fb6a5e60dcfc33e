#pragma once

#include <string>

#include "core/views/canvas.h"
#include "core/views/font_set.h"

namespace tolvane {

struct ViewContext;

// Where the parts of the window's client area lie for its current size.
struct ViewLayout {
    Rect client;         // everything above the soft-key bar
    Rect titleBar;       // empty in full screen
    Rect view;           // the area a view paints, below the title bar
    Rect strip;          // the coordinate strip along the foot of the view
    Rect body;           // the view above the strip, for the views that show it
    int barHeight = 0;   // the shared bar height of the layout metrics
    bool large = false;  // the large layout metrics
};

// Lays the views out in a client area of width x height logical pixels.
// The bar height follows the fonts, but never so tall that the coordinate
// strip's text would not fit half the width of a narrow window.
ViewLayout LayOutViews(int width, int height, bool largeLayout, bool fullScreen,
                       const FontSet& fonts);

// The colours of the day and the night palette. The night palette keeps
// the dark background everywhere, draws figures in amber and accents in a
// dim red, so that nothing bright spoils the eyes' adaptation in a car.
struct Palette {
    Color background;
    Color text;       // plain text: black by day, white at night
    Color value;      // the figures of the instrument views
    Color label;      // captions and scales
    Color dim;        // figures without a fix, a course that stopped
    Color line;       // separators and outlines
    Color panel;      // tiles and dial faces
    Color panelEdge;  // their edges and minor ticks
    Color accent;     // the course arrow, the bearing mark
    Color alarm;      // the alarm band, sounding digits
    Color good;       // a fix
    Color warning;    // no fix yet
    Color sun;
    Color titleBackground;
    Color titleText;
    Color stripBackground;
    Color stripText;
};
const Palette& PaletteFor(bool night);
const Palette& PaletteOf(const ViewContext& context);

// The view's name for the title bar: the menu text of the view without
// its key hint.
std::string ViewTitle(int view);

// Paints the title bar: the view's name and the status marks.
void PaintTitleBar(Canvas& canvas, const ViewContext& context);

// Where the title bar's GPS mark ("3D", "No fix", "GPS off") stands, the
// leftmost of its status marks; empty in full screen, which has no title
// bar.
Rect GpsMarkBox(Canvas& canvas, const ViewContext& context);

// Paints the coordinate strip: latitude and longitude, hemisphere last,
// centred in the two halves with a separator between. Without a fix the
// halves show grey dashes instead of a position that is no longer true.
void PaintCoordinateStrip(Canvas& canvas, const ViewContext& context);

// The Map view's strip for a picture without calibration: the picture
// pixel x and y, each held within 0 and the picture's width or height.
void PaintPixelStrip(Canvas& canvas, const ViewContext& context, double x, double y, int width,
                     int height);

// The largest font of the weight, at most maxHeight pixels tall, in which
// text is at most maxWidth wide.
Font FitFont(Canvas& canvas, const std::string& text, int maxWidth, int maxHeight, int weight);

}  // namespace tolvane
