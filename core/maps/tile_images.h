#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <unordered_map>

#include "core/base/pixels.h"

namespace tolvane {

// A tile of the Web Mercator grid: at zoom z the world is 2^z tiles a side,
// x from the west and y from the north.
struct TileKey {
    int z = 0;
    int x = 0;
    int y = 0;
    friend bool operator==(const TileKey&, const TileKey&) = default;
};

struct TileKeyHash {
    std::size_t operator()(const TileKey& key) const;
};

// The decoded tiles in memory, within a fixed budget of bytes: when a new
// tile would pass it, the tiles used longest ago make room. A tile that no
// source holds is remembered too, at a small cost, so that it is not asked
// for again while it stays in the memory.
//
// The window's thread alone reads and changes it; the painter reads it.
class TileImages {
  public:
    explicit TileImages(std::size_t budgetBytes) : budget_(budgetBytes) {}

    // The picture of tile key; none while it is not here or no source has it.
    const Image* Find(const TileKey& key) const;
    // Whether the tile is known: its picture is here, or no source has it.
    bool Knows(const TileKey& key) const;

    // Keeps a tile's picture, or, given an empty picture, that no source
    // has the tile.
    void Put(const TileKey& key, Image picture);
    // Marks a tile as just used, so that it is the last to make room.
    void Touch(const TileKey& key);
    // Forgets every tile: the sources changed.
    void Clear();

    std::size_t Bytes() const { return bytes_; }
    std::size_t Count() const { return entries_.size(); }

    // The sources' attribution, shown at the foot of the World Map while it
    // draws their tiles; empty without sources.
    std::string attribution;

  private:
    struct Entry {
        Image picture;
        std::list<TileKey>::iterator use;
    };
    static std::size_t CostOf(const Image& picture);
    void MakeRoom();

    std::size_t budget_;
    std::size_t bytes_ = 0;
    // The keys from the one used longest ago to the one used last.
    std::list<TileKey> uses_;
    std::unordered_map<TileKey, Entry, TileKeyHash> entries_;
};

}  // namespace tolvane
