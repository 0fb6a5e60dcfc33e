#include "shell/dialogs/map_loader.h"

#include <QImage>
#include <QImageReader>
#include <algorithm>
#include <cstring>

namespace tolvane::shell {
namespace {

// The picture's pixels as 0xRRGGBB words.
Image ToImage(const QImage& picture) {
    Image image;
    image.width = picture.width();
    image.height = picture.height();
    image.pixels.resize(static_cast<std::size_t>(image.width) * image.height);
    for (int y = 0; y < image.height; ++y) {
        const auto* line = reinterpret_cast<const std::uint32_t*>(picture.constScanLine(y));
        std::uint32_t* row = image.pixels.data() + static_cast<std::size_t>(y) * image.width;
        for (int x = 0; x < image.width; ++x) row[x] = line[x] & 0xFFFFFFu;
    }
    return image;
}

constexpr int kLargestDecodeMegabytes = 1024;

int LevelCount(int width, int height) {
    int count = 1;
    for (int side = std::max(width, height); side > kSmallestLevelSide; side /= 2) ++count;
    return count;
}

}  // namespace

std::shared_ptr<MapPicture> ReadMapPicture(const QString& path, const LoadProgress& progress) {
    // A picture that Qt cannot decode scaled (PNG, TIFF, BMP) is decoded
    // whole before it is scaled; allow that for a 10000 x 10000 scan.
    QImageReader::setAllocationLimit(kLargestDecodeMegabytes);
    QImageReader reader(path);
    const QSize size = reader.size();
    auto picture = std::make_shared<MapPicture>();
    if (size.isValid()) {
        const LevelSize largest = LargestLevelSize(size.width(), size.height());
        if (largest.width != size.width()) reader.setScaledSize({largest.width, largest.height});
    }
    QImage level = reader.read();
    if (level.isNull()) return nullptr;
    picture->width = size.isValid() ? size.width() : level.width();
    picture->height = size.isValid() ? size.height() : level.height();
    level = level.convertToFormat(QImage::Format_RGB32);
    const int steps = LevelCount(level.width(), level.height()) + 1;
    progress(1, steps);
    for (int done = 2; done <= steps; ++done) {
        picture->levels.push_back(ToImage(level));
        progress(done, steps);
        if (done == steps) break;
        level = level.scaled(std::max(1, level.width() / 2), std::max(1, level.height() / 2),
                             Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    return picture;
}

MapLoader::~MapLoader() {
    if (thread_ != nullptr) thread_->wait();
}

void MapLoader::Load(const QString& path, LoadProgress progress, Done done) {
    if (thread_ != nullptr) {
        thread_->wait();
        delete thread_;
    }
    thread_ = QThread::create([this, path, progress = std::move(progress), done = std::move(done)] {
        const LoadProgress report = [this, &progress](int step, int steps) {
            QMetaObject::invokeMethod(
                this, [progress, step, steps] { progress(step, steps); }, Qt::QueuedConnection);
        };
        std::shared_ptr<const MapPicture> picture = ReadMapPicture(path, report);
        QMetaObject::invokeMethod(
            this, [done, path, picture] { done(path, picture); }, Qt::QueuedConnection);
    });
    // The reader gives way to the window's thread, which must keep painting.
    thread_->start(QThread::IdlePriority);
}

}  // namespace tolvane::shell
