// The designed views stay honest: without a fix they show grey dashes, never
// the last figures as if they were live; and the small rules they show by.

#include <gtest/gtest.h>

#include <algorithm>

#include "core/app/main_timer.h"
#include "core/geo/units.h"
#include "core/views/compass_view.h"
#include "core/views/speed_view.h"
#include "core/views/view_painter.h"
#include "tests/core/app/recording_host.h"
#include "tests/core/views/recording_canvas.h"

namespace tolvane {
namespace {

using testing::RecordingCanvas;

TEST(InstrumentViewsTest, WithoutAFixShowGreyDashesAndNoStaleFigure) {
    AppState app;
    app.gpsRunning = true;
    GpsState& gps = app.gps;
    gps.connected = 1;  // a receiver that has lost its fix
    gps.latitude = 59.5;
    gps.speedKnots = 50;  // 92.6 km/h, left over from the last fix
    gps.course = 123;
    app.instruments.course = {false, true, 123, 7};
    const FontSet fonts(15);
    const ViewLayout layout = LayOutViews(480, 640, false, false, fonts);
    const Color dim = PaletteFor(false).dim;
    for (const int view : {kViewCompass, kViewSpeed, kViewTripStat}) {
        app.currentView = view;
        RecordingCanvas canvas;
        PaintView(canvas, ViewContext{app, layout, fonts, 0});
        int dashes = 0;
        for (const RecordingCanvas::Call& text : canvas.Of(RecordingCanvas::Kind::kText)) {
            EXPECT_EQ(text.text.find("92.6"), std::string::npos) << view;
            EXPECT_EQ(text.text.find("59\u00B0"), std::string::npos) << view;
            if (text.text.find("--") != std::string::npos && text.outline == dim) ++dashes;
        }
        // The two halves of the coordinate strip and the view's own figure.
        EXPECT_GE(dashes, 3) << view;
    }
    const std::vector<std::string> texts = [&] {
        app.currentView = kViewCompass;
        RecordingCanvas canvas;
        PaintView(canvas, ViewContext{app, layout, fonts, 0});
        return canvas.Texts();
    }();
    EXPECT_NE(std::find(texts.begin(), texts.end(), "COG ---"), texts.end());
}

TEST(InstrumentViewsTest, SpeedTurnAndDialRules) {
    GpsState gps;
    gps.speedKnots = 0.49 / 1.852;
    EXPECT_EQ(SpeedDigits(gps, kMetric), "0.0");
    gps.speedKnots = 0.5 / 1.852;
    EXPECT_EQ(SpeedDigits(gps, kMetric), "0.5");
    gps.speedKnots = 100;
    EXPECT_EQ(SpeedDigits(gps, kImperial), "115.1");  // never clamped to the dial

    EXPECT_DOUBLE_EQ(DialAngle(0, 100), -120);
    EXPECT_DOUBLE_EQ(DialAngle(50, 100), 0);
    EXPECT_DOUBLE_EQ(DialAngle(250, 100), 120);

    EXPECT_EQ(TurnHint(TurnDegrees(350, 25)), "35\u00B0 \u25BA");
    EXPECT_EQ(TurnHint(TurnDegrees(10, 335)), "\u25C4 35\u00B0");
    EXPECT_EQ(TurnHint(TurnDegrees(90, 90.2)), "0\u00B0");
    EXPECT_DOUBLE_EQ(TurnDegrees(0, 180), 180);
}

TEST(InstrumentViewsTest, TheMainTimerAdvancesWhatTheViewsRemember) {
    AppState app;
    GpsFix fix;
    fix.fixValid = 1;
    fix.fixType = 3;
    fix.altitude = 100;
    fix.speedKnots = 30;  // 55.6 km/h
    fix.course = 200;
    app.readActiveSource = [&fix] { return SourceReading{1, fix}; };
    testing::RecordingHost host;
    MainTimerProc(app, host);
    EXPECT_EQ(app.instruments.speedScale.fullScale, 100);
    EXPECT_TRUE(app.instruments.course.live);
    EXPECT_TRUE(app.instruments.trip.haveAltitude);
}

}  // namespace
}  // namespace tolvane
