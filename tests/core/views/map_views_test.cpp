// The maps place everything through the one projection: the re-projected
// pictures, the track across the 180 degree meridian and the proximity
// circles must all land where the projection says.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "core/geo/distance.h"
#include "core/geo/scale_bar.h"
#include "core/geo/units.h"
#include "core/placement/world_map_placement.h"
#include "core/views/map_layers.h"
#include "core/views/world_imagery.h"
#include "core/views/world_map_view.h"
#include "tests/core/views/recording_canvas.h"

namespace tolvane {
namespace {

using testing::RecordingCanvas;
using Kind = RecordingCanvas::Kind;

constexpr Color kNorth = 0xFF0000;
constexpr Color kSouth = 0x0000FF;

TEST(MapViewsTest, AReprojectedLatitudeLandsOnTheRowLatitudeToYGives) {
    const MapProjection projection;
    // 720 x 360: red north of 45 degrees, blue south of it.
    Image source{720, 360, std::vector<std::uint32_t>(720 * 360, kSouth)};
    std::fill_n(source.pixels.begin(), 720 * 90, kNorth);
    const Image map = ReprojectToMap(source, projection);
    const double distance = ImageryDistance(projection, map.width);
    ASSERT_EQ(map.width, 720);
    EXPECT_EQ(map.height, std::lround(2 * projection.LatitudeToY(80, distance)));
    const double edge = map.height / 2.0 - projection.LatitudeToY(45, distance);
    const auto at = [&map](int row) { return map.pixels[static_cast<std::size_t>(row) * 720]; };
    EXPECT_EQ(at(static_cast<int>(std::floor(edge)) - 1), kNorth);
    EXPECT_EQ(at(static_cast<int>(std::ceil(edge)) + 1), kSouth);
    EXPECT_NEAR(YToLatitude(projection, projection.LatitudeToY(-63.25, distance), distance), -63.25,
                1e-9);
}

struct MapScene {
    MapScene() { ResetOptions(app.options); }

    AppState app;
    FontSet fonts{15};
    ViewLayout layout = LayOutViews(480, 640, false, false, fonts);
    MapPlacement placement{240, 300, 100};

