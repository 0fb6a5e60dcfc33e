#include "core/views/trip_stat_view.h"

#include <algorithm>

#include "core/base/device_helpers.h"
#include "core/base/print_format.h"
#include "core/base/string_manager.h"
#include "core/geo/formatting.h"
#include "core/geo/units.h"
#include "core/views/instrument_parts.h"

namespace tolvane {
namespace {

constexpr std::uint32_t kTextTripDistance = 14640;
constexpr std::uint32_t kTextMovingTime = 14641;
constexpr std::uint32_t kTextStoppedTime = 14642;
constexpr std::uint32_t kTextAverageSpeed = 14643;
constexpr std::uint32_t kTextMaximumSpeed = 14644;
constexpr std::uint32_t kTextAscent = 14645;
constexpr std::uint32_t kTextDescent = 14646;
constexpr std::uint32_t kTextLowest = 14647;
constexpr std::uint32_t kTextHighest = 14648;
constexpr std::uint32_t kTextConnectedTime = 14649;
constexpr std::uint32_t kTextTimeToFirstFix = 14650;

TripTile DurationTile(std::uint32_t label, int seconds) {
    std::string text;
    FormatDuration(std::max(0, seconds), &text, kDurationClock);
    return {LanguageText(label), text, ""};
}

TripTile SpeedTile(std::uint32_t label, double knots, int units) {
    return {LanguageText(label), PrintFormat("%.1f", SpeedInUnit(knots, units)),
            SpeedUnitText(units)};
}

TripTile AltitudeTile(std::uint32_t label, double metres, bool known, int units) {
    std::string name = LanguageText(label);
    if (!known) return {name, "--", AltitudeUnitText(units), false};
    return {name, PrintFormat("%.0f", AltitudeInUnit(metres, units)), AltitudeUnitText(units)};
}

// The time the receiver took to its first fix since the GPS was started,
// "--" before it had one.
TripTile FirstFixTile(const FirstFix& firstFix) {
    const std::string label = LanguageText(kTextTimeToFirstFix);
    if (firstFix.timeToFixSeconds < 0) return {label, "--", "", false};
    return {label, MinutesSecondsText(firstFix.timeToFixSeconds), ""};
}

// The distance text "12.34 km" split into its figure and its unit.
TripTile DistanceTile(double km, int units) {
    std::string text;
    FormatDistance(units, km, &text);
    const std::size_t blank = text.find(' ');
    return {LanguageText(kTextTripDistance), text.substr(0, blank),
            blank == std::string::npos ? "" : text.substr(blank + 1)};
}

void PaintTile(Canvas& canvas, const Rect& box, const TripTile& tile, const Font& labelFont,
               const Palette& palette) {
    canvas.DrawRectangle(box, palette.panel, palette.panelEdge);
    const int pad = std::max(3, box.Height() / 12);
    const int labelHeight = canvas.MeasureText(tile.label, labelFont).height;
    canvas.DrawText(tile.label, labelFont,
                    {box.left + pad, box.top + pad, box.right - pad, box.top + pad + labelHeight},
                    kAlignLeft | kAlignTop, palette.label);
    const Rect figure{box.left + pad, box.top + pad + labelHeight, box.right - pad,
                      box.bottom - pad};
    const int figureHeight = std::min(figure.Height(), labelHeight * 3);
    PaintFigure(canvas, {figure.left, figure.bottom - figureHeight, figure.right, figure.bottom},
                tile.value, tile.unit, labelFont, tile.known ? palette.value : palette.dim,
                palette.label);
}

}  // namespace

std::vector<TripTile> TripTiles(const AppState& app) {
    const TripFigures& trip = app.instruments.tripFigures;
    const TripExtras& extras = app.instruments.trip;
    const int units = app.options.unitSystem;
    const bool climbed = extras.haveAltitude;
    return {
        DistanceTile(trip.distanceKm, units),
        DurationTile(kTextMovingTime, trip.movingSeconds),
        DurationTile(kTextStoppedTime, TripStoppedSeconds(trip)),
        SpeedTile(kTextAverageSpeed, TripAverageKnots(trip), units),
        SpeedTile(kTextMaximumSpeed, trip.maxSpeedKnots, units),
        AltitudeTile(kTextAscent, extras.ascentMetres, climbed, units),
        AltitudeTile(kTextDescent, extras.descentMetres, climbed, units),
        AltitudeTile(kTextLowest, extras.lowestMetres, climbed, units),
        AltitudeTile(kTextHighest, extras.highestMetres, climbed, units),
        DurationTile(kTextConnectedTime, app.gps.connectedSeconds),
        FirstFixTile(app.instruments.firstFix),
    };
}

void PaintTripStatView(Canvas& canvas, const ViewContext& context) {
    const Palette& palette = PaletteOf(context);
    const Rect body = context.layout.body;
    canvas.DrawRectangle(body, palette.background, kNoColor);
    const std::vector<TripTile> tiles = TripTiles(context.app);
    const Font labelFont = context.fonts.Slot(kInstrumentLabelSlot);
    const int gap = std::max(4, context.layout.barHeight / 4);
    const Rect area{body.left + gap, body.top + gap, body.right - gap, body.bottom - gap};
    const int columns = area.Width() > area.Height() ? 3 : 2;
    const int smallCount = static_cast<int>(tiles.size()) - 1;
    const int rows = (smallCount + columns - 1) / columns;
    // The distance tile is twice as tall as a row of the others.
    const int rowHeight = (area.Height() - rows * gap) / (rows + 2);
    PaintTile(canvas, {area.left, area.top, area.right, area.top + 2 * rowHeight}, tiles[0],
              context.fonts.Slot(kInstrumentStrongSlot), palette);
    const int columnWidth = (area.Width() - (columns - 1) * gap) / columns;
    for (int i = 0; i < smallCount; ++i) {
        const int row = i / columns;
        const int column = i % columns;
        // The last tile of a short row takes the rest of the row.
        const bool last = i == smallCount - 1;
        const int top = area.top + 2 * rowHeight + gap + row * (rowHeight + gap);
        const int left = area.left + column * (columnWidth + gap);
        const int right = last ? area.right : left + columnWidth;
        PaintTile(canvas, {left, top, right, top + rowHeight}, tiles[i + 1], labelFont, palette);
    }
    PaintCoordinateStrip(canvas, context);
}

}  // namespace tolvane
