#pragma once

#include <QImage>
#include <QObject>
#include <QString>
#include <QThread>
#include <functional>
#include <memory>

#include "core/maps/map_picture.h"

namespace tolvane::shell {

// Called with the steps done and the steps in all.
using LoadProgress = std::function<void(int done, int steps)>;

// Reads a picture file as map levels: a picture larger than the largest
// level is shrunk to it (JPEG pictures decoded at a fraction of their size
// straight from the file, PNG pictures a row at a time, others a band of
// rows at a time from their own pixel format), then halved down to the
// smallest level. Null when the file is no picture that can be read, or
// would take more than 200 MB decoded. Safe on any thread.
std::shared_ptr<MapPicture> ReadMapPicture(const QString& path, const LoadProgress& progress);

// The pixels of a picture in QImage's RGB32 format as the core's picture
// of 0xRRGGBB words, or of one in its ARGB32 format as 0xAARRGGBB words.
Image ImageFromQt(const QImage& picture);

// Reads map pictures on a thread of their own, so that the window keeps
// painting while a large scan loads; progress and the result arrive on the
// thread that owns the loader. A new load while one runs waits for it.
class MapLoader final : public QObject {
  public:
    using Done = std::function<void(const QString& path, std::shared_ptr<const MapPicture>)>;

    explicit MapLoader(QObject* parent = nullptr) : QObject(parent) {}
    ~MapLoader() override;

    // done gets a null picture when the file cannot be read.
    void Load(const QString& path, LoadProgress progress, Done done);

  private:
    QThread* thread_ = nullptr;
};

}  // namespace tolvane::shell
