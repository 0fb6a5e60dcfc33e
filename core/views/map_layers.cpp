#include "core/views/map_layers.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "core/base/device_helpers.h"
#include "core/geo/distance.h"
#include "core/geo/formatting.h"
#include "core/geo/scale_bar.h"
#include "core/placement/screen_lines.h"
#include "core/placement/world_map_placement.h"
#include "core/views/instrument_parts.h"

namespace tolvane {
namespace {

constexpr int kMinimumRangeRadius = 2;

// The colours of the map marks, which stand on pictures of any colour, so
// each has a light rim.
struct MapInk {
    Color track;
    Color viewedTrack;
    Color waypoint;
    Color destination;
    Color current;
    Color reached;
    Color range;
    Color rim;
    Color labelBack;
    Color labelText;
};

const MapInk& InkOf(const ViewContext& context) {
    static constexpr MapInk kDay{0xE5392A, 0x8E24AA, 0x1565C0, 0x2E7D32, 0xF57C00,
                                 0x9E9E9E, 0xF57C00, 0xFFFFFF, 0xFFFFFF, 0x1A1A1A};
    static constexpr MapInk kNight{0xD0502A, 0x8A5A9A, 0x6A8AB0, 0x6E9440, 0xE39B3A,
                                   0x4E4640, 0xB87A20, 0x2A1C12, 0x140A06, 0xCF9148};
    return context.app.options.nightView ? kNight : kDay;
}

// Eight clearly different colours for the POI categories.
constexpr Color kCategoryColors[] = {0xD81B60, 0x8E24AA, 0x3949AB, 0x039BE5,
                                     0x00897B, 0x7CB342, 0xFDD835, 0x6D4C41};

Color CategoryColor(const std::string& category) {
    std::size_t hash = 0;
    for (const char c : category) hash = hash * 31 + static_cast<unsigned char>(c);
    return kCategoryColors[hash % std::size(kCategoryColors)];
}

int MarkSize(const ViewContext& context) {
    return std::max(3, context.layout.barHeight / 4);
}

Font LabelFont(const ViewContext& context) {
    return {std::max(9, context.layout.barHeight / 2), 600};
}

// The labels already set, so that a crowd of points does not bury the map
// under names written over each other.
class LabelSpace {
  public:
    explicit LabelSpace(const Rect& area)
        : area_(area),
          columns_(std::max(0, (area.Width() + kCell - 1) / kCell)),
          rows_(std::max(0, (area.Height() + kCell - 1) / kCell)),
          taken_(static_cast<std::size_t>(columns_) * rows_, false) {}

    // Whether no cell the box touches is taken.
    bool IsFree(const Rect& box) const {
        const Cells cells = CellsOf(box, 0, kCell - 1);
        for (int row = cells.top; row < cells.bottom; ++row) {
            for (int column = cells.left; column < cells.right; ++column) {
                if (taken_[Index(column, row)]) return false;
            }
        }
        return true;
    }
    // Takes the cells the box covers whole, so that boxes side by side do
    // not rule each other out.
    void Block(const Rect& box) {
        const Cells cells = CellsOf(box, kCell - 1, 0);
        for (int row = cells.top; row < cells.bottom; ++row) {
            for (int column = cells.left; column < cells.right; ++column) {
                taken_[Index(column, row)] = true;
            }
        }
    }
    bool Take(const Rect& box) {
        if (!IsFree(box)) return false;
        Block(box);
        return true;
    }

  private:
    static constexpr int kCell = 4;
    struct Cells {
        int left, top, right, bottom;
    };
    // The cells of box: starts rounded up by startRound, ends by endRound.
    Cells CellsOf(const Rect& box, int startRound, int endRound) const {
        const auto cell = [](int offset, int round, int count) {
            return std::clamp((std::max(0, offset) + round) / kCell, 0, count);
        };
        return {cell(box.left - area_.left, startRound, columns_),
                cell(box.top - area_.top, startRound, rows_),
                cell(box.right - area_.left, endRound, columns_),
                cell(box.bottom - area_.top, endRound, rows_)};
    }
    std::size_t Index(int column, int row) const {
        return static_cast<std::size_t>(row) * columns_ + column;
    }

