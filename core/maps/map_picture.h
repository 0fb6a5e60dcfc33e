#pragma once

#include <vector>

#include "core/base/pixels.h"

namespace tolvane {

// The largest level a picture is kept at: pictures with more pixels are
// read scaled down, so that a 10000 x 10000 scan takes some 64 MB for its
// largest level and about a third more for the rest, not 400 MB.
inline constexpr long long kMaxLevelPixels = 16LL * 1024 * 1024;
// Levels are made down to this size of their longer side.
inline constexpr int kSmallestLevelSide = 256;

// A map picture in memory as scaled levels: levels[0] the largest kept,
// each next one half as wide and high. Calibration and the views speak in
// the pixels of the picture file (width x height), whatever level is drawn.
struct MapPicture {
    int width = 0;
    int height = 0;
    std::vector<Image> levels;
};

// The size of level 0 for a picture of width x height.
struct LevelSize {
    int width;
    int height;
};
LevelSize LargestLevelSize(int width, int height);

// The level to draw at the given screen pixels per picture pixel: the
// smallest that still has at least one of its pixels per screen pixel.
int PickLevel(const MapPicture& picture, double screenPerPixel);

}  // namespace tolvane
