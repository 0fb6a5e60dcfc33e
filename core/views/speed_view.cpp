#include "core/views/speed_view.h"

#include <algorithm>

#include "core/base/print_format.h"
#include "core/base/string_manager.h"
#include "core/geo/formatting.h"
#include "core/geo/units.h"
#include "core/views/instrument_parts.h"

namespace tolvane {
namespace {

constexpr double kStandingStillKmh = 0.5;
constexpr std::uint32_t kTextAlarmOff = 14630;
constexpr std::uint32_t kTextAlarmLimit = 14631;
constexpr std::uint32_t kTextMaximum = 14632;
constexpr std::uint32_t kTextAverage = 14633;
constexpr double kDialStart = -kDialSweepDegrees / 2;

struct Dial {
    Point centre;
    int radius = 0;
    int fullScale = 0;
};

void PaintDialScale(Canvas& canvas, const Dial& dial, const Palette& palette) {
    const int r = dial.radius;
    const int labelStep = DialLabelStep(dial.fullScale);
    const Font font{std::max(7, r * 15 / 100), 400};
    canvas.DrawPolyline(ArcPoints(dial.centre, r, kDialStart, -kDialStart), palette.panelEdge,
                        std::max(2, r / 50));
    // Ticks at a fifth of the labelled step, the labelled ones longer.
    const int minor = std::max(1, labelStep / 5);
    for (int value = 0; value <= dial.fullScale; value += minor) {
        const bool labelled = value % labelStep == 0;
        const double at = DialAngle(value, dial.fullScale);
        const double length = labelled ? r * 0.14 : r * 0.07;
        canvas.DrawLine(Polar(dial.centre, r, at), Polar(dial.centre, r - length, at),
                        labelled ? palette.value : palette.label,
                        labelled ? std::max(2, r / 45) : 1);
        if (!labelled) continue;
        const std::string text = std::to_string(value);
        canvas.DrawText(text, font, TextBoxAt(canvas, text, font, Polar(dial.centre, r * 0.70, at)),
                        kAlignCenter, palette.label);
    }
}

// The band from the alarm limit to the end of the scale.
void PaintAlarmBand(Canvas& canvas, const Dial& dial, double limit, const Palette& palette) {
    if (limit <= 0 || limit >= dial.fullScale) return;
    const int width = std::max(3, dial.radius / 12);
    canvas.DrawPolyline(ArcPoints(dial.centre, dial.radius + width / 2 + 2,
                                  DialAngle(limit, dial.fullScale), -kDialStart),
                        palette.alarm, width);
}

// The trip's maximum (filled) and average (hollow) outside the arc.
void PaintTripMarks(Canvas& canvas, const Dial& dial, const ViewContext& context,
                    const Palette& palette) {
    const TripFigures& trip = context.app.instruments.tripFigures;
    const int units = context.app.options.unitSystem;
    const double size = std::max(6, dial.radius / 9);
    // Outside the alarm band, which lies just outside the arc.
    const double tip = dial.radius + std::max(3, dial.radius / 12) + 5;
    const double average = SpeedInUnit(TripAverageKnots(trip), units);
    canvas.DrawPolygon(RadialTriangle(dial.centre, tip, DialAngle(average, dial.fullScale), size),
                       palette.background, palette.accent, 2);
    const double maximum = SpeedInUnit(trip.maxSpeedKnots, units);
    canvas.DrawPolygon(RadialTriangle(dial.centre, tip, DialAngle(maximum, dial.fullScale), size),
                       palette.value, kNoColor);
}

void PaintNeedle(Canvas& canvas, const Dial& dial, double speed, Color color) {
    const double at = DialAngle(speed, dial.fullScale);
    const double r = dial.radius;
    canvas.DrawPolygon(
        {Polar(dial.centre, r * 0.92, at), Polar(dial.centre, r * 0.05, at + 90),
         Polar(dial.centre, r * 0.12, at + 180), Polar(dial.centre, r * 0.05, at - 90)},
        color, kNoColor);
    canvas.DrawEllipse(CircleBox(dial.centre, std::max(3, dial.radius / 14)), color, kNoColor);
}

// Where the parts of the view go: the digits in the upper 45 % with the
// unit under them, the dial below and two lines at the foot; on a wide
// window the digits stand left and the dial right.
struct SpeedAreas {
    Rect digits;
    Rect unit;
    Rect dial;
    Rect footer;
};

// The room of the digits: 45 % of the view's height, across the view or
// across the left 55 % of a wide one.
Rect DigitsRoom(const Rect& body, int line) {
    const int right =
        IsWideBody(body) ? body.left + body.Width() * 55 / 100 : body.right - line / 2;
    return {body.left + line / 2, body.top, right, body.top + body.Height() * 45 / 100};
}

// The digits take digitsHeight, no more than their room, so that the unit
// sits right under them and the dial has what they leave.
SpeedAreas SpeedAreasOf(const Rect& body, int line, int digitsHeight) {
    const int pad = line / 2;
    if (IsWideBody(body)) {
        const int split = body.left + body.Width() * 55 / 100;
        const int top = body.top + (body.Height() - digitsHeight - line) / 2;
        return {{body.left + pad, top, split, top + digitsHeight},
                {body.left, top + digitsHeight, split, top + digitsHeight + line},
                {split, body.top + pad, body.right - pad, body.bottom - 2 * line - 2 * pad},
                {split, body.bottom - 2 * line - pad, body.right - pad, body.bottom - pad}};
    }
    const Rect digits{body.left + pad, body.top, body.right - pad, body.top + digitsHeight};
    const Rect unit{body.left, digits.bottom, body.right, digits.bottom + line};
    const Rect footer{body.left, body.bottom - 2 * line - pad, body.right, body.bottom - pad};
    return {digits,
            unit,
            {body.left + pad, unit.bottom + pad, body.right - pad, footer.top - pad},
            footer};
}

// The largest dial that fits area: the marks stand a little over a
// tenth of the radius above the arc, and the arc's ends half a radius
// below its centre.
Dial DialIn(const Rect& area, int fullScale) {
    const int radius = std::max(10, std::min(area.Width() * 45 / 100, area.Height() * 100 / 175));
    const int top = area.top + (area.Height() - radius * 175 / 100) / 2;
    return {{(area.left + area.right) / 2, top + radius * 118 / 100}, radius, fullScale};
}

std::string AlarmLine(const Options& options) {
    const double limit = SelectedAlarmLimit(options);
    if (limit <= 0) return LanguageText(kTextAlarmOff);
    return FillLanguageText(kTextAlarmLimit, {std::to_string(static_cast<int>(limit)),
                                              SpeedUnitText(options.unitSystem)});
}

std::string MarksLine(const TripFigures& trip, int units) {
    return PrintFormat("\u25B2 %s %.1f   \u25B3 %s %.1f %s", LanguageText(kTextMaximum).c_str(),
                       SpeedInUnit(trip.maxSpeedKnots, units), LanguageText(kTextAverage).c_str(),
                       SpeedInUnit(TripAverageKnots(trip), units), SpeedUnitText(units));
}

}  // namespace

double DialAngle(double speed, int fullScale) {
    const double fraction = fullScale > 0 ? std::clamp(speed / fullScale, 0.0, 1.0) : 0.0;
    return kDialStart + kDialSweepDegrees * fraction;
}

int DialLabelStep(int fullScale) {
    for (const int step : {1, 2, 5, 10, 20, 50, 100}) {
        if (fullScale / step <= 8) return step;
    }
    return fullScale / 4;
}

std::string SpeedDigits(const GpsState& gps, int unitSystem) {
    if (SpeedInUnit(gps.speedKnots, kMetric) < kStandingStillKmh) return "0.0";
    return PrintFormat("%.1f", SpeedInUnit(gps.speedKnots, unitSystem));
}

void PaintSpeedView(Canvas& canvas, const ViewContext& context) {
    const Palette& palette = PaletteOf(context);
    const AppState& app = context.app;
    const int units = app.options.unitSystem;
    const Rect body = context.layout.body;
    canvas.DrawRectangle(body, palette.background, kNoColor);
    const bool live = HasLiveFix(context.app.gps);
    const Font text = context.fonts.Slot(kInstrumentTextSlot);
    const Font strong = context.fonts.Slot(kInstrumentStrongSlot);
    const int line = canvas.MeasureText("Ag", text).height;
    // The digits are as large as their room allows for the widest speed of
    // the scale, so they keep their size while the speed changes.
    const int fullScale = std::max(1, app.instruments.speedScale.fullScale);
    const char* widest = fullScale >= 100 ? "888.8" : "88.8";
    const Rect room = DigitsRoom(body, line);
    const Font digitsFont = FitFont(canvas, widest, room.Width(), room.Height(), 700);
    const SpeedAreas areas = SpeedAreasOf(
        body, line, std::min(room.Height(), canvas.MeasureText(widest, digitsFont).height));
    const Color digitsColor =
        !live ? palette.dim : (app.alarm.sounding ? palette.alarm : palette.value);
    canvas.DrawText(live ? SpeedDigits(app.gps, units) : "--", digitsFont, areas.digits,
                    kAlignCenter, digitsColor);
    canvas.DrawText(SpeedUnitText(units), strong, areas.unit, kAlignCenter, palette.label);

    const Dial dial = DialIn(areas.dial, fullScale);
    PaintAlarmBand(canvas, dial, SelectedAlarmLimit(app.options), palette);
    PaintDialScale(canvas, dial, palette);
    PaintTripMarks(canvas, dial, context, palette);
    if (live) {
        PaintNeedle(canvas, dial, SpeedInUnit(app.gps.speedKnots, units),
                    app.alarm.sounding ? palette.alarm : palette.accent);
    }
    const Rect footer = areas.footer;
    PaintLine(canvas, MarksLine(app.instruments.tripFigures, units), text,
              {footer.left, footer.top, footer.right, footer.top + line}, kAlignCenter,
              palette.label);
    PaintLine(canvas, AlarmLine(app.options), strong,
              {footer.left, footer.bottom - line, footer.right, footer.bottom}, kAlignCenter,
              app.options.speedAlarmIndex >= 0 ? palette.alarm : palette.label);
    PaintCoordinateStrip(canvas, context);
}

}  // namespace tolvane