    RecordingCanvas Draw() {
        RecordingCanvas canvas;
        DrawMapLayers(canvas, ViewContext{app, layout, fonts, 0}, placement);
        return canvas;
    }
};

TEST(MapViewsTest, ATrackAcrossTheAntimeridianIsTwoPiecesNotALineAcrossTheWorld) {
    MapScene scene;
    // At a pixel a degree the whole world shows: both ends of the track too.
    for (const float longitude : {170.0f, 175.0f, 179.5f, -179.5f, -175.0f, -170.0f}) {
        scene.app.track.liveTrack.Append({10.0f, longitude, {}});
    }
    EXPECT_EQ(scene.Draw().Of(Kind::kPolyline).size(), 2u);
    scene.app.options.showTrack = 0;
    EXPECT_TRUE(scene.Draw().Of(Kind::kPolyline).empty());
}

TEST(MapViewsTest, DestinationsDrawTheirRangeAndTheInfoShowsDistanceAndTimeToGo) {
    MapScene scene;
    AppState& app = scene.app;
    app.gps.connected = app.gps.fixValid = 1;
    app.gps.latitude = 60.0;
    app.gps.longitude = 0.1;
    app.mapFollow = {60.0, 0.1, true};
    app.gps.destinationDistanceKm = 12.5;
    app.gps.destinationSeconds = 3900;
    DynamicList<GeoPoint> list;
    GeoPoint harbour;
    harbour.name = "Harbour";
    harbour.latitude = 60.5;
    harbour.longitude = 0.2;
    harbour.proximityRange = 500;  // metres
    list.Append(harbour);
    OpenDestinationList(app.navigation, list);
    // 100 pixels a km, with the harbour in the middle of the map.
    scene.placement = {240 - 100 * 0.2 * 114.319, 300 + app.projection.LatitudeToY(60.5, 0.01),
                       0.01};

    const RecordingCanvas canvas = scene.Draw();
    const std::vector<RecordingCanvas::Call> circles = canvas.Of(Kind::kEllipse);
    ASSERT_EQ(circles.size(), 1u);
    // 0.5 km, stretched by the table's factor at 60 degrees.
    const Rect& box = circles[0].box;
    EXPECT_EQ(box.Width() / 2, std::lround(0.5 * 100 * app.projection.StretchFactor(60)));
    EXPECT_EQ((box.left + box.right) / 2, 240);
    EXPECT_EQ((box.top + box.bottom) / 2, 300);
    const std::vector<std::string> texts = canvas.Texts();
    for (const char* expected : {"\u25B6 Harbour", "12.50 km", "1h 05m", "Harbour"}) {
        EXPECT_NE(std::find(texts.begin(), texts.end(), expected), texts.end()) << expected;
    }

    app.options.showRange = 0;
    EXPECT_TRUE(scene.Draw().Of(Kind::kEllipse).empty());
    app.options.showDestinations = 0;
    EXPECT_EQ(scene.Draw().Of(Kind::kRectangle).size(), 1u);  // the info box alone
}

TEST(MapViewsTest, TheWorldMapRepeatsAcrossTheSeamAndKeepsItsEdgesOffTheScreen) {
    AppState app;
    const Rect body{0, 20, 1280, 760};
    app.worldMapCentre = {70, 170};
    // At zoom 0 the world is as wide as the map: centred at 170 degrees east
    // the world's copy to the east fills the right half.
    const std::vector<MapPlacement> copies = WorldMapCopies(app, body);
    ASSERT_EQ(copies.size(), 2u);
    EXPECT_NEAR(copies[1].x0 - copies[0].x0, 1280, 1e-6);
    // Near the pole the world's 80 degree edge stays at the top of the map.
    const double top = copies[0].y0 - app.projection.LatitudeToY(80, copies[0].distance);
    EXPECT_NEAR(top, body.top, 1e-6);

    PanWorldMap(app, 320, 0, copies[0].distance);  // a quarter of the map's width: 90 degrees
    EXPECT_NEAR(app.worldMapCentre.longitude, -100, 1e-9);
}

// The bar is a round length in the unit system's units, a quarter of the
// view at the most, and as long as the projection draws that length east
// and west at the middle of the view.
TEST(MapViewsTest, TheScaleBarMeasuresWhatTheProjectionDraws) {
    EXPECT_EQ(ChooseScaleBar(100, kMetric, 120).text, "1 km");
    EXPECT_EQ(ChooseScaleBar(100, kMetric, 99).text, "500 m");
    EXPECT_EQ(ChooseScaleBar(100, kMetric, 99).pixels, 50);
    EXPECT_EQ(ChooseScaleBar(0.01, kMetric, 120).text, "10000 km");
    EXPECT_EQ(ChooseScaleBar(100, kImperial, 120).text, "2000 ft");
    EXPECT_EQ(ChooseScaleBar(100, kImperial, 170).text, "1 mi");
    EXPECT_EQ(ChooseScaleBar(100, kNautical, 120).text, "0.5 nm");
    EXPECT_EQ(ChooseScaleBar(100, kNautical, 120).pixels, 93);
    EXPECT_EQ(ChooseScaleBar(std::nan(""), kMetric, 120).pixels, 0);

    MapScene scene;
    scene.app.options.unitSystem = kMetric;
    RecordingCanvas canvas;
    const ViewContext context{scene.app, scene.layout, scene.fonts, 0};
    DrawScaleBar(canvas, context, scene.placement);
    const std::vector<std::string> texts = canvas.Texts();
    ASSERT_EQ(texts.size(), 1u);
    const RecordingCanvas::Call bar = canvas.Of(Kind::kLine).front();
    const int pixels = bar.box.right - bar.box.left;
    EXPECT_LE(pixels, scene.layout.body.Width() / 4);
    EXPECT_GT(pixels, scene.layout.body.Width() / 10);
    const double km = std::stod(texts[0]) * (texts[0].ends_with(" km") ? 1.0 : 0.001);
    const Rect& body = scene.layout.body;
    const double middle = YToLatitude(scene.app.projection,
                                      scene.placement.y0 - (body.top + body.bottom) / 2.0,
                                      scene.placement.distance);
    // The bar's pixels, east and west along the middle of the view, span
    // that many km on the ground.
    const double pixelsPerDegree =
        scene.app.projection.Scale() / scene.placement.distance * kKmPerDegreeLongitude;
    EXPECT_NEAR(DistanceKm(middle, 10.0, middle, 10.0 + pixels / pixelsPerDegree), km, 0.03 * km);
}

// A placement that is not a number has no integer place on the screen: the
// painters draw around it without converting it (the sanitizer build stops
// at such a conversion), and the earth's picture has nowhere to go.
TEST(MapViewsTest, APlacementThatIsNotANumberIsDrawnWithoutAPlace) {
    MapScene scene;
    AppState& app = scene.app;
    app.track.liveTrack.Append({10.0f, 170.0f, {}});
    app.track.liveTrack.Append({11.0f, 171.0f, {}});
    scene.placement = {std::nan(""), std::nan(""), 100};
    for (const RecordingCanvas::Call& call : scene.Draw().Of(Kind::kEllipse)) {
        EXPECT_LT(call.box.right, 0);
    }

    app.worldMapCentre = {std::nan(""), std::nan("")};
    WorldImagery imagery;
    imagery.day = Image{72, 36, std::vector<std::uint32_t>(72 * 36, kSouth)};
    RecordingCanvas canvas;
    PaintWorldMapView(canvas,
                      ViewContext{app, scene.layout, scene.fonts, 0, nullptr, &imagery});
    EXPECT_TRUE(canvas.Of(Kind::kImage).empty());
}

}  // namespace
}  // namespace tolvane
