// The Map view draws its picture where its geometry says, the earth's
// layers land on the same pixels as the picture, and a map without
// calibration shows picture pixels in its strip.

#include "core/views/map_view.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "core/app/map_commands.h"
#include "core/placement/picture_map_placement.h"
#include "core/views/view_painter.h"
#include "tests/core/test_support.h"
#include "tests/core/views/recording_canvas.h"

namespace tolvane {
namespace {

using testing::RecordingCanvas;

std::shared_ptr<MapPicture> BlankPicture(int width, int height) {
    auto picture = std::make_shared<MapPicture>();
    picture->width = width;
    picture->height = height;
    picture->levels.push_back(
        {width, height, std::vector<std::uint32_t>(static_cast<std::size_t>(width) * height)});
    return picture;
}

TEST(MapViewTest, PictureAndLayersMeetAndAnUncalibratedMapShowsPixels) {
    AppState app;
    ResetOptions(app.options);
    app.currentView = kViewMap;
    SetLoadedMap(app, "blank.png", BlankPicture(400, 200));
    const FontSet fonts(15);
    const ViewLayout layout = LayOutViews(480, 640, false, false, fonts);
    const Rect body = layout.body;

    // Zoom 0 fits the picture's width: 1.2 screen pixels per pixel, centred.
    RecordingCanvas canvas;
    PaintView(canvas, ViewContext{app, layout, fonts, 0});
    const auto images = canvas.Of(RecordingCanvas::Kind::kImage);
    ASSERT_EQ(images.size(), 1u);
    const int top = static_cast<int>(std::lround((body.top + body.bottom) / 2.0 - 120));
    EXPECT_EQ(images[0].box, (Rect{0, top, 480, top + 240}));
    const std::vector<std::string> texts = canvas.Texts();
    EXPECT_NE(std::find(texts.begin(), texts.end(), "X : 200.0000"), texts.end());
    EXPECT_NE(std::find(texts.begin(), texts.end(), "Y : 100.0000"), texts.end());

    // Calibrated and zoomed in, the position lies on its own pixel.
    app.map.calibration.points[0] = {true, 0, 0, -27.20, 153.04};
    app.map.calibration.points[1] = {true, 400, 200, -27.21, 153.06};
    app.map.fit = FitCalibration(app.map.calibration);
    app.mapKeys.mapZoom = 9;
    app.mapFollow = {-27.2075, 153.045, true};
    const MapGeometry geometry = ComputeMapGeometry(app, body);
    const MapProjection::Point onPicture = geometry.pictureToScreen.Apply(100, 150);
    const MapProjection::Point onEarth =
        app.projection.ProjectToScreen(-27.2075, 153.045, geometry.placement.x0,
                                       geometry.placement.y0, geometry.placement.distance);
    EXPECT_NEAR(onEarth.x, onPicture.x, 0.01);
    EXPECT_NEAR(onEarth.y, onPicture.y, 0.01);
}

// Without a map the view says how to load one, on a line of its own below
// the note and within the body, even on the smallest screen.
TEST(MapViewTest, TheEmptyViewSaysWhereMapsAreLoaded) {
    AppState app;
    ResetOptions(app.options);
    app.currentView = kViewMap;
    const FontSet fonts(15);
    const ViewLayout layout = LayOutViews(240, 320, false, false, fonts);
    RecordingCanvas canvas;
    PaintView(canvas, ViewContext{app, layout, fonts, 0});
    const auto texts = canvas.Of(RecordingCanvas::Kind::kText);
    const auto note = std::find_if(texts.begin(), texts.end(),
                                   [](const auto& call) { return call.text == "No map loaded"; });
    const auto hint = std::find_if(texts.begin(), texts.end(), [](const auto& call) {
        return call.text.find("Menu > Map > Load Map") != std::string::npos;
    });
    ASSERT_NE(note, texts.end());
    ASSERT_NE(hint, texts.end());
    const Rect body = layout.body;
    EXPECT_GT(hint->box.top, (body.top + body.bottom + note->font.height) / 2);
    EXPECT_LE(hint->box.bottom, body.bottom);
    EXPECT_LE(canvas.MeasureText(hint->text, hint->font).width, body.Width());
}

bool HasTextStarting(const RecordingCanvas& canvas, const std::string& start) {
    const std::vector<std::string> texts = canvas.Texts();
    return std::any_of(texts.begin(), texts.end(),
                       [&](const std::string& text) { return text.starts_with(start); });
}

// A calibration whose fit overflows or folds the picture onto one place
// leaves the picture uncalibrated, as five points at one place do.
TEST(MapViewTest, ACalibrationThatPlacesNothingShowsThePictureUncalibrated) {
    const testing::TemporaryFolder folder;
    for (const char* reproducer : {"overflow.rpt", "scale-zero.pgw"}) {
        const std::filesystem::path file = testing::TestDataFile(std::string("maps/") + reproducer);
        std::filesystem::remove(folder.File("scan.rpt"));
        std::filesystem::copy_file(file, folder.File("scan" + file.extension().string()));
        AppState app;
        ResetOptions(app.options);
        app.currentView = kViewMap;
        app.folders.refPointDir = folder.File("Reference Points");
        SetLoadedMap(app, folder.File("scan.png"), BlankPicture(400, 200));
        EXPECT_GE(app.map.calibration.Count(), 3) << reproducer;  // the file was read
        EXPECT_FALSE(app.map.fit.valid) << reproducer;

        const FontSet fonts(15);
        RecordingCanvas canvas;
        PaintView(canvas, ViewContext{app, LayOutViews(480, 640, false, false, fonts), fonts, 0});
        EXPECT_EQ(canvas.Of(RecordingCanvas::Kind::kImage).size(), 1u) << reproducer;
        EXPECT_TRUE(HasTextStarting(canvas, "X : 200.0000")) << reproducer;
        EXPECT_FALSE(HasTextStarting(canvas, "RMS")) << reproducer;
    }
}

// A position that is not a number has no integer place on the screen: the
// Map view draws around it without converting it (the sanitizer build
// stops at such a conversion).
TEST(MapViewTest, APositionThatIsNotANumberDrawsNoPictureAndNoMark) {
    AppState app;
    ResetOptions(app.options);
    app.currentView = kViewMap;
    SetLoadedMap(app, "blank.png", BlankPicture(400, 200));
    app.map.calibration.points[0] = {true, 0, 0, -27.20, 153.04};
    app.map.calibration.points[1] = {true, 400, 200, -27.21, 153.06};
    app.map.fit = FitCalibration(app.map.calibration);
    app.gps.connected = true;
    app.mapFollow = {std::nan(""), 153.05, true};
    const FontSet fonts(15);
    RecordingCanvas canvas;
    PaintView(canvas, ViewContext{app, LayOutViews(480, 640, false, false, fonts), fonts, 0});
    EXPECT_TRUE(canvas.Of(RecordingCanvas::Kind::kImage).empty());
}

}  // namespace
}  // namespace tolvane
