// The views as a person sees them: painted through the Qt canvas in DejaVu
// Sans on the offscreen platform and held to pictures in tests/data/views.
//
// To make the pictures again after a deliberate change of a view, run
//   TOLVANE_UPDATE_GOLDEN=1 build/<preset>/bin/tolvane_view_tests
// and look at every changed picture before committing it. To look at all
// views at 240 x 320, 480 x 640, 1280 x 800 and 320 x 240, day and night, set
// TOLVANE_VIEW_SHOTS to a folder instead.

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QPainter>
#include <cstdlib>
#include <filesystem>

#include "core/base/program_paths.h"
#include "core/base/string_manager.h"
#include "core/geo/units.h"
#include "core/nav/navigation.h"
#include "tests/core/test_support.h"
#include "tests/views/view_pictures.h"

namespace tolvane::testing {
namespace {

constexpr int kDemoTick = 60;

struct ViewFile {
    int view;
    const char* name;
};

constexpr ViewFile kViewFiles[] = {
    {kViewGpsInfo, "gps-info"}, {kViewSatellites, "satellites"}, {kViewCompass, "compass"},
    {kViewSpeed, "speed"},      {kViewTripStat, "trip-stat"},
};

std::string DemoRecording() {
    return std::string(TOLVANE_SOURCE_DIR) + "/resources/demo/demo.nmea";
}

std::string GoldenFile(const std::string& name) {
    return std::string(TOLVANE_SOURCE_DIR) + "/tests/data/views/" + name + ".png";
}

// The share of pixels that differ by more than a small step in any
// channel; antialiasing moves a few edge pixels a little between machines.
double DifferingShare(const QImage& a, const QImage& b) {
    if (a.size() != b.size()) return 1.0;
    const QImage x = a.convertToFormat(QImage::Format_RGB32);
    const QImage y = b.convertToFormat(QImage::Format_RGB32);
    long differing = 0;
    for (int row = 0; row < x.height(); ++row) {
        const QRgb* p = reinterpret_cast<const QRgb*>(x.constScanLine(row));
        const QRgb* q = reinterpret_cast<const QRgb*>(y.constScanLine(row));
        for (int column = 0; column < x.width(); ++column) {
            const int step = std::max({std::abs(qRed(p[column]) - qRed(q[column])),
                                       std::abs(qGreen(p[column]) - qGreen(q[column])),
                                       std::abs(qBlue(p[column]) - qBlue(q[column]))});
            if (step > 64) ++differing;
        }
    }
    return static_cast<double>(differing) / (x.width() * x.height());
}

void ExpectLikeGolden(const QImage& picture, const std::string& name) {
    const std::string path = GoldenFile(name);
    if (std::getenv("TOLVANE_UPDATE_GOLDEN")) {
        ASSERT_TRUE(picture.save(QString::fromStdString(path)));
        return;
    }
    const QImage golden(QString::fromStdString(path));
    ASSERT_FALSE(golden.isNull()) << path;
    EXPECT_LT(DifferingShare(picture, golden), 0.005) << name;
}

class ViewPictures : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        SetProgramPaths({TOLVANE_PROGRAM_DIR, "tolvane"});
        CStringManager::GetInstance().Load(kLanguageEnglish, kSubLanguageEnglishUs);
    }
};

TEST_F(ViewPictures, DemoWalkAtTheMinuteLooksAsBefore) {
    ReplayToTick(DemoRecording(), kDemoTick, [](AppState& app) {
        for (const ViewFile& file : kViewFiles) {
            app.currentView = file.view;
            app.options.nightView = 0;
            ExpectLikeGolden(PaintViewPicture(app, 480, 640), file.name);
            // The night palette of the views that have their own colours.
            if (file.view == kViewSatellites || file.view == kViewSpeed) {
                app.options.nightView = 1;
                ExpectLikeGolden(PaintViewPicture(app, 480, 640),
                                 std::string(file.name) + "-night");
            }
        }
    });
}

// Turns the replayed walk into a drive with a destination and a sounding
// alarm, to look at the parts a walk never shows.
void MakeItADrive(AppState& app) {
    GpsState& gps = app.gps;
    gps.speedKnots = 87 / kKmPerNauticalMile;
    gps.course = 123;
    gps.destinationDistanceKm = 3.4;
    gps.destinationSeconds = 140;
    app.instruments.course = {true, true, 123, 0};
    app.instruments.speedScale = {160, kMetric, 0};
    // An hour at 61 km/h on the average, 104 at the most.
    app.instruments.tripFigures = {61, 3600, 600, 104 / kKmPerNauticalMile};
    app.options.speedAlarmIndex = 2;
    app.options.speedAlarmValues[2] = 80;
    app.options.navigation = 1;
    app.alarm.sounding = true;
    app.compassMode = kCompassCourseUp;
    DynamicList<GeoPoint> destinations;
    GeoPoint harbour;
    harbour.latitude = gps.latitude + 0.02;
    harbour.longitude = gps.longitude + 0.01;
    harbour.name = "Harbour";
    destinations.Append(harbour);
    OpenDestinationList(app.navigation, destinations);
}

// Not a check: paints every view at the three sizes, day and night, into
// one sheet per size for a person to look at.
TEST_F(ViewPictures, WritesShotsWhenAsked) {
    const char* folder = std::getenv("TOLVANE_VIEW_SHOTS");
    if (!folder) GTEST_SKIP() << "TOLVANE_VIEW_SHOTS is not set";
    std::filesystem::create_directories(folder);
    const char* recording = std::getenv("TOLVANE_VIEW_SHOTS_LOG");
    const char* tick = std::getenv("TOLVANE_VIEW_SHOTS_TICK");
    const auto paint = [folder](AppState& app) {
        const QSize sizes[] = {{240, 320}, {480, 640}, {1280, 800}, {320, 240}};
        for (const QSize size : sizes) {
            const int count = static_cast<int>(std::size(kViewFiles));
            QImage sheet(size.width() * count, size.height() * 2, QImage::Format_RGB32);
            QPainter painter(&sheet);
            for (int i = 0; i < count; ++i) {
                app.currentView = kViewFiles[i].view;
                for (const int night : {0, 1}) {
                    app.options.nightView = night;
                    const QImage picture = PaintViewPicture(app, size.width(), size.height());
                    painter.drawImage(i * size.width(), night * size.height(), picture);
                    picture.save(QString("%1/%2-%3x%4%5.png")
                                     .arg(folder, kViewFiles[i].name)
                                     .arg(size.width())
                                     .arg(size.height())
                                     .arg(night ? "-night" : ""));
                }
            }
            sheet.save(
                QString("%1/sheet-%2x%3.png").arg(folder).arg(size.width()).arg(size.height()));
        }
    };
    ReplayToTick(recording ? recording : DemoRecording(), tick ? std::atoi(tick) : kDemoTick,
                 [&paint](AppState& app) {
                     const char* drive = std::getenv("TOLVANE_VIEW_SHOTS_DRIVE");
                     if (drive) MakeItADrive(app);
                     // "stopped": the drive has paused for two minutes.
                     if (drive && std::string(drive) == "stopped") {
                         app.gps.speedKnots = 0.2;
                         app.instruments.course = {false, true, 123, 125};
                         app.alarm.sounding = false;
                     }
                     paint(app);
                 });
}

}  // namespace
}  // namespace tolvane::testing

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
