// How long a repaint of the World Map takes at 1280 x 800 through the
// window's own renderer, with a 10 000-point track, 1 000 points and the
// pictures of the earth filling the window, and again zoomed in to a tile
// map's tiles of zoom 12 by day and by night (dimmed); the target is under
// 8 ms. The shading of the night side, redone once a minute, is measured
// apart.

#include <benchmark/benchmark.h>

#include <memory>
#include <random>

#include "core/placement/tile_placement.h"
#include "shell/view_renderer.h"

namespace {

using namespace tolvane;

constexpr int kWidth = 1280;
constexpr int kHeight = 800;
constexpr int kTrackPoints = 10000;
constexpr int kPoints = 1000;

std::unique_ptr<AppState> BusyWorld() {
    auto app = std::make_unique<AppState>();
    ResetOptions(app->options);
    app->currentView = kViewWorldMap;
    app->gpsRunning = true;
    GpsState& gps = app->gps;
    gps.connected = gps.fixValid = 1;
    gps.latitude = 59.3293;
    gps.longitude = 18.0686;
    gps.course = 123;
    gps.fixTime = *CivilToFileTime({2026, 6, 1, 12, 30, 0});
    app->mapFollow = {gps.latitude, gps.longitude, true};
    app->worldMapCentre = {gps.latitude, gps.longitude};
    std::mt19937 random(7);
    std::uniform_real_distribution<double> step(-0.05, 0.05);
    // A long voyage that wanders across the seas east of home.
    float latitude = 59.0f;
    float longitude = 18.0f;
    for (int i = 0; i < kTrackPoints; ++i) {
        latitude = std::clamp(latitude + static_cast<float>(step(random)) - 0.004f, -70.0f, 75.0f);
        longitude += static_cast<float>(step(random)) + 0.02f;
        if (longitude > 180) longitude -= 360;
        app->track.liveTrack.Append({latitude, longitude, {}});
    }
    std::uniform_real_distribution<double> anyLatitude(-70, 75);
    std::uniform_real_distribution<double> anyLongitude(-180, 180);
    for (int i = 0; i < kPoints; ++i) {
        GeoPoint point;
        point.latitude = anyLatitude(random);
        point.longitude = anyLongitude(random);
        point.name = "Point " + std::to_string(i);
        point.category = i % 2 ? "Fuel" : "Food";
        (i % 2 ? app->points.pois : app->points.waypoints).Append(point);
    }
    return app;
}

void WorldMapRepaint(benchmark::State& state) {
    const std::unique_ptr<AppState> app = BusyWorld();
    shell::ViewRenderer renderer(96, false, QStringLiteral("DejaVu Sans"));
    renderer.LayOut(QSize(kWidth, kHeight), false);
    QImage backBuffer = shell::MakeBackBuffer(QSize(kWidth, kHeight), 1);
    renderer.Paint(backBuffer, *app, app->gps.fixTime);  // reads the pictures once
    if (renderer.Imagery().day.width == 0) state.SkipWithError("no pictures of the earth");
    for (auto _ : state) renderer.Paint(backBuffer, *app, app->gps.fixTime);
}
BENCHMARK(WorldMapRepaint)->Unit(benchmark::kMillisecond);

// Every tile the zoomed-in map shows is in memory, each of noise, as the
// window holds them once they have come.
void WorldMapRepaintOverTiles(benchmark::State& state) {
    const std::unique_ptr<AppState> app = BusyWorld();
    app->options.nightView = static_cast<std::int32_t>(state.range(0));
    app->tileZooms = {10, 14};
    shell::ViewRenderer renderer(96, false, QStringLiteral("DejaVu Sans"));
    renderer.LayOut(QSize(kWidth, kHeight), false);
    const Rect body = renderer.Layout().body;
    app->mapKeys.worldMapZoom = WorldMapZoomForTileZoom(*app, body, 12);
    TileImages tiles(64 << 20);
    std::mt19937 random(11);
    for (const TileKey& key : WantedTiles(*app, body, tiles)) {
        Image tile{256, 256, std::vector<std::uint32_t>(256 * 256)};
        for (std::uint32_t& pixel : tile.pixels) pixel = random() & 0xFFFFFF;
        tiles.Put(key, std::move(tile));
    }
    renderer.SetTiles(&tiles);
    QImage backBuffer = shell::MakeBackBuffer(QSize(kWidth, kHeight), 1);
    renderer.Paint(backBuffer, *app, app->gps.fixTime);
    state.counters["tiles"] = static_cast<double>(tiles.Count());
    for (auto _ : state) renderer.Paint(backBuffer, *app, app->gps.fixTime);
}
BENCHMARK(WorldMapRepaintOverTiles)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void NightSideShading(benchmark::State& state) {
    const std::unique_ptr<AppState> app = BusyWorld();
    shell::ViewRenderer renderer(96, false, QStringLiteral("DejaVu Sans"));
    QImage backBuffer = shell::MakeBackBuffer(QSize(kWidth, kHeight), 1);
    renderer.LayOut(QSize(kWidth, kHeight), false);
    renderer.Paint(backBuffer, *app, app->gps.fixTime);
    WorldImagery imagery = renderer.Imagery();
    FileTime utc = app->gps.fixTime;
    for (auto _ : state) {
        utc += 60 * kFileTimeTicksPerSecond;
        ShadeDayAndNight(imagery, app->projection, utc);
    }
}
BENCHMARK(NightSideShading)->Unit(benchmark::kMillisecond);

}  // namespace
