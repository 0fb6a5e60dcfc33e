#include "core/views/map_view.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "core/base/csv_text.h"
#include "core/base/string_manager.h"
#include "core/maps/map_picture.h"
#include "core/placement/picture_map_placement.h"
#include "core/views/instrument_parts.h"
#include "core/views/map_layers.h"

namespace tolvane {
namespace {

constexpr std::uint32_t kTextHowToLoadMap = 14517;
constexpr std::uint32_t kTextNoMap = 14518;
constexpr std::uint32_t kTextPlacingHint = 14519;

Point Rounded(MapProjection::Point point) {
    return {ClampCoordinate(point.x), ClampCoordinate(point.y)};
}

// The part of the picture that the body shows, in the level's pixels.
Rect VisibleSource(const MapGeometry& geometry, const Rect& body, const MapPicture& picture,
                   double levelScale) {
    double minX = picture.width, maxX = 0, minY = picture.height, maxY = 0;
    for (const Point corner : {Point{body.left, body.top}, Point{body.right, body.top},
                               Point{body.left, body.bottom}, Point{body.right, body.bottom}}) {
        const MapProjection::Point at = geometry.screenToPicture.Apply(corner.x, corner.y);
        minX = std::min(minX, at.x), maxX = std::max(maxX, at.x);
        minY = std::min(minY, at.y), maxY = std::max(maxY, at.y);
    }
    const auto level = [levelScale](double pixel, double limit, bool up) {
        const double scaled = std::clamp(pixel, 0.0, limit) * levelScale;
        return ClampCoordinate(up ? std::ceil(scaled) : std::floor(scaled));
    };
    return {level(minX, picture.width, false), level(minY, picture.height, false),
            level(maxX, picture.width, true), level(maxY, picture.height, true)};
}

void PaintPicture(Canvas& canvas, const ViewContext& context, const MapGeometry& geometry) {
    const MapPicture& picture = *context.app.map.picture;
    if (picture.levels.empty()) return;
    const Image& image = picture.levels[PickLevel(picture, geometry.screenPerPixel)];
    const double levelScale = static_cast<double>(image.width) / picture.width;
    const Rect source = VisibleSource(geometry, context.layout.body, picture, levelScale);
    if (source.Width() <= 0 || source.Height() <= 0) return;
    const auto screen = [&](int x, int y) {
        return Rounded(geometry.pictureToScreen.Apply(x / levelScale, y / levelScale));
    };
    // At night the picture is dimmed, so that a paper map's white does not
    // dazzle.
    const double brightness = context.app.options.nightView != 0 ? kNightPictureBrightness : 1.0;
    canvas.DrawImageMapped(image, source, screen(source.left, source.top),
                           screen(source.right, source.top), screen(source.left, source.bottom),
                           brightness);
}

// Each set point as a ring with its number, and its residual once a
// least-squares fit gives one; the fit's RMS in the body's corner.
void PaintRefPoints(Canvas& canvas, const ViewContext& context, const MapGeometry& geometry) {
    const MapState& map = context.app.map;
    const Palette& palette = PaletteOf(context);
    const Font font = context.fonts.Slot(kInstrumentTextSlot);
    const int radius = std::max(4, font.height / 3);
    const bool residuals = map.fit.valid && map.calibration.Count() > 2;
    for (int i = 0; i < kRefPointCount; ++i) {
        const RefPoint& point = map.calibration.points[i];
        if (!point.set) continue;
        const Point at = Rounded(geometry.pictureToScreen.Apply(point.x, point.y));
        canvas.DrawEllipse({at.x - radius, at.y - radius, at.x + radius + 1, at.y + radius + 1},
                           kNoColor, palette.alarm, 2);
        std::string label = std::to_string(i + 1);
        if (residuals) label += FormatText(" %.0f m", map.fit.residualMetres[i]);
        canvas.DrawText(label, font,
                        {at.x + radius, at.y, at.x + radius + 8 * font.height, at.y + font.height},
                        kAlignLeft, palette.alarm);
    }
    if (!residuals) return;
    const Rect body = context.layout.body;
    canvas.DrawText(FormatText("RMS %.1f m", map.fit.rmsMetres), font,
                    {body.left + 2, body.top + 2, body.right - 2, body.top + 2 + font.height},
                    kAlignLeft, palette.alarm);
}

// The cross-hair in the body's middle and what to do, while a point is
// being placed.
void PaintCrossHair(Canvas& canvas, const ViewContext& context) {
    const Rect body = context.layout.body;
    const Palette& palette = PaletteOf(context);
    const Point middle{(body.left + body.right) / 2, (body.top + body.bottom) / 2};
    const int arm = std::min(body.Width(), body.Height()) / 8;
    canvas.DrawLine({middle.x - arm, middle.y}, {middle.x + arm, middle.y}, palette.alarm);
    canvas.DrawLine({middle.x, middle.y - arm}, {middle.x, middle.y + arm}, palette.alarm);
    const Font font = context.fonts.Slot(kInstrumentTextSlot);
    const std::string hint =
        FillLanguageText(kTextPlacingHint, {std::to_string(context.app.map.placing + 1)});
    canvas.DrawText(hint, FitFont(canvas, hint, body.Width() - 4, font.height, 400),
                    {body.left, body.bottom - font.height - 2, body.right, body.bottom - 2},
                    kAlignHCenter | kAlignBottom, palette.alarm);
}

void PaintStripOf(Canvas& canvas, const ViewContext& context, const MapGeometry& geometry) {
    if (geometry.calibrated) return PaintCoordinateStrip(canvas, context);
    const MapPicture& picture = *context.app.map.picture;
    const MapProjection::Point centre = MapCentre(context.app);
    PaintPixelStrip(canvas, context, centre.x, centre.y, picture.width, picture.height);
}

// The empty view says how to load a map, a line below its note and smaller,
// shrunk further where a narrow screen would cut it.
void PaintNoMap(Canvas& canvas, const ViewContext& context) {
    const Rect& body = context.layout.body;
    const Palette& palette = PaletteOf(context);
    const Font note = context.fonts.Slot(kInstrumentTextSlot);
    canvas.DrawText(LanguageText(kTextNoMap), note, body, kAlignCenter, palette.dim);
    const Font hint = context.fonts.Slot(kInstrumentLabelSlot);
    const int top = (body.top + body.bottom + note.height) / 2 + hint.height / 2;
    PaintLine(canvas, LanguageText(kTextHowToLoadMap), hint,
              {body.left + 2, top, body.right - 2, top + hint.height}, kAlignCenter, palette.dim);
}

}  // namespace

void PaintMapView(Canvas& canvas, const ViewContext& context) {
    const Rect body = context.layout.body;
    const Palette& palette = PaletteOf(context);
    canvas.DrawRectangle(body, palette.background, kNoColor);
    if (!context.app.map.Loaded()) {
        PaintNoMap(canvas, context);
        return PaintCoordinateStrip(canvas, context);
    }
    const MapGeometry geometry = ComputeMapGeometry(context.app, body);
    const Options& options = context.app.options;
    canvas.SetClip(body);
    if (options.showMap) PaintPicture(canvas, context, geometry);
    if (geometry.calibrated) {
        DrawMapLayers(canvas, context, geometry.placement);
        DrawScaleBar(canvas, context, geometry.placement);
    }
    if (options.showRefPoints) PaintRefPoints(canvas, context, geometry);
    if (context.app.map.placing >= 0) PaintCrossHair(canvas, context);
    canvas.ResetClip();
    PaintStripOf(canvas, context, geometry);
}

}  // namespace tolvane
