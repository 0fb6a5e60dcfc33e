#include "core/placement/picture_map_placement.h"

#include <algorithm>
#include <cmath>

#include "core/maps/map_picture.h"

namespace tolvane {
namespace {

constexpr double kZoomStepsPerDoubling = 4.0;
// The picture is panned in sixteenths of its longer side at zoom 0.
constexpr double kPanStepsPerPicture = 16.0;

double ZoomFactor(int zoom) {
    return 1.0 + zoom / kZoomStepsPerDoubling;
}

Affine PictureToPlane(const MapState& map) {
    return map.fit.valid ? map.fit.toPlane : Affine{};
}

// The plane's extent of the picture's four corners.
MapProjection::Point PlaneExtent(const Affine& toPlane, int width, int height) {
    double minX = 0, maxX = 0, minY = 0, maxY = 0;
    const double corners[4][2] = {
        {0, 0}, {1.0 * width, 0}, {0, 1.0 * height}, {1.0 * width, 1.0 * height}};
    for (int i = 0; i < 4; ++i) {
        const MapProjection::Point at = toPlane.Apply(corners[i][0], corners[i][1]);
        minX = i == 0 ? at.x : std::min(minX, at.x), maxX = i == 0 ? at.x : std::max(maxX, at.x);
        minY = i == 0 ? at.y : std::min(minY, at.y), maxY = i == 0 ? at.y : std::max(maxY, at.y);
    }
    return {std::max(maxX - minX, 1e-9), std::max(maxY - minY, 1e-9)};
}

}  // namespace

double MapStepPixels(const AppState& app) {
    const MapPicture& picture = *app.map.picture;
    return std::max(picture.width, picture.height) / kPanStepsPerPicture /
           ZoomFactor(app.mapKeys.mapZoom);
}

MapProjection::Point MapCentre(const AppState& app) {
    const MapState& map = app.map;
    if (map.placing >= 0) return {map.crossX, map.crossY};
    const MapPicture& picture = *map.picture;
    MapProjection::Point anchor{picture.width / 2.0, picture.height / 2.0};
    if (map.fit.valid && app.mapFollow.havePosition) {
        const MapProjection::Point plane = ToPlane(app.mapFollow.latitude, app.mapFollow.longitude);
        anchor = map.fit.toPicture.Apply(plane.x, plane.y);
        if (app.gps.connected && app.mapCountdown == 0) return anchor;
    }
    const double step = MapStepPixels(app);
    return {anchor.x + app.mapKeys.panColumns * step, anchor.y + app.mapKeys.panRows * step};
}

MapGeometry ComputeMapGeometry(const AppState& app, const Rect& body) {
    const MapState& map = app.map;
    const MapPicture& picture = *map.picture;
    const Affine toPlane = PictureToPlane(map);
    const MapProjection::Point extent = PlaneExtent(toPlane, picture.width, picture.height);
    const double scale = std::min(body.Width() / extent.x, body.Height() / extent.y) *
                         ZoomFactor(app.mapKeys.mapZoom);
    const MapProjection::Point centre = MapCentre(app);
    const MapProjection::Point centrePlane = toPlane.Apply(centre.x, centre.y);
    const double middleX = (body.left + body.right) / 2.0;
    const double middleY = (body.top + body.bottom) / 2.0;

    MapGeometry geometry;
    geometry.calibrated = map.fit.valid;
    Affine& screen = geometry.pictureToScreen;
    screen = {scale * toPlane.a, scale * toPlane.b, scale * (toPlane.c - centrePlane.x) + middleX,
              scale * toPlane.d, scale * toPlane.e, scale * (toPlane.f - centrePlane.y) + middleY};
    geometry.screenToPicture = screen.Inverse();
    geometry.screenPerPixel = std::sqrt(std::fabs(screen.a * screen.e - screen.b * screen.d));
    // The layers project through the program's projection at its own scale
    // factor; the distance makes that land on the calibration plane.
    geometry.placement = {middleX - scale * centrePlane.x, middleY - scale * centrePlane.y,
                          app.projection.Scale() / (scale * kPlaneScale)};
    return geometry;
}

}  // namespace tolvane
