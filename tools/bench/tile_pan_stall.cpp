// Pans the World Map at 1280 x 800 across a tile map while the window's
// tile worker reads and decodes the tiles, and reports how long each pan
// takes until every tile it shows has come (the target: within 300 ms),
// the longest gap between two ticks of a 5 ms timer while the tiles load
// and the map repaints (the target: under 50 ms), and the peak resident
// memory after the tiles in memory have filled their budget (the target:
// under 120 MB).
//
// Usage: tolvane_tile_pan_bench [TILE-FOLDER-OR-MBTILES ZOOM LAT LON]
//   Without a map a folder of 48 x 48 tiles of zoom 15 with streets and
//   noise is made in the temporary folder first (once); the pans cover
//   about 30 x 20 of them.

#include <sys/resource.h>

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QTimer>
#include <algorithm>
#include <iostream>
#include <vector>

#include "core/placement/tile_placement.h"
#include "core/placement/world_map_placement.h"
#include "shell/tile_layer.h"
#include "shell/view_renderer.h"
#include "tools/bench/loop_gap_meter.h"

namespace {

using namespace tolvane;

constexpr QSize kWindow{1280, 800};
constexpr int kZoom = 15;
constexpr int kSide = 48;
constexpr double kLatitude = 47.37;
constexpr double kLongitude = 8.54;
// The pans sweep the map as a mower sweeps a lawn: rows of half-screen
// pans east, then west, a screen apart, so that the tiles in memory fill
// their budget.
constexpr int kPansPerRow = 10;
constexpr int kRows = 4;

// A tile like a town map's: a paper ground, blocks, streets and some noise,
// so that it compresses as real tiles do (tens of kilobytes).
QImage TownTile(QRandomGenerator& random) {
    QImage tile(256, 256, QImage::Format_RGB32);
    tile.fill(QColor(242, 239, 233));
    QPainter painter(&tile);
    for (int i = 0; i < 30; ++i) {
        painter.fillRect(random.bounded(256), random.bounded(256), 8 + random.bounded(60),
                         8 + random.bounded(60), QColor::fromRgb(random.generate() | 0xFF000000));
    }
    painter.setPen(QPen(Qt::white, 6));
    for (int i = 0; i < 8; ++i) {
        painter.drawLine(random.bounded(256), 0, random.bounded(256), 256);
        painter.drawLine(0, random.bounded(256), 256, random.bounded(256));
    }
    for (int i = 0; i < 600; ++i) {
        tile.setPixel(random.bounded(256), random.bounded(256), random.generate() | 0xFF000000);
    }
    return tile;
}

QString MakeTileFolder() {
    const QString root = QDir::temp().filePath(QStringLiteral("tolvane-bench-tiles"));
    if (QDir(root).exists()) return root;
    QRandomGenerator random(7);
    const int firstX = static_cast<int>((kLongitude + 180) / 360 * (1 << kZoom)) - kSide / 2;
    const int firstY = static_cast<int>(MercatorRow(kLatitude, kZoom)) - kSide / 2;
    for (int x = firstX; x < firstX + kSide; ++x) {
        const QString column = QStringLiteral("%1/%2/%3").arg(root).arg(kZoom).arg(x);
        QDir().mkpath(column);
        for (int y = firstY; y < firstY + kSide; ++y) {
            TownTile(random).save(QStringLiteral("%1/%2.png").arg(column).arg(y), "PNG");
        }
    }
    return root;
}

long PeakResidentMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    const bool given = argc > 4;
    const std::string map = given ? argv[1] : MakeTileFolder().toStdString();
    const int zoom = given ? std::atoi(argv[2]) : kZoom;

    shell::ViewRenderer renderer(96, false, QStringLiteral("DejaVu Sans"));
    renderer.LayOut(kWindow, false);
    const Rect body = renderer.Layout().body;
    QImage backBuffer = shell::MakeBackBuffer(kWindow, 1);
    AppState app;
    ResetOptions(app.options);
    app.currentView = kViewWorldMap;
    app.worldMapCentre = {given ? std::atof(argv[3]) : kLatitude,
                          given ? std::atof(argv[4]) : kLongitude};

    shell::TileLayer layer;
    renderer.SetTiles(&layer.Images());
    QEventLoop waiting;
    int tilesRead = 0;
    QObject::connect(&layer, &shell::TileLayer::TileArrived, [&] { ++tilesRead; });
    QObject::connect(&layer, &shell::TileLayer::SourcesOpened, [&](TileZooms zooms) {
        app.tileZooms = zooms;
        waiting.quit();
    });
    layer.Open({map});
    waiting.exec();
    if (app.tileZooms.highest < 0) {
        std::cerr << "the tile map " << map << " does not open\n";
        return 1;
    }
    app.mapKeys.worldMapCeiling = WorldMapZoomCeiling(app, body);
    app.mapKeys.worldMapZoom = WorldMapZoomForTileZoom(app, body, zoom);
    renderer.Paint(backBuffer, app, 0);  // reads the pictures of the earth once

    bench::LoopGapMeter gaps;
    // The window paints once a frame while tiles come, then asks for what
    // it still lacks, as its paint event does.
    bool complete = false;
    QTimer frame;
    QObject::connect(&frame, &QTimer::timeout, [&] {
        renderer.Paint(backBuffer, app, 0);
        std::vector<TileKey> wanted = WantedTiles(app, body, layer.Images());
        complete = wanted.empty();
        if (complete) waiting.quit();
        layer.Want(std::move(wanted));
    });

    std::vector<qint64> times;
    gaps.Start();
    frame.start(16);
    // The sweep starts at the map's north-west.
    PanWorldMap(app, -body.Width() * kPansPerRow / 4.0, -body.Height() * kRows / 2.0,
                WorldMapPlacement(app, body).distance);
    for (int pan = 0; pan < kPansPerRow * kRows; ++pan) {
        const int row = pan / kPansPerRow;
        const bool rowEnds = pan % kPansPerRow == kPansPerRow - 1;
        PanWorldMap(app, rowEnds ? 0 : (row % 2 == 0 ? 1 : -1) * body.Width() / 2.0,
                    rowEnds ? body.Height() : 0, WorldMapPlacement(app, body).distance);
        const qint64 start = gaps.Elapsed();
        gaps.CountFromNow();
        complete = false;
        waiting.exec();
        times.push_back(gaps.Elapsed() - start);
    }
    std::sort(times.begin(), times.end());
    std::cout << "pans: " << times.size() << ", until every tile showed: median "
              << times[times.size() / 2] << " ms, longest " << times.back() << " ms\n"
              << "longest gap of the event loop: " << gaps.LongestGap() << " ms\n"
              << "tiles read: " << tilesRead << "\n"
              << "tiles in memory: " << layer.Images().Count() << " ("
              << layer.Images().Bytes() / (1024 * 1024) << " MB)\n"
              << "peak resident memory: " << PeakResidentMegabytes() << " MB\n";
    return 0;
}
