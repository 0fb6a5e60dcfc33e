#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "core/base/pixels.h"

namespace tolvane {

// The size of a PNG picture, and whether its rows can be read one at a time
// (an interlaced picture needs the whole picture at once).
struct PngShape {
    int width = 0;
    int height = 0;
    bool rowByRow = false;
};

// The shape of the PNG file at path; false for a file that is no PNG.
bool ReadPngShape(const std::string& path, PngShape& shape);

// Reads a PNG that is not interlaced a row at a time, whatever its colour
// type and depth, and hands each row to row as width pixels of red, green
// and blue bytes; transparency is laid over black, as the window shows an
// image without alpha. Only one row is held. False when the file cannot be
// read to its end (rows read before the fault have been handed on).
bool ReadPngRows(const std::string& path, const std::function<void(const std::uint8_t*)>& row);

// Decodes a whole PNG held in memory (a map tile), interlaced or not, into
// image; a picture with see-through pixels keeps them (0xAARRGGBB, alpha
// set), so that what lies under a tile beyond its map's edge shows. False
// for bytes that are no whole PNG and for a picture wider or taller than
// mostSide, which is refused before any pixel is read.
bool DecodePng(std::string_view bytes, int mostSide, Image& image);

}  // namespace tolvane
