#include "shell/tile_layer.h"

#include <QBuffer>
#include <QImageReader>

#include "shell/dialogs/map_loader.h"

namespace tolvane::shell {
namespace {

// The picture of a tile's bytes: a PNG tile through the program's own PNG
// reader, a JPEG or WebP one through Qt's; empty when they are no
// picture or one larger than a tile may be. The size is read from the
// header before anything is decoded.
Image DecodeTile(const std::string& bytes) {
    if (TileBytesFormat(bytes) == TileFormat::kPng) return DecodePngTile(bytes).value_or(Image{});
    QByteArray data = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
    QBuffer buffer(&data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > kMostTileSide || size.height() > kMostTileSide) return {};
    const QImage read = reader.read();
    if (read.isNull() || read.width() > kMostTileSide || read.height() > kMostTileSide) return {};
    // A tile's see-through parts (beyond its map's edge) let the pictures
    // of the earth under it show.
    return ImageFromQt(read.convertToFormat(read.hasAlphaChannel() ? QImage::Format_ARGB32
                                                                   : QImage::Format_RGB32));
}

}  // namespace

OpenedTileSources OpenTileSources(const std::vector<std::string>& paths) {
    OpenedTileSources opened;
    for (const std::string& path : paths) {
        TileSourceOpening opening = OpenTileSource(path);
        if (!opening.source) {
            opened.problems.push_back(path + ": " + opening.detail);
            continue;
        }
        const TileSourceInfo& info = opening.source->Info();
        TileZooms& zooms = opened.zooms;
        zooms.lowest = zooms.lowest < 0 ? info.minZoom : std::min(zooms.lowest, info.minZoom);
        zooms.highest = std::max(zooms.highest, info.maxZoom);
        if (!info.attribution.empty()) {
            if (!opened.attribution.empty()) opened.attribution += " | ";
            opened.attribution += info.attribution;
        }
        opened.sources.push_back(std::move(opening.source));
    }
    return opened;
}

Image LoadTile(std::vector<std::unique_ptr<TileSource>>& sources, const TileKey& key) {
    for (const std::unique_ptr<TileSource>& source : sources) {
        if (!source->Covers(key.z, key.x, key.y)) continue;
        const std::optional<std::string> bytes = source->TileBytes(key.z, key.x, key.y);
        if (!bytes) continue;
        // A tile that does not decode is passed over for the next source's.
        Image picture = DecodeTile(*bytes);
        if (picture.width > 0) return picture;
    }
    return {};
}

TileLayer::TileLayer(QObject* parent) : QObject(parent) {}

TileLayer::~TileLayer() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_one();
    if (worker_.joinable()) worker_.join();
}

void TileLayer::Open(const std::vector<std::string>& paths) {
    if (paths.empty() && !worker_.joinable()) return;
    {
        const std::lock_guard lock(mutex_);
        ++generation_;
        pathsToOpen_ = paths;
        openAsked_ = true;
        wanted_.clear();
    }
    // The worker starts with the first tile maps, so that a user without
    // any runs no thread for them.
    if (!worker_.joinable()) worker_ = std::thread([this] { Work(); });
    wake_.notify_one();
}

void TileLayer::Want(std::vector<TileKey> keys) {
    if (!worker_.joinable()) return;
    {
        const std::lock_guard lock(mutex_);
        wanted_ = std::move(keys);
    }
    wake_.notify_one();
}

void TileLayer::Work() {
    std::unique_lock lock(mutex_);
    for (;;) {
        wake_.wait(lock, [this] { return stopping_ || openAsked_ || !wanted_.empty(); });
        if (stopping_) return;
        const unsigned generation = generation_;
        if (openAsked_) {
            openAsked_ = false;
            std::vector<std::string> paths = std::move(pathsToOpen_);
            lock.unlock();
            opened_ = {};
            opened_ = OpenTileSources(paths);
            QMetaObject::invokeMethod(
                this,
                [this, generation, zooms = opened_.zooms, attribution = opened_.attribution] {
                    Opened(generation, zooms, attribution);
                },
                Qt::QueuedConnection);
        } else {
            const TileKey key = wanted_.front();
            wanted_.erase(wanted_.begin());
            lock.unlock();
            QMetaObject::invokeMethod(
                this,
                [this, generation, key, picture = LoadTile(opened_.sources, key)]() mutable {
                    Arrived(generation, key, std::move(picture));
                },
                Qt::QueuedConnection);
        }
        lock.lock();
    }
}

void TileLayer::Opened(unsigned generation, TileZooms zooms, std::string attribution) {
    if (generation != generation_) return;
    zooms_ = zooms;
    images_.Clear();
    images_.attribution = std::move(attribution);
    emit SourcesOpened(zooms);
}

void TileLayer::Arrived(unsigned generation, TileKey key, Image picture) {
    if (generation != generation_) return;
    images_.Put(key, std::move(picture));
    emit TileArrived();
}

}  // namespace tolvane::shell
