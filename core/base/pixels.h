#pragma once

#include <cstdint>
#include <vector>

namespace tolvane {

// A point on the screen or in a picture, in logical pixels.
struct Point {
    int x = 0;
    int y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

// A rectangle in logical pixels; right and bottom lie just outside it.
struct Rect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    friend bool operator==(const Rect&, const Rect&) = default;
};

// A picture in memory: rows from the top, each pixel 0xRRGGBB, or
// 0xAARRGGBB in a picture with see-through parts (a map tile beyond the
// edge of its map).
struct Image {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
    bool alpha = false;
};

}  // namespace tolvane
