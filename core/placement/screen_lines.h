#pragma once

#include <vector>

#include "core/base/dynamic_list.h"
#include "core/base/pixels.h"
#include "core/data/track_file.h"
#include "core/geo/geo_point.h"
#include "core/placement/map_placement.h"
#include "core/state/app_state.h"

namespace tolvane {

// A line on a map as the screen shows it: pieces of screen points, a new
// piece where the line crosses the 180 degree meridian (the world repeats
// there), points closer than a pixel or two to the last one left out, and
// long pieces cut into short runs, which the window strokes much faster
// than one line of thousands of points.
using ScreenPieces = std::vector<std::vector<Point>>;

// A track on a placed World Map or Map view.
ScreenPieces TrackPieces(const AppState& app, const MapPlacement& placement,
                         const DynamicList<TrackPoint>& track);

// The great circle from a position to a destination.
ScreenPieces GreatCirclePieces(const AppState& app, const MapPlacement& placement,
                               const MapFollow& from, const GeoPoint& to);

}  // namespace tolvane
