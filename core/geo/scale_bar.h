#pragma once

#include <string>

namespace tolvane {

// The scale bar of the map views: a round length, 1, 2 or 5 times a power
// of ten of the unit system's unit (metres and km, feet and miles, and
// nautical miles at sea), as long as fits the room it is given.
struct ScaleBar {
    int pixels = 0;  // 0: no length fits
    std::string text;
};

// The longest round length of at most mostPixels on a map of pixelsPerKm
// screen pixels to the km where the bar lies.
ScaleBar ChooseScaleBar(double pixelsPerKm, int unitSystem, int mostPixels);

}  // namespace tolvane
