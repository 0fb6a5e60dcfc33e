#include "core/views/world_map_view.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "core/base/string_manager.h"
#include "core/placement/map_placement.h"
#include "core/placement/tile_placement.h"
#include "core/placement/world_map_placement.h"
#include "core/views/instrument_parts.h"
#include "core/views/map_layers.h"
#include "core/views/world_imagery.h"

namespace tolvane {
namespace {

// Language string of the note shown when the pictures are missing.
constexpr std::uint32_t kTextNoWorldPictures = 13100;
constexpr std::uint32_t kTextZoomKeys = 13101;
constexpr std::uint32_t kTextPanKeys = 13102;
// The graticule's steps in degrees: 30 at first, finer as the map is
// zoomed in, so that a few lines always cross the map.
constexpr double kGridSteps[] = {30, 15, 10, 5, 2, 1, 0.5, 0.25, 0.1, 0.05, 0.02, 0.01};

struct GroundInk {
    Color ground;  // beyond the 80 degree edges and without pictures
    Color grid;
    Color gridLabel;
};

const GroundInk& GroundInkOf(const ViewContext& context) {
    static constexpr GroundInk kDay{0x0E1B2C, 0x5E7690, 0xE8EEF5};
    static constexpr GroundInk kNight{0x000000, 0x3A2A1C, 0x98683A};
    return context.app.options.nightView ? kNight : kDay;
}

// The part of the screen a copy of the world covers.
struct WorldBox {
    double left;
    double top;
    double width;
    double height;
};

WorldBox WorldBoxOf(const MapPlacement& placement, const AppState& app) {
    const double width = WorldWidth(placement, app);
    const double half = HalfHeight(placement, app);
    return {placement.x0 - width / 2, placement.y0 - half, width, 2 * half};
}

// Draws the part of a picture of the world that shows in body.
void DrawWorldPicture(Canvas& canvas, const Image& picture, const WorldBox& world,
                      const Rect& body) {
    const double perColumn = world.width / picture.width;
    const double perRow = world.height / picture.height;
    const int left = std::max(0, ClampCoordinate(std::floor((body.left - world.left) / perColumn)));
    const int right =
        std::min(picture.width, ClampCoordinate(std::ceil((body.right - world.left) / perColumn)));
    const int top = std::max(0, ClampCoordinate(std::floor((body.top - world.top) / perRow)));
    const int bottom =
        std::min(picture.height, ClampCoordinate(std::ceil((body.bottom - world.top) / perRow)));
    if (left >= right || top >= bottom) return;
    const Rect target{ClampCoordinate(world.left + left * perColumn),
                      ClampCoordinate(world.top + top * perRow),
                      ClampCoordinate(world.left + right * perColumn),
                      ClampCoordinate(world.top + bottom * perRow)};
    canvas.DrawImage(picture, {left, top, right, bottom}, target);
}

// Draws a strip of a tile from its stand-in: the source rows are widened
// to whole pixels of the picture, and the screen box with them, so that a
// small part of a larger tile lands where it belongs.
void DrawTileStrip(Canvas& canvas, const TileStandIn& standIn, const TilePiece& piece,
                   const TileStrip& strip, double brightness) {
    const Image& picture = *standIn.picture;
    const double left = standIn.left * picture.width;
    const double right = (standIn.left + standIn.side) * picture.width;
    const double top = (standIn.top + strip.top * standIn.side) * picture.height;
    const double bottom = (standIn.top + strip.bottom * standIn.side) * picture.height;
    const Rect source{static_cast<int>(std::floor(left)), static_cast<int>(std::floor(top)),
                      static_cast<int>(std::ceil(right)), static_cast<int>(std::ceil(bottom))};
    if (source.Width() <= 0 || source.Height() <= 0) return;
    const double perColumn = (piece.right - piece.left) / (right - left);
    const double perRow = (strip.screenBottom - strip.screenTop) / (bottom - top);
    const int screenLeft = ClampCoordinate(piece.left + (source.left - left) * perColumn);
    const int screenRight = ClampCoordinate(piece.right + (source.right - right) * perColumn);
    const int screenTop = ClampCoordinate(strip.screenTop + (source.top - top) * perRow);
    const int screenBottom =
        ClampCoordinate(strip.screenBottom + (source.bottom - bottom) * perRow);
    canvas.DrawImageMapped(picture, source, {screenLeft, screenTop}, {screenRight, screenTop},
                           {screenLeft, screenBottom}, brightness);
}

// The tiles of the user's tile maps over the pictures of the earth, each
// from its own picture or, while that is not here, from a larger tile above
// it; where neither is here the earth's picture shows.
void DrawTiles(Canvas& canvas, const ViewContext& context, const std::vector<ShownTile>& shown) {
    const double brightness = context.app.options.nightView != 0 ? kNightPictureBrightness : 1.0;
    for (const ShownTile& tile : shown) {
        if (tile.standIn.picture == nullptr) continue;
        for (const TileStrip& strip : tile.piece.strips) {
            DrawTileStrip(canvas, tile.standIn, tile.piece, strip, brightness);
        }
    }
}

// The tile maps' attribution, as their licences ask, in small type at the
// map's foot, its bottom at foot.
void DrawAttribution(Canvas& canvas, const ViewContext& context, int foot) {
    const std::string& text = context.tiles->attribution;
    if (text.empty()) return;
    const Rect& body = context.layout.body;
    const Font font{std::max(8, context.layout.barHeight * 2 / 5), 400};
    const int pad = font.height / 4;
    const TextSize size = canvas.MeasureText(text, font);
    const int width = std::min(size.width, body.Width() - 2 * pad);
    const Rect box{body.right - width - 2 * pad, foot - size.height - 2 * pad, body.right, foot};
    const Palette& palette = PaletteOf(context);
    canvas.DrawRectangle(box, palette.panel, kNoColor);
    canvas.DrawText(text, font, {box.left + pad, box.top + pad, box.right - pad, box.bottom - pad},
                    kAlignRight | kAlignVCenter, palette.label);
}

const Image* PictureOf(const ViewContext& context) {
    const WorldImagery* imagery = context.worldImagery;
    if (imagery == nullptr || imagery->day.width <= 0) return nullptr;
    // The night palette shows the city lights everywhere, dark enough to
    // keep the eyes used to the night.
    if (context.app.options.nightView && imagery->night.width > 0) return &imagery->night;
    return imagery->shaded.width > 0 ? &imagery->shaded : &imagery->day;
}

// The step of the graticule: the finest whose lines stand at least
// minimum pixels apart, but never coarser than 30 degrees.
double GridStep(double pixelsPerDegree, double minimum) {
    double chosen = kGridSteps[0];
    for (const double step : kGridSteps) {
        if (step * pixelsPerDegree < minimum) break;
        chosen = step;
    }
    return chosen;
}

// "30°N", "0°", "120.5°W": a grid line's value with its hemisphere.
std::string GridLabel(double degrees, double step, char positive, char negative) {
    const int decimals = step >= 1 ? 0 : (step >= 0.1 ? 1 : 2);
    char text[32];
    std::snprintf(text, sizeof text, "%.*f\u00B0", decimals, std::fabs(degrees));
    const bool zero = std::fabs(degrees) < step / 2;
    const bool edge = positive == 'E' && std::fabs(std::fabs(degrees) - 180) < step / 2;
    if (zero || edge) return text;
    return std::string(text) + (degrees > 0 ? positive : negative);
}

struct Grid {
    double step;
    Font font;
    const GroundInk& ink;
};

// A grid label with a dark shadow, so that it reads on ice and cloud too.
void DrawGridLabel(Canvas& canvas, const std::string& text, const Grid& grid, const Rect& box,
                   unsigned align) {
    canvas.DrawText(text, grid.font, {box.left + 1, box.top + 1, box.right + 1, box.bottom + 1},
                    align, grid.ink.ground);
    canvas.DrawText(text, grid.font, box, align, grid.ink.gridLabel);
}

// Every how many grid lines a label fits, for labels size pixels long
// on lines spacing pixels apart.
int LabelEvery(double size, double spacing) {
    return std::max(1, static_cast<int>(std::ceil(size / std::max(1.0, spacing))));
}

void DrawMeridians(Canvas& canvas, const ViewContext& context, const MapPlacement& placement,
                   const Grid& grid) {
    const Rect& body = context.layout.body;
    const WorldBox world = WorldBoxOf(placement, context.app);
    const double perDegree = world.width / 360.0;
    const int top = std::max(body.top, ClampCoordinate(world.top));
    const int bottom = std::min(body.bottom, ClampCoordinate(world.top + world.height));
    const double west = (body.left - placement.x0) / perDegree;
    const double east = (body.right - placement.x0) / perDegree;
    const double labelWidth = canvas.MeasureText("000.0°W", grid.font).width;
    const int every = LabelEvery(labelWidth, grid.step * perDegree);
    for (long line = std::lround(std::ceil(west / grid.step)); line * grid.step <= east; ++line) {
        const double at = line * grid.step;
        const int x = ClampCoordinate(placement.x0 + at * perDegree);
        canvas.DrawLine({x, top}, {x, bottom}, grid.ink.grid);
        if (line % every != 0) continue;
        const std::string label = GridLabel(WrapLongitude(at), grid.step, 'E', 'W');
        DrawGridLabel(canvas, label, grid, {x + 3, top + 1, x + 200, top + 1 + grid.font.height},
                      kAlignLeft);
    }
}

void DrawParallels(Canvas& canvas, const ViewContext& context, const MapPlacement& placement,
                   const Grid& grid) {
    const Rect& body = context.layout.body;
    const MapProjection& projection = context.app.projection;
    const int steps = static_cast<int>(std::floor(kCutLatitude / grid.step + 1e-9));
    // The lines crowd towards the poles less than at the equator: the
    // equator's spacing decides.
    const double spacing = projection.LatitudeToY(grid.step, placement.distance);
    const int every = LabelEvery(grid.font.height * 2.0, spacing);
    for (int index = -steps; index <= steps; ++index) {
        const double latitude = index * grid.step;
        const int y =
            ClampCoordinate(placement.y0 - projection.LatitudeToY(latitude, placement.distance));
        if (y < body.top || y >= body.bottom) continue;
        canvas.DrawLine({body.left, y}, {body.right, y}, grid.ink.grid);
        if (index % every != 0) continue;
        const std::string label = GridLabel(latitude, grid.step, 'N', 'S');
        DrawGridLabel(canvas, label, grid, {body.left + 3, y - grid.font.height - 1, body.right, y},
                      kAlignLeft | kAlignBottom);
    }
}

void DrawGraticule(Canvas& canvas, const ViewContext& context, const MapPlacement& placement) {
    const Rect& body = context.layout.body;
    const double perDegree = WorldWidth(placement, context.app) / 360.0;
    const double minimum = std::max(48.0, body.Width() / 6.0);
    const Grid grid{GridStep(perDegree, minimum),
                    {std::max(8, context.layout.barHeight / 2), 400},
                    GroundInkOf(context)};
    DrawMeridians(canvas, context, placement, grid);
    DrawParallels(canvas, context, placement, grid);
}

void DrawMissingNote(Canvas& canvas, const ViewContext& context) {
    const Rect& body = context.layout.body;
    const std::string note = LanguageText(kTextNoWorldPictures);
    const int height = context.layout.barHeight;
    const Rect box{body.left, body.bottom - height, body.right, body.bottom};
    canvas.DrawRectangle(box, PaletteOf(context).panel, kNoColor);
    PaintLine(canvas, note, Font{height * 3 / 5, 400}, box, kAlignCenter, PaletteOf(context).label);
}

// What the arrow keys do now, in the map's bottom right corner; returns
// the top of its box.
int DrawArrowMode(Canvas& canvas, const ViewContext& context) {
    const Rect& body = context.layout.body;
    const std::string text = context.app.mapKeys.zoomMode ? "\u21F3 " + LanguageText(kTextZoomKeys)
                                                          : "\u2725 " + LanguageText(kTextPanKeys);
    const Font font{std::max(8, context.layout.barHeight / 2), 600};
    const TextSize size = canvas.MeasureText(text, font);
    const int pad = font.height / 3;
    const Rect box{body.right - size.width - 3 * pad, body.bottom - size.height - 3 * pad,
                   body.right - pad, body.bottom - pad};
    const Palette& palette = PaletteOf(context);
    canvas.DrawRectangle(box, palette.panel, palette.panelEdge);
    canvas.DrawText(text, font, box, kAlignCenter, palette.label);
    return box.top;
}

}  // namespace

void PaintWorldMapView(Canvas& canvas, const ViewContext& context) {
    const Rect& body = context.layout.body;
    canvas.SetClip(body);
    canvas.DrawRectangle(body, GroundInkOf(context).ground, kNoColor);
    const std::vector<MapPlacement> copies = WorldMapCopies(context.app, body);
    const Image* picture = PictureOf(context);
    const std::vector<ShownTile> shown = context.tiles != nullptr
                                             ? ShownTiles(context.app, body, *context.tiles)
                                             : std::vector<ShownTile>{};
    // Under tiles that hide the whole map the earth's pictures would be
    // painted for nothing.
    if (picture != nullptr && !TilesHideBody(shown, body)) {
        for (const MapPlacement& copy : copies) {
            DrawWorldPicture(canvas, *picture, WorldBoxOf(copy, context.app), body);
        }
    }
    DrawTiles(canvas, context, shown);
    const bool tiled = !shown.empty();
    if (!copies.empty()) DrawGraticule(canvas, context, copies.front());
    for (const MapPlacement& copy : copies) DrawMapLayers(canvas, context, copy);
    if (!copies.empty()) DrawScaleBar(canvas, context, copies.front());
    const int arrowModeTop = DrawArrowMode(canvas, context);
    if (tiled) DrawAttribution(canvas, context, arrowModeTop);
    // Where tiles are drawn, the pictures of the earth are not missed.
    if (picture == nullptr && !tiled) DrawMissingNote(canvas, context);
    canvas.ResetClip();
    PaintCoordinateStrip(canvas, context);
}

}  // namespace tolvane
