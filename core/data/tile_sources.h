#pragma once

#include <string>

namespace tolvane {

// Map tiles in the Web Mercator square grid that most map tools write: at
// zoom z the world is 2^z by 2^z tiles, x from the west, y from the north
// (XYZ addressing). The program reads tiles up to this zoom, a few
// centimetres to a pixel; deeper levels are not offered.
inline constexpr int kMostTileZoom = 24;

enum class TileFormat { kUnknown, kPng, kJpeg, kWebp };

// The part of the world a source covers, in degrees.
struct TileBounds {
    double west = -180.0;
    double south = -85.0511287798;
    double east = 180.0;
    double north = 85.0511287798;
};

// What a source says about itself. An MBTiles file gives its metadata
// table's name, attribution, bounds, zoom range and format; a tile folder
// gives its own name as name and attribution and the whole world as bounds.
struct TileSourceInfo {
    std::string name;
    std::string attribution;
    TileBounds bounds;
    int minZoom = 0;
    int maxZoom = 0;
    TileFormat format = TileFormat::kUnknown;
};

// Why a source did not open.
enum class TileSourceProblem {
    kNone,
    kMissing,     // no file or folder at the path, or one that cannot be read
    kNotSqlite,   // a file that is no SQLite database, or one too damaged to read
    kNotMbtiles,  // a database without the MBTiles tables
    kNoTiles,     // a folder without zoom folders, or a zoom range that holds no tile
};

}  // namespace tolvane
