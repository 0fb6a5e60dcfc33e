#pragma once

#include <string>
#include <vector>

#include "core/views/canvas.h"
#include "core/views/view_context.h"

namespace tolvane {

// One tile of the trip: its caption, figure and unit; dim when the figure
// is not known yet.
struct TripTile {
    std::string label;
    std::string value;
    std::string unit;
    bool known = true;
};

// The trip's figures in the order of the tiles, the distance first.
std::vector<TripTile> TripTiles(const AppState& app);

// The trip in tiles: the distance largest across the top, then moving and
// stopped time, average and maximum speed, ascent and descent, lowest and
// highest altitude, connected time and the time to the first fix, in two
// columns on an upright window and three on a wide one.
void PaintTripStatView(Canvas& canvas, const ViewContext& context);

}  // namespace tolvane
