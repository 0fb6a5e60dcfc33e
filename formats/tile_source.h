#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/base/pixels.h"
#include "core/data/tile_sources.h"

namespace tolvane {

// A tile bigger than this is refused and skipped, so that a damaged or
// hostile map cannot fill the memory with one tile.
inline constexpr std::size_t kMostTileBytes = 4 * 1024 * 1024;
// Tiles are 256 or 512 pixels square; a decoded picture of more is refused.
inline constexpr int kMostTileSide = 512;

// One source of tiles, an MBTiles file or a tile folder, opened read-only;
// nothing is ever written into or beside a user's map.
//
// A source is not shared between threads: one worker thread opens it (or
// takes it over) and alone asks it for tiles. Covers and Info read no file
// and are cheap; TileBytes reads the disk.
class TileSource {
  public:
    virtual ~TileSource() = default;

    const TileSourceInfo& Info() const { return info_; }

    // Whether the source may hold tile (z, x, y): the zoom lies in its range,
    // the tile in the grid and within its bounds. It need not hold it.
    bool Covers(int z, int x, int y) const;

    // The encoded bytes of tile (z, x, y); none when the source lacks it, the
    // tile is bigger than kMostTileBytes or it cannot be read (a damaged
    // database gives no tile, and the next tile is tried afresh).
    virtual std::optional<std::string> TileBytes(int z, int x, int y) = 0;

  protected:
    explicit TileSource(TileSourceInfo info) : info_(std::move(info)) {}

  private:
    TileSourceInfo info_;
};

struct TileSourceOpening {
    std::unique_ptr<TileSource> source;  // null when the source did not open
    TileSourceProblem problem = TileSourceProblem::kNone;
    std::string detail;  // the system's or SQLite's words for the problem
};

// Opens the MBTiles file (MBTiles 1.3, rows counted from the south) or the
// tile folder (z/x/y.png, .jpg, .jpeg or .webp, rows from the north) at path.
// A folder's zoom range comes from the names of its top-level folders
// alone; the tiles themselves are not listed.
TileSourceOpening OpenTileSource(const std::string& path);

// The format of encoded tile bytes, from their first bytes.
TileFormat TileBytesFormat(std::string_view bytes);

// Decodes a PNG tile into a picture of at most kMostTileSide pixels a side,
// keeping its see-through parts; none for a tile that does not decode, and
// for JPEG and WebP tiles, which the window decodes with its own picture
// readers.
std::optional<Image> DecodePngTile(std::string_view bytes);

}  // namespace tolvane
