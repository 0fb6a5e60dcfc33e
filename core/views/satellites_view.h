#pragma once

#include "core/views/canvas.h"
#include "core/views/view_context.h"

namespace tolvane {

inline constexpr int kSkyDirectionFontSlot = 23;  // directions and the title
inline constexpr int kSkyElevationFontSlot = 18;
inline constexpr int kSkyLegendFontSlot = 24;  // the legend and the satellite numbers

// The sky plot: its centre and horizon radius, and the radii of the 30 and
// 60 degree rings. The rings stand a little inside their true places, by a
// tenth and a fifth of the bar height, so that a satellite at exactly 30 or
// 60 degrees sits just outside its ring rather than on it.
struct SkyPlot {
    Point centre;
    int radius = 0;
    int ring30 = 0;
    int ring60 = 0;
};

SkyPlot MakeSkyPlot(Point centre, int radius, int barHeight);

// Where a satellite at elevation and azimuth (degrees) stands on the plot:
// north up, east right, the centre overhead; a negative elevation falls
// outside the horizon.
Point SkyPosition(const SkyPlot& plot, double elevation, double azimuth);

// The disc colour of a signal-to-noise ratio: white for an untracked
// satellite (0), then red, orange, yellow, green, cyan and blue in bands of
// ten up to 50 and one band up to 99.
Color SnrColor(int snr);

// The sky plot of the satellites in view, the title with the counts and
// the legend of the signal bands.
void PaintSatellitesView(Canvas& canvas, const ViewContext& context);

}  // namespace tolvane
