// Loads a 20-megapixel picture through the window's map loader while the
// event loop runs a 5 ms timer, and reports the load time and the longest
// gap between two ticks: the longest the window could not paint. The
// target is no gap over 50 ms.
//
// Usage: tolvane_map_load_bench [PICTURE]
//   Without PICTURE a 5472 x 3648 JPEG of noise and stripes is made in the
//   temporary folder first.

#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QRandomGenerator>
#include <iostream>

#include "shell/dialogs/map_loader.h"
#include "tools/bench/loop_gap_meter.h"

namespace {

QString MakePicture() {
    const QString path = QDir::temp().filePath("tolvane-20mp.jpg");
    if (QFile::exists(path)) return path;
    QImage image(5472, 3648, QImage::Format_RGB32);
    QRandomGenerator random(7);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<quint32*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            line[x] = (x / 40 + y / 40) % 2 ? 0xFFE8DCC0 : (random.generate() | 0xFF000000);
        }
    }
    image.save(path, "JPG", 90);
    return path;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    const QString path = argc > 1 ? QString::fromLocal8Bit(argv[1]) : MakePicture();

    tolvane::bench::LoopGapMeter gaps;
    tolvane::shell::MapLoader loader;
    int levels = 0;
    gaps.Start();
    loader.Load(
        path, [](int, int) {},
        [&](const QString&, std::shared_ptr<const tolvane::MapPicture> picture) {
            levels = picture ? static_cast<int>(picture->levels.size()) : -1;
            QCoreApplication::quit();
        });
    application.exec();
    std::cout << "picture " << path.toStdString() << "\nloaded in " << gaps.Elapsed() << " ms, "
              << levels << " levels\nlongest event-loop gap " << gaps.LongestGap()
              << " ms (target under 50 ms)\n";
    return levels > 0 ? 0 : 1;
}
