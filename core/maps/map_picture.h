#pragma once

#include <cstdint>
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

// Shrinks a picture that arrives a row at a time into an Image of another
// size, each pixel the mean of the picture's pixels it covers. Only the
// sums of one row of the result are held besides the result, so a picture
// far larger than memory allows whole can become a map level.
class RowShrinker {
  public:
    RowShrinker(int width, int height, LevelSize to);
    // Takes the next row of the picture: width pixels of red, green and
    // blue bytes. Rows beyond the picture's height are passed over.
    void AddRow(const std::uint8_t* rgb);
    // The shrunk picture; rows the picture never gave stay black.
    Image Take() { return std::move(image_); }

  private:
    void FinishRow();

    int height_;
    int row_ = 0;                       // the next row of the picture
    int target_ = 0;                    // the row of the result it adds to
    int rowsAdded_ = 0;                 // rows of the picture in target_'s sums
    std::vector<int> columnOf_;         // the result's column of each picture column
    std::vector<std::uint32_t> count_;  // picture columns in each result column
    std::vector<std::uint64_t> sums_;   // red, green and blue sums of target_
    Image image_;
};

}  // namespace tolvane
