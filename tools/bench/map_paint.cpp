// The Map view at 1280 x 800 with a calibrated 4000 x 4000 picture filling
// the window, a 10 000-point track and 1 000 points on it, as the window
// repaints it every second; the target is under 8 ms. Zoom 0 draws a scaled-down level, zoom 6 a part of the largest
// level scaled up.

#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>
#include <memory>
#include <random>
#include <string>

#include "core/app/map_commands.h"
#include "core/views/view_painter.h"
#include "shell/qt_canvas.h"

namespace {

using namespace tolvane;

constexpr int kWidth = 1280;
constexpr int kHeight = 800;
constexpr int kPictureSide = 4000;
constexpr int kTrackPoints = 10000;
constexpr int kPoints = 1000;

// A picture of stripes and its levels, as the loader makes them.
std::shared_ptr<MapPicture> StripedPicture() {
    auto picture = std::make_shared<MapPicture>();
    picture->width = picture->height = kPictureSide;
    for (int side = kPictureSide; side >= kSmallestLevelSide / 2; side /= 2) {
        Image level{side, side, std::vector<std::uint32_t>(static_cast<std::size_t>(side) * side)};
        for (int i = 0; i < side * side; ++i)
            level.pixels[i] = (i % side / 16 % 2) ? 0xF0E0C0 : 0x4080C0;
        picture->levels.push_back(std::move(level));
    }
    return picture;
}

// A walk to and fro across the picture's area and points scattered over it.
void FillTrackAndPoints(AppState& app) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> latitude(-27.22, -27.20);
    std::uniform_real_distribution<double> longitude(153.04, 153.06);
    for (int i = 0; i < kTrackPoints; ++i) {
        const double along = (i % 2000) / 2000.0;
        app.track.liveTrack.Append({static_cast<float>(-27.20 - 0.02 * along),
                                    static_cast<float>(153.04 + 0.02 * (i / 2000) / 5.0), {}});
    }
    for (int i = 0; i < kPoints; ++i) {
        GeoPoint point;
        point.latitude = latitude(random);
        point.longitude = longitude(random);
        point.name = "Point " + std::to_string(i);
        (i % 2 ? app.points.pois : app.points.waypoints).Append(point);
    }
}

void PaintMapBenchmark(benchmark::State& state) {
    auto app = std::make_unique<AppState>();
    ResetOptions(app->options);  // "Show Map" and "Show Ref Points" on
    app->currentView = kViewMap;
    app->gps.connected = app->gps.fixValid = 1;
    app->gps.latitude = -27.21;
    app->gps.longitude = 153.05;
    app->mapFollow = {-27.21, 153.05, true};
    SetLoadedMap(*app, "striped.png", StripedPicture());
    app->map.calibration.points[0] = {true, 0, 0, -27.20, 153.04};
    app->map.calibration.points[1] = {true, kPictureSide, kPictureSide, -27.22, 153.06};
    app->map.fit = FitCalibration(app->map.calibration);
    app->mapKeys.mapZoom = static_cast<int>(state.range(0));
    FillTrackAndPoints(*app);
    const FontSet fonts(WindowBaseHeight(BaseFontHeight(96), kWidth, kHeight));
    const ViewLayout layout = LayOutViews(kWidth, kHeight, true, false, fonts);
    const ViewContext context{*app, layout, fonts, 0};
    QImage backBuffer(kWidth, kHeight, QImage::Format_RGB32);
    for (auto _ : state) {
        QPainter painter(&backBuffer);
        shell::QtCanvas canvas(painter, "DejaVu Sans");
        PaintView(canvas, context);
    }
}

BENCHMARK(PaintMapBenchmark)->Arg(0)->Arg(6)->Unit(benchmark::kMillisecond);

}  // namespace
