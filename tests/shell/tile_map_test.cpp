// The World Map with a tile map under it: tiles drawn with lines at whole
// steps of latitude and longitude must show them where the map's own
// graticule and layers put those places, and the window's tile worker must
// bring the tiles it is asked for while the window goes on.

#include <QBuffer>
#include <QPainter>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>
#include <vector>

#include "core/data/options.h"
#include "core/placement/tile_placement.h"
#include "core/placement/world_map_placement.h"
#include "shell/tile_layer.h"
#include "shell/view_renderer.h"
#include "tests/formats/mbtiles_writer.h"
#include "tests/shell/program_home.h"

namespace tolvane::shell {
namespace {

constexpr QSize kPicture{480, 640};
constexpr QRgb kLine = 0xFFFF0000;

// A place and scale to look at, and the step of the lines the tiles carry.
struct GridCase {
    double latitude;
    double longitude;
    int z;
    double step;
};

// Whether a whole step of degrees lies between a and b.
bool StepBetween(double a, double b, double step) {
    return std::floor(std::max(a, b) / step) != std::floor(std::min(a, b) / step);
}

// A tile of white with red lines two pixels wide along every whole step of
// longitude and of latitude, drawn in the tile's own Web Mercator rows.
QByteArray GridTile(const TileKey& key, double step) {
    QImage tile(256, 256, QImage::Format_RGB32);
    tile.fill(Qt::white);
    const double side = std::exp2(key.z);
    const auto longitude = [&](double column) { return (key.x + column / 256) / side * 360 - 180; };
    const auto latitude = [&](double row) { return MercatorLatitude(key.y + row / 256, key.z); };
    for (int i = 0; i < 256; ++i) {
        // A line crosses between this pixel and the one beyond it: both take it.
        const bool meridian = StepBetween(longitude(i), longitude(i + 1.5), step) ||
                              StepBetween(longitude(i - 0.5), longitude(i + 1), step);
        const bool parallel = StepBetween(latitude(i), latitude(i + 1.5), step) ||
                              StepBetween(latitude(i - 0.5), latitude(i + 1), step);
        for (int j = 0; j < 256; ++j) {
            if (meridian) tile.setPixel(i, j, kLine);
            if (parallel) tile.setPixel(j, i, kLine);
        }
    }
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    tile.save(&buffer, "PNG");
    return png;
}

// An MBTiles map of the given tiles, each a grid tile.
void WriteGridMap(const QString& path, const std::vector<TileKey>& keys, double step, int z) {
    testing::MbtilesWriter map(path.toStdString());
    map.MakeMbtilesTables();
    map.Run(
        "BEGIN; INSERT INTO metadata VALUES ('name', 'Grid'), ('format', 'png'),"
        " ('minzoom', '" +
        std::to_string(z) + "'), ('maxzoom', '" + std::to_string(z) +
        "'), ('attribution', 'Grid lines')");
    for (const TileKey& key : keys) {
        const QByteArray png = GridTile(key, step);
        map.AddTile(key.z, key.x, (1 << key.z) - 1 - key.y, png.toStdString());
    }
    map.Run("COMMIT");
}

// The middles of the runs of line-red pixels along a row or a column.
std::vector<double> RedRuns(const QImage& picture, bool alongRow, int at, int from, int to) {
    std::vector<double> middles;
    int start = -1;
    for (int i = from; i <= to; ++i) {
        const QRgb pixel = i < to ? (alongRow ? picture.pixel(i, at) : picture.pixel(at, i)) : 0;
        // A line scaled with the tile blurs at its edges into pink, and the
        // graticule drawn over it may hide its middle: pink counts too.
        const bool red = qRed(pixel) - std::max(qGreen(pixel), qBlue(pixel)) > 60;
        if (red && start < 0) start = i;
        if (!red && start >= 0) {
            middles.push_back((start + i - 1) / 2.0);
            start = -1;
        }
    }
    return middles;
}

// Every expected place has a red line within two pixels, and every red line
// stands at an expected place.
void CheckLines(const std::vector<double>& expected, const std::vector<double>& found) {
    QVERIFY2(!expected.empty(), "no line expected in the picture");
    const auto nearest = [](double value, const std::vector<double>& among) {
        double best = 1e9;
        for (const double other : among) best = std::min(best, std::fabs(other - value));
        return best;
    };
    for (const double place : expected) {
        QVERIFY2(nearest(place, found) <= 2.0,
                 qPrintable(QStringLiteral("no line near %1").arg(place)));
    }
    for (const double line : found) {
        QVERIFY2(nearest(line, expected) <= 2.0,
                 qPrintable(QStringLiteral("stray line at %1").arg(line)));
    }
}

class TileMapTest : public QObject {
    Q_OBJECT

  private slots:
    void gridLinesLieWhereTheMapPutsTheirPlaces_data() {
        QTest::addColumn<GridCase>("place");
        QTest::newRow("z4 Alps, a tile 20 degrees high") << GridCase{47.0, 9.0, 4, 5.0};
        QTest::newRow("z10 Tasmania") << GridCase{-42.9, 147.3, 10, 0.1};
        QTest::newRow("z16 Tromso") << GridCase{69.65, 18.95, 16, 0.001};
    }

