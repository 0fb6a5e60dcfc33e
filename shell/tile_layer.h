#pragma once

#include <QObject>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "core/maps/tile_images.h"
#include "core/state/app_state.h"
#include "formats/tile_source.h"

namespace tolvane::shell {

// The user's tile maps as they were opened: the sources that opened, in
// the list's order, their zoom range and their attribution line, and for
// each that did not, "PATH: why".
struct OpenedTileSources {
    std::vector<std::unique_ptr<TileSource>> sources;
    TileZooms zooms;
    std::string attribution;
    std::vector<std::string> problems;
};

// Opens the listed tile maps, passing over those that do not open.
OpenedTileSources OpenTileSources(const std::vector<std::string>& paths);

// Tile key's picture from the first source that has it, decoded (PNG, JPEG
// or WebP); empty when no source has it or it does not decode within
// kMostTileSide pixels a side.
Image LoadTile(std::vector<std::unique_ptr<TileSource>>& sources, const TileKey& key);

// The World Map's tiles: a worker thread opens the tile maps and reads and
// decodes the tiles the map asks for, newest wishes first, and hands each
// picture to the window's thread, which keeps it in memory within
// kTileMemoryBudget bytes. Nothing here waits on the disk on the window's
// thread.
class TileLayer final : public QObject {
    Q_OBJECT

  public:
    // 160 tiles of 256 pixels, six screens of a 1280 x 800 window: enough
    // to pan back without reading again, and the program stays under
    // 120 MB with the budget full.
    static constexpr std::size_t kTileMemoryBudget = 40 * 1024 * 1024;

    explicit TileLayer(QObject* parent = nullptr);
    ~TileLayer() override;

    // Opens the listed tile maps on the worker, in place of those open; the
    // tiles in memory are forgotten once they have opened. SourcesOpened
    // tells when.
    void Open(const std::vector<std::string>& paths);

    // Asks the worker for these tiles in place of those it was asked for
    // before and has not read yet: the map has moved on.
    void Want(std::vector<TileKey> keys);

    TileImages& Images() { return images_; }
    const TileImages& Images() const { return images_; }
    const TileZooms& Zooms() const { return zooms_; }

  signals:
    // The tile maps opened; zooms is their range.
    void SourcesOpened(TileZooms zooms);
    // A wished-for tile came, or turned out to be in no source.
    void TileArrived();

  private:
    void Work();
    void Opened(unsigned generation, TileZooms zooms, std::string attribution);
    void Arrived(unsigned generation, TileKey key, Image picture);

    TileImages images_{kTileMemoryBudget};
    TileZooms zooms_;
    // What the worker and the window's thread share, under mutex_.
    std::mutex mutex_;
    std::condition_variable wake_;
    bool stopping_ = false;
    bool openAsked_ = false;
    std::vector<std::string> pathsToOpen_;
    std::vector<TileKey> wanted_;
    // Counts the openings, so that a tile of maps since closed is dropped.
    unsigned generation_ = 0;
    // The worker's alone.
    OpenedTileSources opened_;
    std::thread worker_;
};

}  // namespace tolvane::shell
