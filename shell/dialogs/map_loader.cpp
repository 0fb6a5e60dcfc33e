#include "shell/dialogs/map_loader.h"

#include <QImage>
#include <QImageReader>
#include <algorithm>
#include <utility>

#include "formats/png_rows.h"

namespace tolvane::shell {

Image ImageFromQt(const QImage& picture) {
    const bool alpha = picture.format() == QImage::Format_ARGB32;
    const std::uint32_t mask = alpha ? 0xFFFFFFFFu : 0xFFFFFFu;
    Image image{picture.width(), picture.height(), {}, alpha};
    image.pixels.resize(static_cast<std::size_t>(image.width) * image.height);
    for (int y = 0; y < image.height; ++y) {
        const auto* line = reinterpret_cast<const std::uint32_t*>(picture.constScanLine(y));
        std::uint32_t* row = image.pixels.data() + static_cast<std::size_t>(y) * image.width;
        for (int x = 0; x < image.width; ++x) row[x] = line[x] & mask;
    }
    return image;
}

namespace {

// A picture that is read neither scaled (as JPEG is) nor a row at a time
// (as PNG is) is decoded whole in its own pixel format; together with the
// largest level and one band of rows this keeps a load within 300 MB.
constexpr int kLargestDecodeMegabytes = 200;
constexpr int kBandRows = 64;

int LevelCount(int width, int height) {
    int count = 1;
    for (int side = std::max(width, height); side > kSmallestLevelSide; side /= 2) ++count;
    return count;
}

// The halved levels below the largest, made from it.
void AddSmallerLevels(MapPicture& picture, QImage level, const LoadProgress& progress) {
    const int steps = LevelCount(level.width(), level.height()) + 1;
    progress(1, steps);
    for (int done = 2; done <= steps; ++done) {
        picture.levels.push_back(ImageFromQt(level));
        progress(done, steps);
        if (done == steps) break;
        level = level.scaled(std::max(1, level.width() / 2), std::max(1, level.height() / 2),
                             Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
}

// The picture made from its largest level and the halved levels below it.
std::shared_ptr<MapPicture> PictureFromTop(int width, int height, Image top,
                                           const LoadProgress& progress) {
    auto picture = std::make_shared<MapPicture>();
    picture->width = width;
    picture->height = height;
    // The halving starts from the largest level as Qt sees it, without a
    // copy of its pixels.
    const QImage topView(reinterpret_cast<const uchar*>(top.pixels.data()), top.width, top.height,
                         QImage::Format_RGB32);
    QImage half = topView.scaled(std::max(1, top.width / 2), std::max(1, top.height / 2),
                                 Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    picture->levels.push_back(std::move(top));
    AddSmallerLevels(*picture, std::move(half), progress);
    return picture;
}

// Whether the picture is a PNG larger than the largest level whose rows
// can be read one at a time.
bool IsLargeRowPng(const std::string& file, PngShape& shape) {
    if (!ReadPngShape(file, shape) || !shape.rowByRow) return false;
    const LevelSize largest = LargestLevelSize(shape.width, shape.height);
    return largest.width != shape.width || largest.height != shape.height;
}

// A large PNG, read a row at a time into the largest level: Qt would decode
// it whole and turn it into 32-bit pixels before scaling, which makes a
// 16000 x 16000 grey scan of a few hundred kilobytes take 1.5 GB. Null when
// the file breaks off.
std::shared_ptr<MapPicture> ReadLargePng(const std::string& file, const PngShape& shape,
                                         const LoadProgress& progress) {
    RowShrinker shrinker(shape.width, shape.height, LargestLevelSize(shape.width, shape.height));
    if (!ReadPngRows(file, [&shrinker](const std::uint8_t* row) { shrinker.AddRow(row); })) {
        return nullptr;
    }
    return PictureFromTop(shape.width, shape.height, shrinker.Take(), progress);
}

// A large picture of another kind, decoded whole in its own pixel format
// and shrunk a band of rows at a time, so that no 32-bit copy of the whole
// is ever made. Null when it cannot be decoded.
std::shared_ptr<MapPicture> ShrinkWholePicture(QImageReader& reader, QSize size,
                                               const LoadProgress& progress) {
    const QImage whole = reader.read();
    if (whole.isNull()) return nullptr;
    RowShrinker shrinker(whole.width(), whole.height(),
                         LargestLevelSize(whole.width(), whole.height()));
    for (int top = 0; top < whole.height(); top += kBandRows) {
        const QImage band =
            whole.copy(0, top, whole.width(), kBandRows).convertToFormat(QImage::Format_RGB888);
        for (int row = 0; row < band.height(); ++row) shrinker.AddRow(band.constScanLine(row));
    }
    return PictureFromTop(size.width(), size.height(), shrinker.Take(), progress);
}

}  // namespace

std::shared_ptr<MapPicture> ReadMapPicture(const QString& path, const LoadProgress& progress) {
    PngShape shape;
    if (IsLargeRowPng(path.toStdString(), shape)) {
        return ReadLargePng(path.toStdString(), shape, progress);
    }
    QImageReader::setAllocationLimit(kLargestDecodeMegabytes);
    QImageReader reader(path);
    const QSize size = reader.size();
    // Only JPEG is decoded scaled; Qt's other readers decode the whole
    // picture and scale it in 32-bit pixels.
    if (size.isValid() && reader.format() != "jpeg") {
        const LevelSize largest = LargestLevelSize(size.width(), size.height());
        if (largest.width != size.width() || largest.height != size.height()) {
            return ShrinkWholePicture(reader, size, progress);
        }
    }
    auto picture = std::make_shared<MapPicture>();
    if (size.isValid()) {
        const LevelSize largest = LargestLevelSize(size.width(), size.height());
        if (largest.width != size.width()) reader.setScaledSize({largest.width, largest.height});
    }
    QImage level = reader.read();
    if (level.isNull()) return nullptr;
    picture->width = size.isValid() ? size.width() : level.width();
    picture->height = size.isValid() ? size.height() : level.height();
    AddSmallerLevels(*picture, std::move(level).convertToFormat(QImage::Format_RGB32), progress);
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