    void gridLinesLieWhereTheMapPutsTheirPlaces() {
        QFETCH(GridCase, place);
        ViewRenderer renderer(96, false, QStringLiteral("DejaVu Sans"));
        renderer.LayOut(kPicture, false);
        const Rect body = renderer.Layout().body;
        AppState app;
        ResetOptions(app.options);
        app.currentView = kViewWorldMap;
        app.tileZooms = {place.z, place.z};
        app.worldMapCentre = {place.latitude, place.longitude};
        app.mapKeys.worldMapZoom = WorldMapZoomForTileZoom(app, body, place.z);
        const MapPlacement placement = WorldMapPlacement(app, body);

        std::vector<TileKey> keys;
        for (const TilePiece& piece : TilesInView(app, placement, body, place.z)) {
            keys.push_back(piece.key);
        }
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("grid.mbtiles"));
        WriteGridMap(path, keys, place.step, place.z);
        OpenedTileSources opened = OpenTileSources({path.toStdString()});
        QCOMPARE(opened.sources.size(), std::size_t{1});
        TileImages tiles(TileLayer::kTileMemoryBudget);
        for (const TileKey& key : WantedTiles(app, body, tiles)) {
            tiles.Put(key, LoadTile(opened.sources, key));
            QVERIFY(tiles.Find(key) != nullptr);
        }
        renderer.SetTiles(&tiles);
        QImage picture = MakeBackBuffer(kPicture, 1);
        renderer.Paint(picture, app, 0);

        // Expected lines from the projection, looked for half a step away
        // from the crossing lines, clear of the labels at the edges.
        const auto point = [&](double latitude, double longitude) {
            return MapPoint(app, placement, latitude, longitude);
        };
        const double firstLongitude =
            std::ceil((place.longitude - 40 * place.step) / place.step) * place.step;
        const double firstLatitude =
            std::ceil((place.latitude - 40 * place.step) / place.step) * place.step;
        const int margin = 24;
        const double middleLatitude = (std::floor(place.latitude / place.step) + 0.5) * place.step;
        const double middleLongitude =
            (std::floor(place.longitude / place.step) + 0.5) * place.step;
        const int row = point(middleLatitude, place.longitude).y;
        const int column = point(place.latitude, middleLongitude).x;
        std::vector<double> meridians;
        std::vector<double> parallels;
        for (int k = 0; k <= 80; ++k) {
            const int x = point(place.latitude, firstLongitude + k * place.step).x;
            if (x >= body.left + margin && x < body.right - margin) meridians.push_back(x);
            const int y = point(firstLatitude + k * place.step, place.longitude).y;
            if (y >= body.top + margin && y < body.bottom - margin) parallels.push_back(y);
        }
        CheckLines(meridians, RedRuns(picture, true, row, body.left + margin, body.right - margin));
        CheckLines(parallels,
                   RedRuns(picture, false, column, body.top + margin, body.bottom - margin));
    }

    void theWorkerBringsTheTilesAskedForAndPassesOverAMapThatIsNoMap() {
        QTemporaryDir folder;
        const QString map = folder.filePath(QStringLiteral("grid.mbtiles"));
        const std::vector<TileKey> keys = {{3, 4, 2}, {3, 4, 3}, {3, 5, 2}};
        WriteGridMap(map, keys, 5.0, 3);
        const QString notAMap = folder.filePath(QStringLiteral("notes.mbtiles"));
        QFile notes(notAMap);
        QVERIFY(notes.open(QIODevice::WriteOnly));
        notes.write(QByteArray(4096, 'x'));
        notes.close();

        TileLayer layer;
        QSignalSpy opened(&layer, &TileLayer::SourcesOpened);
        QSignalSpy arrived(&layer, &TileLayer::TileArrived);
        layer.Open({notAMap.toStdString(), map.toStdString()});
        QVERIFY(opened.wait(5000));
        QCOMPARE(layer.Zooms().lowest, 3);
        QCOMPARE(layer.Zooms().highest, 3);
        QCOMPARE(layer.Images().attribution, std::string("Grid lines"));

        // One tile the map lacks: it comes back as known to be in no map.
        std::vector<TileKey> wanted = keys;
        wanted.push_back({3, 0, 0});
        layer.Want(wanted);
        QTRY_COMPARE_WITH_TIMEOUT(arrived.size(), 4, 5000);
        for (const TileKey& key : keys) QVERIFY(layer.Images().Find(key) != nullptr);
        QVERIFY(layer.Images().Knows({3, 0, 0}));
        QVERIFY(layer.Images().Find({3, 0, 0}) == nullptr);

        // Opened again without maps, the tiles are forgotten.
        layer.Open({});
        QVERIFY(opened.wait(5000));
        QCOMPARE(layer.Images().Count(), std::size_t{0});
        QCOMPARE(layer.Zooms().highest, -1);
    }
};

}  // namespace
}  // namespace tolvane::shell

Q_DECLARE_METATYPE(tolvane::shell::GridCase)

int main(int argc, char** argv) {
    return tolvane::shell::RunOffscreenTests<tolvane::shell::TileMapTest>(argc, argv);
}

#include "tile_map_test.moc"
