// How long each view takes to paint into a 480 x 640 back buffer through
// the Qt canvas, as the window paints once a second; the target is under
// 2 ms a view. Runs on Qt's offscreen platform with DejaVu Sans.

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <memory>

#include "core/views/view_painter.h"
#include "shell/qt_canvas.h"

namespace {

using namespace tolvane;

constexpr int kWidth = 480;
constexpr int kHeight = 640;

// A busy moment: a 3D fix at speed with a full sky, a trip under way and
// the alarm selected, so every part of every view is drawn.
std::unique_ptr<AppState> BusyState() {
    auto app = std::make_unique<AppState>();
    app->gpsRunning = true;
    GpsState& gps = app->gps;
    gps.connected = gps.fixValid = 1;
    gps.latitude = 59.3293;
    gps.longitude = 18.0686;
    gps.altitude = 28;
    gps.course = 123;
    gps.speedKnots = 42;
    gps.fixType = 3;
    gps.fixTime = *CivilToFileTime({2026, 6, 1, 12, 30, 0});
    gps.satellitesInView = kMaxSatellites;
    gps.satellitesUsed = 9;
    for (int i = 0; i < kMaxSatellites; ++i) {
        gps.satPrn[i] = i * 3 + 1;
        gps.satSnr[i] = i * 9;
        gps.satElevation[i] = i * 7.5;
        gps.satAzimuth[i] = i * 30;
    }
    gps.connectedSeconds = 6000;
    app->options.speedAlarmIndex = 2;
    app->options.speedAlarmValues[2] = 90;
    app->mapFollow = {gps.latitude, gps.longitude, true};
    app->instruments.speedScale = {100, 0, 0};
    app->instruments.course = {true, true, 123, 0};
    app->instruments.trip = {true, 12, 88, 28, 240, 224};
    app->instruments.tripFigures = {123.4, 5400, 600, 60};
    return app;
}

void PaintViewBenchmark(benchmark::State& state, int view) {
    const std::unique_ptr<AppState> app = BusyState();
    app->currentView = view;
    const FontSet fonts(WindowBaseHeight(BaseFontHeight(96), kWidth, kHeight));
    const ViewLayout layout = LayOutViews(kWidth, kHeight, false, false, fonts);
    const ViewContext context{*app, layout, fonts, app->gps.fixTime};
    QImage backBuffer(kWidth, kHeight, QImage::Format_RGB32);
    for (auto _ : state) {
        QPainter painter(&backBuffer);
        shell::QtCanvas canvas(painter, "DejaVu Sans");
        PaintView(canvas, context);
    }
}

BENCHMARK_CAPTURE(PaintViewBenchmark, GpsInfo, kViewGpsInfo)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(PaintViewBenchmark, Satellites, kViewSatellites)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(PaintViewBenchmark, Compass, kViewCompass)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(PaintViewBenchmark, Speed, kViewSpeed)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(PaintViewBenchmark, TripStat, kViewTripStat)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