    Rect area_;
    int columns_;
    int rows_;
    std::vector<bool> taken_;
};

// What a point layer draws with: where the screen is, the ink and the
// labels so far.
struct LayerPen {
    Canvas& canvas;
    const ViewContext& context;
    const MapPlacement& placement;
    const MapInk& ink;
    Rect visible;
    LabelSpace labels;
};

bool IsVisible(const Rect& visible, Point at, int margin) {
    return at.x >= visible.left - margin && at.x < visible.right + margin &&
           at.y >= visible.top - margin && at.y < visible.bottom + margin;
}

void DrawLabel(LayerPen& pen, const std::string& name, Point at, Color color) {
    if (!pen.context.app.options.showLabel || name.empty()) return;
    const Font font = LabelFont(pen.context);
    const int gap = MarkSize(pen.context) + 4;  // clear of the mark and its rim
    const auto boxOf = [&](int width) {
        return Rect{at.x + gap, at.y - font.height / 2, at.x + gap + width + 4,
                    at.y + font.height / 2 + 1};
    };
    // Where many points crowd, most labels find no room: a label's width
    // guessed from its length (a third of the font height a byte, less than
    // nearly any text takes) rules those out before the window measures it.
    if (!pen.labels.IsFree(boxOf(static_cast<int>(name.size()) * font.height / 3))) return;
    const Rect box = boxOf(pen.canvas.MeasureText(name, font).width);
    if (!pen.labels.Take(box)) return;
    pen.canvas.DrawRectangle(box, pen.ink.labelBack, kNoColor);
    pen.canvas.DrawText(name, font, box, kAlignCenter, color);
}

// Draws each line of a list of screen pieces that has at least two points
// and crosses the visible rectangle.
void DrawPieces(Canvas& canvas, const std::vector<std::vector<Point>>& pieces, const Rect& visible,
                Color color, int width) {
    for (const std::vector<Point>& piece : pieces) {
        if (piece.size() < 2) continue;
        Rect bounds{piece[0].x, piece[0].y, piece[0].x, piece[0].y};
        for (const Point& at : piece) {
            bounds = {std::min(bounds.left, at.x), std::min(bounds.top, at.y),
                      std::max(bounds.right, at.x), std::max(bounds.bottom, at.y)};
        }
        if (bounds.right + width < visible.left || bounds.left - width > visible.right ||
            bounds.bottom + width < visible.top || bounds.top - width > visible.bottom) {
            continue;
        }
        canvas.DrawPolyline(piece, color, width);
    }
}

void DrawTrackList(Canvas& canvas, const ViewContext& context, const MapPlacement& placement,
                   const DynamicList<TrackPoint>& track, Color color) {
    DrawPieces(canvas, TrackPieces(context.app, placement, track), context.layout.body, color,
               std::max(2, context.layout.barHeight / 10));
}

void DrawTrack(LayerPen& pen) {
    // The track lock keeps the track timer from appending meanwhile.
    const TrackLogger& track = pen.context.app.track;
    const std::lock_guard<std::mutex> guard(track.lock);
    DrawTrackList(pen.canvas, pen.context, pen.placement, track.viewedTrack, pen.ink.viewedTrack);
    DrawTrackList(pen.canvas, pen.context, pen.placement, track.liveTrack, pen.ink.track);
}

// A square mark on a light rim, drawn as two plain fills, which the window
// draws fastest.
void DrawSquareMark(Canvas& canvas, Point at, int size, Color fill, Color rim) {
    canvas.DrawRectangle({at.x - size - 1, at.y - size - 1, at.x + size + 2, at.y + size + 2}, rim,
                         kNoColor);
    canvas.DrawRectangle({at.x - size, at.y - size, at.x + size + 1, at.y + size + 1}, fill,
                         kNoColor);
}

void DrawDiamond(Canvas& canvas, Point at, int size, Color fill, Color rim) {
    canvas.DrawPolygon(
        {{at.x, at.y - size}, {at.x + size, at.y}, {at.x, at.y + size}, {at.x - size, at.y}}, fill,
        rim);
}

using ShownPoints = std::vector<std::pair<const GeoPoint*, Point>>;

// The marks of a list of points on the screen, each keeping its place clear
// of labels; what was drawn joins shown.
template <typename DrawMark>
void DrawPointMarks(LayerPen& pen, const DynamicList<GeoPoint>& points, ShownPoints& shown,
                    DrawMark drawMark) {
    const int margin = MarkSize(pen.context) * 2;
    points.ForEach([&](const GeoPoint& point) {
        const Point at = MapPoint(pen.context.app, pen.placement, point.latitude, point.longitude);
        if (!IsVisible(pen.visible, at, margin)) return;
        drawMark(point, at);
        pen.labels.Block(CircleBox(at, MarkSize(pen.context) + 1));
        shown.emplace_back(&point, at);
    });
}

// The POI and waypoint marks, then their labels where they find room, so
// that no mark covers a name.
void DrawWaypointsAndPoi(LayerPen& pen) {
    const Options& options = pen.context.app.options;
    const PointLists& lists = pen.context.app.points;
    const std::lock_guard<std::mutex> guard(lists.lock);
    const int size = MarkSize(pen.context);
    ShownPoints shown;
    if (options.showPoi) {
        DrawPointMarks(pen, lists.pois, shown, [&](const GeoPoint& point, Point at) {
            DrawSquareMark(pen.canvas, at, size - 1, CategoryColor(point.category), pen.ink.rim);
        });
    }
    if (options.showWaypoint) {
        DrawPointMarks(pen, lists.waypoints, shown, [&](const GeoPoint&, Point at) {
            DrawDiamond(pen.canvas, at, size + 1, pen.ink.waypoint, pen.ink.rim);
        });
    }
    for (const auto& [point, at] : shown) DrawLabel(pen, point->name, at, pen.ink.labelText);
}

void DrawLineToDestination(LayerPen& pen, const GeoPoint& destination) {
    const MapFollow& from = pen.context.app.mapFollow;
    if (!from.havePosition) return;
    const std::vector<std::vector<Point>> pieces =
        GreatCirclePieces(pen.context.app, pen.placement, from, destination);
    const int width = std::max(2, pen.context.layout.barHeight / 12);
    DrawPieces(pen.canvas, pieces, pen.visible, pen.ink.rim, width + 2);
    DrawPieces(pen.canvas, pieces, pen.visible, pen.ink.current, width);
    // The distance stands at the middle of the line.
    const std::vector<Point>& middlePiece = pieces[pieces.size() / 2];
    const Point middle = middlePiece[middlePiece.size() / 2];
    std::string distance;
    FormatDistance(
        pen.context.app.options.unitSystem,
        DistanceKm(from.latitude, from.longitude, destination.latitude, destination.longitude),
        &distance);
    const Font font = LabelFont(pen.context);
    Rect box = TextBoxAt(pen.canvas, distance, font, middle);
    box.left -= 3;
    box.right += 3;
    if (!pen.labels.Take(box)) return;
    pen.canvas.DrawRectangle(box, pen.ink.current, pen.ink.rim);
    pen.canvas.DrawText(distance, font, box, kAlignCenter, pen.ink.labelBack);
}

void DrawDestinations(LayerPen& pen) {
    const ViewContext& context = pen.context;
    const Navigation& navigation = context.app.navigation;
    const std::lock_guard<std::mutex> guard(navigation.lock);
    const int current = context.app.options.navigation ? navigation.current : kNoDestination;
    const int size = MarkSize(context) + 1;
    int index = 0;
    std::optional<GeoPoint> currentPoint;
    navigation.destinations.ForEach([&](const GeoPoint& point) {
        const bool isCurrent = index++ == current;
        if (isCurrent) currentPoint = point;
        const Point at = MapPoint(context.app, pen.placement, point.latitude, point.longitude);
        const Color color =
            isCurrent ? pen.ink.current : (point.reached ? pen.ink.reached : pen.ink.destination);
        if (context.app.options.showRange) {
            const double radius = MapRadius(context.app, pen.placement, point.latitude,
                                            ProximityRangeKm(point, context.app.options));
            if (radius >= kMinimumRangeRadius && radius < kCoordinateLimit) {
                pen.canvas.DrawEllipse(CircleBox(at, static_cast<int>(std::lround(radius))),
                                       kNoColor, pen.ink.range, 2);
            }
        }
        if (!IsVisible(pen.visible, at, size * 2)) return;
        DrawSquareMark(pen.canvas, at, size, color, pen.ink.rim);
        pen.labels.Block(CircleBox(at, size + 1));
        DrawLabel(pen, point.name, at, isCurrent ? pen.ink.current : pen.ink.labelText);
    });
    if (currentPoint) DrawLineToDestination(pen, *currentPoint);
}

// The current destination's name, distance and time to go, in the map's
// top left corner.
void DrawDestinationInfo(LayerPen& pen) {
    const ViewContext& context = pen.context;
    const AppState& app = context.app;
    if (!app.options.navigation || !HasLiveFix(context.app.gps)) return;
    GeoPoint destination;
    if (!CopyCurrentDestination(app.navigation, destination)) return;
    std::string distance;
    FormatDistance(app.options.unitSystem, app.gps.destinationDistanceKm, &distance);
    std::string time = "-";
    if (app.gps.destinationSeconds >= 0) {
        FormatDuration(app.gps.destinationSeconds, &time, kDurationCompact);
    }
    const Font font = LabelFont(context);
    const std::string lines[] = {"\u25B6 " + destination.name, distance, time};
    int width = 0;
    for (const std::string& line : lines) {
        width = std::max(width, pen.canvas.MeasureText(line, font).width);
    }
    const int pad = font.height / 3;
    const Rect& body = context.layout.body;
    const Rect box{body.left + pad, body.top + pad, body.left + 3 * pad + width,
                   body.top + 2 * pad + 3 * font.height};
    pen.labels.Take(box);
    pen.canvas.DrawRectangle(box, pen.ink.labelBack, pen.ink.current, 2);
    for (int line = 0; line < 3; ++line) {
        const int top = box.top + pad + line * font.height;
        pen.canvas.DrawText(lines[line], font,
                            {box.left + pad, top, box.right - pad, top + font.height},
                            kAlignVCenter, line == 0 ? pen.ink.current : pen.ink.labelText);
    }
}

// The position: an arrow along the course with a live fix, a hollow ring
// at the last known place without one.
void DrawPosition(LayerPen& pen) {
    const ViewContext& context = pen.context;
    const MapFollow& place = context.app.mapFollow;
    if (!place.havePosition) return;
    const Point at = MapPoint(context.app, pen.placement, place.latitude, place.longitude);
    const int size = std::max(7, context.layout.barHeight * 2 / 3);
    if (!HasLiveFix(context.app.gps)) {
        pen.canvas.DrawEllipse(CircleBox(at, size / 2), kNoColor, PaletteOf(context).dim, 3);
        return;
    }
    const double course = context.app.gps.course;
    const std::vector<Point> arrow{Polar(at, size, course), Polar(at, size * 0.75, course + 140),
                                   Polar(at, size * 0.3, course + 180),
                                   Polar(at, size * 0.75, course + 220)};
    pen.canvas.DrawPolygon(arrow, PaletteOf(context).accent, pen.ink.rim, 2);
}

}  // namespace

void DrawMapLayers(Canvas& canvas, const ViewContext& context, const MapPlacement& placement) {
    const Options& options = context.app.options;
    LayerPen pen{canvas,
                 context,
                 placement,
                 InkOf(context),
                 context.layout.body,
                 LabelSpace(context.layout.body)};
    if (options.showTrack) DrawTrack(pen);
    if (options.showDestinationInfo) DrawDestinationInfo(pen);
    if (options.showDestinations) DrawDestinations(pen);
    DrawWaypointsAndPoi(pen);
    DrawPosition(pen);
}

void DrawScaleBar(Canvas& canvas, const ViewContext& context, const MapPlacement& placement) {
    const Rect& body = context.layout.body;
    const ScaleBar bar = ChooseScaleBar(PixelsPerKmAtMiddle(context.app, placement, body),
                                        context.app.options.unitSystem, body.Width() / 4);
    if (bar.pixels <= 0) return;
    const Font font{std::max(8, context.layout.barHeight / 2), 600};
    const TextSize size = canvas.MeasureText(bar.text, font);
    const int pad = font.height / 3;
    const int width = std::max(bar.pixels, size.width);
    const Rect box{body.left + pad, body.bottom - size.height - 2 * font.height / 3 - 3 * pad,
                   body.left + width + 3 * pad, body.bottom - pad};
    const Palette& palette = PaletteOf(context);
    canvas.DrawRectangle(box, palette.panel, palette.panelEdge);
    canvas.DrawText(bar.text, font,
                    {box.left + pad, box.top + pad / 2, box.right - pad,
                     box.top + pad / 2 + size.height},
                    kAlignLeft | kAlignTop, palette.label);
    // The bar with a tick at either end, under its length.
    const int y = box.bottom - pad - 1;
    const int tick = font.height / 3;
    const Point left{box.left + pad, y};
    const Point right{box.left + pad + bar.pixels, y};
    // The bar in the figures' ink, which stands out by night as by day.
    canvas.DrawLine(left, right, palette.value, 2);
    canvas.DrawLine(left, {left.x, y - tick}, palette.value, 2);
    canvas.DrawLine(right, {right.x, y - tick}, palette.value, 2);
}

}  // namespace tolvane
