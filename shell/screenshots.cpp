#include "shell/screenshots.h"

#include <QDir>
#include <QFileInfo>
#include <QTextStream>
#include <iostream>

#include "core/app/map_commands.h"
#include "core/app/startup.h"
#include "core/base/program_paths.h"
#include "core/base/string_manager.h"
#include "core/maps/recent_maps.h"
#include "core/placement/tile_placement.h"
#include "headless/replay.h"
#include "shell/dialogs/map_loader.h"
#include "shell/tile_layer.h"
#include "shell/view_renderer.h"

namespace tolvane::shell {
namespace {

// The pictures' family, pinned so that a picture is the same on every machine.
constexpr char kPictureFontFamily[] = "DejaVu Sans";

struct ViewPicture {
    int view;
    const char* fileName;
};

constexpr ViewPicture kPictures[] = {
    {kViewGpsInfo, "gps-info.png"},
    {kViewSatellites, "satellites.png"},
    {kViewCompass, "compass.png"},
    {kViewSpeed, "speed.png"},
    {kViewTripStat, "trip-stat.png"},
    {kViewWorldMap, "world-map.png"},
    {kViewMap, "map.png"},
};

// The picture of recent map 1, for the Map view's picture. A relative path
// is taken from the settings record's folder, so that the test data's
// record names the picture beside it wherever the data lies.
std::shared_ptr<const MapPicture> LoadRecentMap(const Options& options, const CommandLine& line,
                                                std::string& path) {
    path = RecentMap(options, 0);
    if (path.empty()) return nullptr;
    const QString file = QFileInfo(line.optionsFile).dir().filePath(QString::fromStdString(path));
    path = file.toStdString();
    std::shared_ptr<const MapPicture> picture = ReadMapPicture(file, [](int, int) {});
    if (!picture) std::cerr << "tolvane: cannot read the map " << path << '\n';
    return picture;
}

// The tile maps of --tiles, opened; each that does not open is named on
// standard error.
OpenedTileSources OpenPictureTiles(const CommandLine& line) {
    std::vector<std::string> paths;
    for (const QString& path : line.tiles) paths.push_back(path.toStdString());
    OpenedTileSources opened = OpenTileSources(paths);
    for (const std::string& problem : opened.problems) {
        std::cerr << "tolvane: cannot open the tile map " << problem << '\n';
    }
    return opened;
}

// Lays the World Map where --center and --zoom say, and reads every tile
// it shows (and the stand-ins of those no map has) before it is painted.
void PrepareWorldMap(AppState& app, const Rect& body, const CommandLine& line,
                     OpenedTileSources& opened, TileImages& images) {
    app.mapKeys.worldMapCeiling = WorldMapZoomCeiling(app, body);
    if (line.tileZoom >= 0) {
        app.mapKeys.worldMapZoom = std::min(WorldMapZoomForTileZoom(app, body, line.tileZoom),
                                            app.mapKeys.worldMapCeiling);
    }
    if (line.centred) app.worldMapCentre = {line.centreLatitude, line.centreLongitude};
    for (std::vector<TileKey> wanted = WantedTiles(app, body, images); !wanted.empty();
         wanted = WantedTiles(app, body, images)) {
        for (const TileKey& key : wanted) images.Put(key, LoadTile(opened.sources, key));
    }
}

// Paints each view of app into folder; false, having said why on standard
// error, when a picture cannot be written.
bool PaintPictures(AppState& app, FileTime nowUtc, const CommandLine& line) {
    std::string mapPath;
    std::shared_ptr<const MapPicture> map = LoadRecentMap(app.options, line, mapPath);
    if (map) SetLoadedMap(app, mapPath, std::move(map));
    // The picture stands for a whole screen of its size at 96 dots per inch,
    // where only a square 320 x 320 one reads otherwise (and keeps the small
    // layout).
    const ScreenMetrics screen =
        ApplySquareScreenRule({96, 96, line.size.width(), line.size.height()});
    ViewRenderer renderer(screen.dpiY, false, QString::fromLatin1(kPictureFontFamily));
    OpenedTileSources opened = OpenPictureTiles(line);
    app.tileZooms = opened.zooms;
    TileImages tiles(TileLayer::kTileMemoryBudget);
    tiles.attribution = opened.attribution;
    renderer.SetTiles(&tiles);
    const int shownView = app.currentView;
    QTextStream out(stdout);
    bool written = true;
    for (const ViewPicture& picture : kPictures) {
        app.currentView = picture.view;
        renderer.LayOut(line.size, IsFullScreenShown(app));
        if (picture.view == kViewWorldMap) {
            PrepareWorldMap(app, renderer.Layout().body, line, opened, tiles);
        }
        QImage image = MakeBackBuffer(line.size, 1);
        renderer.Paint(image, app, nowUtc);
        const QString path = QDir(line.screenshotFolder).filePath(QLatin1String(picture.fileName));
        if (image.save(path, "PNG")) {
            out << path << '\n';
        } else {
            std::cerr << "tolvane: cannot write " << path.toStdString() << '\n';
            written = false;
        }
    }
    app.currentView = shownView;
    return written;
}

// Plays the recording up to tick `at`, or to its end, and paints there.
// Returns the ticks played, -1 when the recording could not be played.
int PlayAndPaint(const std::string& recording, const Options& options, int at,
                 const CommandLine& line, bool& written) {
    int ticks = 0;
    const headless::TickObserver paintAt = [&](AppState& app, FileTime utc) {
        if (++ticks < at) return true;
        written = PaintPictures(app, utc, line);
        return false;
    };
    headless::ReplayTotals totals;
    std::string error;
    if (!headless::ReplayRecordingFile(recording, headless::RunSettings{}, options, std::cerr,
                                       paintAt, totals, error)) {
        if (!error.empty()) std::cerr << "tolvane: " << error << '\n';
        return -1;
    }
    return ticks;
}

}  // namespace

int RunScreenshots(const CommandLine& line) {
    // The pictures speak the language the window would, short of a choice
    // in Options, which belongs to the settings of a window's run.
    const std::string language = LanguageToLoad({});
    if (!CStringManager::GetInstance().Load(language)) {
        std::cerr << "tolvane: cannot load the language file " << LanguageFilePath(language)
                  << '\n';
    }
    headless::RunSettings settings;
    settings.optionsFile = line.optionsFile.toStdString();
    Options options;
    std::string error;
    if (!headless::MakeRunOptions(settings, options, error)) {
        std::cerr << "tolvane: " << error << '\n';
        return 1;
    }
    if (!QDir().mkpath(line.screenshotFolder)) {
        std::cerr << "tolvane: cannot make the folder " << line.screenshotFolder.toStdString()
                  << '\n';
        return 1;
    }
    const std::string recording =
        line.replay.isEmpty() ? ProgramFile("demo.nmea") : line.replay.toStdString();
    bool written = false;
    const int ticks = PlayAndPaint(recording, options, line.atTick, line, written);
    if (ticks < 0) return 1;
    // A recording shorter than the asked second is painted at its end.
    if (ticks < line.atTick && ticks > 0) PlayAndPaint(recording, options, ticks, line, written);
    if (ticks == 0) std::cerr << "tolvane: " << recording << " holds no second to play\n";
    return written ? 0 : 1;
}

}  // namespace tolvane::shell
