#include "core/maps/tile_images.h"

namespace tolvane {
namespace {

// What remembering a tile costs beyond its pixels: the key, the list node
// and the map's node, about.
constexpr std::size_t kEntryCost = 128;

}  // namespace

std::size_t TileKeyHash::operator()(const TileKey& key) const {
    // A zoom below 32 and x and y below 2^24 fit a 64-bit word apart.
    const auto packed = (static_cast<std::uint64_t>(key.z) << 58) ^
                        (static_cast<std::uint64_t>(static_cast<std::uint32_t>(key.x)) << 29) ^
                        static_cast<std::uint32_t>(key.y);
    return std::hash<std::uint64_t>{}(packed);
}

const Image* TileImages::Find(const TileKey& key) const {
    const auto found = entries_.find(key);
    if (found == entries_.end() || found->second.picture.width <= 0) return nullptr;
    return &found->second.picture;
}

bool TileImages::Knows(const TileKey& key) const {
    return entries_.contains(key);
}

std::size_t TileImages::CostOf(const Image& picture) {
    return picture.pixels.size() * sizeof(std::uint32_t) + kEntryCost;
}

void TileImages::Put(const TileKey& key, Image picture) {
    const auto found = entries_.find(key);
    if (found != entries_.end()) {
        bytes_ -= CostOf(found->second.picture);
        uses_.erase(found->second.use);
        entries_.erase(found);
    }
    bytes_ += CostOf(picture);
    uses_.push_back(key);
    entries_.emplace(key, Entry{std::move(picture), std::prev(uses_.end())});
    MakeRoom();
}

void TileImages::Touch(const TileKey& key) {
    const auto found = entries_.find(key);
    if (found == entries_.end()) return;
    uses_.splice(uses_.end(), uses_, found->second.use);
}

void TileImages::Clear() {
    entries_.clear();
    uses_.clear();
    bytes_ = 0;
}

void TileImages::MakeRoom() {
    // The tile put last always stays, even one alone above the budget.
    while (bytes_ > budget_ && uses_.size() > 1) {
        const auto oldest = entries_.find(uses_.front());
        bytes_ -= CostOf(oldest->second.picture);
        entries_.erase(oldest);
        uses_.pop_front();
    }
}

}  // namespace tolvane
