#include "core/views/compass_view.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "core/base/device_helpers.h"
#include "core/base/print_format.h"
#include "core/base/string_manager.h"
#include "core/geo/distance.h"
#include "core/geo/formatting.h"
#include "core/geo/solar.h"
#include "core/views/instrument_parts.h"

namespace tolvane {
namespace {

constexpr char kDegree[] = "\u00B0";
constexpr char kSun[] = "\u2600 ";
constexpr std::uint32_t kTextCourseUp = 14620;
constexpr std::uint32_t kTextNorthUp = 14621;
constexpr std::uint32_t kTextLastCourse = 14622;
constexpr std::uint32_t kTextTooSlowForCourse = 14623;
constexpr std::uint32_t kTextBearing = 14624;
constexpr std::uint32_t kTextWaitingForPosition = 14625;
constexpr std::uint32_t kTextSunUpAllDay = 14626;
constexpr std::uint32_t kTextSunDownAllDay = 14627;
constexpr std::uint32_t kTextSunriseSunset = 14628;
constexpr std::uint32_t kTextNoFix = 14629;
// The sun's centre at sunrise and sunset: its upper edge on the horizon,
// lifted by refraction.
constexpr double kSunHorizonElevation = -0.833;
constexpr char kCardinals[][2] = {"N", "E", "S", "W"};

// Where the parts of the compass go: the course header, the card and the
// lines of destination and sun below (upright) or beside it (lying).
struct CompassAreas {
    Rect header;
    Rect card;
    Rect info;
};

CompassAreas CompassAreasOf(const Rect& body, int lineHeight) {
    const int pad = lineHeight / 2;
    if (IsWideBody(body)) {
        const int side = std::min(body.Height(), body.Width() * 55 / 100);
        const Rect right{body.left + side, body.top + pad, body.right - pad, body.bottom - pad};
        const int headerBottom = right.top + right.Height() * 2 / 5;
        return {{right.left, right.top, right.right, headerBottom},
                {body.left, body.top, body.left + side, body.bottom},
                {right.left, headerBottom, right.right, right.bottom}};
    }
    const int headerHeight = body.Height() * 20 / 100;
    const int infoHeight = 4 * lineHeight + pad;
    return {{body.left + pad, body.top + pad / 2, body.right - pad, body.top + headerHeight},
            {body.left, body.top + headerHeight, body.right, body.bottom - infoHeight},
            {body.left + pad, body.bottom - infoHeight, body.right - pad, body.bottom - pad}};
}

// The destination figures, when navigation is on and there is a current
// destination to steer to.
struct DestinationShown {
    GeoPoint point;
    double bearing = 0;
};

std::optional<DestinationShown> DestinationOf(const ViewContext& context) {
    const AppState& app = context.app;
    if (!app.options.navigation || !HasLiveFix(context.app.gps)) return std::nullopt;
    DestinationShown shown;
    // The navigation lock guards the list against the Go-To commands; the
    // painter takes it only to copy the current destination.
    if (!CopyCurrentDestination(app.navigation, shown.point)) {
        return std::nullopt;
    }
    shown.bearing = BearingDegrees(app.gps.latitude, app.gps.longitude, shown.point.latitude,
                                   shown.point.longitude);
    return shown;
}

struct CardStyle {
    Color ink;    // ticks and numbers
    Color north;  // the N and its tick
};

void PaintCardTicks(Canvas& canvas, Point c, int r, double rotation, const CardStyle& style) {
    for (int degrees = 0; degrees < 360; degrees += 5) {
        const double at = degrees - rotation;
        const double length =
            degrees % 30 == 0 ? r * 0.12 : (degrees % 10 == 0 ? r * 0.08 : r * 0.045);
        const int width = degrees % 30 == 0 ? std::max(2, r / 60) : 1;
        canvas.DrawLine(Polar(c, r - 1, at), Polar(c, r - 1 - length, at),
                        degrees == 0 ? style.north : style.ink, width);
    }
}

void PaintCardLabels(Canvas& canvas, Point c, int r, double rotation, const CardStyle& style) {
    const Font cardinal{std::max(8, r * 16 / 100), 700};
    const Font number{std::max(7, r * 10 / 100), 400};
    for (int degrees = 0; degrees < 360; degrees += 30) {
        const bool isCardinal = degrees % 90 == 0;
        const std::string text = isCardinal ? kCardinals[degrees / 90] : std::to_string(degrees);
        const Font& font = isCardinal ? cardinal : number;
        const Point at = Polar(c, r * (isCardinal ? 0.72 : 0.74), degrees - rotation);
        canvas.DrawText(text, font, TextBoxAt(canvas, text, font, at), kAlignCenter,
                        degrees == 0 ? style.north : style.ink);
    }
}

// The sun on the rim: filled above the horizon, hollow below it.
void PaintSunMark(Canvas& canvas, const ViewContext& context, Point c, int r, double rotation,
                  const Palette& palette) {
    const MapFollow& place = context.app.mapFollow;
    if (!place.havePosition) return;
    const SunPosition sun = SunPositionAt(context.nowUtc, place.latitude, place.longitude);
    const Rect box = CircleBox(Polar(c, r, sun.azimuth - rotation), std::max(4, r / 14));
    const bool up = sun.elevation > kSunHorizonElevation;
    canvas.DrawEllipse(box, up ? palette.sun : palette.panel, palette.sun, std::max(2, r / 80));
}

void PaintDestinationMark(Canvas& canvas, const DestinationShown& destination, Point c, int r,
                          double rotation, const Palette& palette) {
    const double at = destination.bearing - rotation;
    canvas.DrawPolygon(RadialTriangle(c, r * 0.86, at, r * 0.16), palette.good, palette.panel);
    // The name stands inside the card towards the mark, on a patch of the
    // card's face so that the numbers under it do not show through.
    const Font font{std::max(7, r / 11), 600};
    Rect box = TextBoxAt(canvas, destination.point.name, font, Polar(c, r * 0.46, at));
    box.left -= 2;
    box.right += 2;
    canvas.DrawRectangle(box, palette.panel, kNoColor);
    canvas.DrawText(destination.point.name, font, box, kAlignCenter, palette.good);
}

// The course arrow of the north-up card, or the boat of the course-up
// card, which always points up under the lubber line.
void PaintCourseArrow(Canvas& canvas, Point c, int r, double screenDegrees, Color color) {
    const std::vector<Point> arrow{
        Polar(c, r * 0.60, screenDegrees), Polar(c, r * 0.22, screenDegrees - 140),
        Polar(c, r * 0.08, screenDegrees + 180), Polar(c, r * 0.22, screenDegrees + 140)};
    canvas.DrawPolygon(arrow, color, kNoColor);
}

void PaintCard(Canvas& canvas, const ViewContext& context, const Rect& area,
               const CourseMemory& course, const std::optional<DestinationShown>& destination,
               const Palette& palette) {
    const Point c{(area.left + area.right) / 2, (area.top + area.bottom) / 2};
    // The margin leaves room for the sun's mark, which sits on the rim.
    const int side = std::min(area.Width(), area.Height());
    const int r = std::max(10, side / 2 - std::max(6, side / 16));
    const bool courseUp = context.app.compassMode == kCompassCourseUp;
    const double rotation = courseUp && course.have ? course.degrees : 0.0;
    // A card without a live course stops where it was and turns grey.
    const CardStyle style =
        course.live ? CardStyle{palette.value, palette.alarm} : CardStyle{palette.dim, palette.dim};
    canvas.DrawEllipse(CircleBox(c, r), palette.panel, palette.panelEdge, 2);
    PaintCardTicks(canvas, c, r, rotation, style);
    PaintCardLabels(canvas, c, r, rotation, style);
    PaintSunMark(canvas, context, c, r, rotation, palette);
    if (destination) PaintDestinationMark(canvas, *destination, c, r, rotation, palette);
    const Color arrowColor = course.live ? palette.accent : palette.dim;
    if (courseUp) {
        canvas.DrawPolygon(RadialTriangle(c, r + 2, 0, std::max(8, r / 8)), palette.accent,
                           kNoColor);
        if (course.have) PaintCourseArrow(canvas, c, r, 0, arrowColor);
    } else if (course.have) {
        PaintCourseArrow(canvas, c, r, course.degrees, arrowColor);
    }
    canvas.DrawEllipse(CircleBox(c, std::max(2, r / 40)), palette.value, kNoColor);
}

// A direction as three digits and the degree sign, 359.6 reading 000.
std::string DegreesText(double degrees) {
    return PrintFormat("%03.0f", std::fmod(std::round(degrees), 360.0)) + kDegree;
}

std::string AgeText(int seconds) {
    std::string age;
    FormatDuration(seconds, &age, kDurationCompact);
    return age;
}

void PaintHeader(Canvas& canvas, const ViewContext& context, const Rect& box,
                 const CourseMemory& course, const Palette& palette) {
    const Font label = context.fonts.Slot(kInstrumentLabelSlot);
    const int labelHeight = canvas.MeasureText("COG", label).height;
    const std::string mode =
        LanguageText(context.app.compassMode == kCompassCourseUp ? kTextCourseUp : kTextNorthUp);
    const Rect top{box.left, box.top, box.right, box.top + labelHeight};
    canvas.DrawText("COG", label, top, kAlignLeft | kAlignTop, palette.label);
    canvas.DrawText(mode, label, top, kAlignRight | kAlignTop, palette.label);
    const Rect figure{box.left, top.bottom, box.right, box.bottom - labelHeight};
    const std::string digits = course.live ? DegreesText(course.degrees) : "COG ---";
    const Font big = FitFont(canvas, digits, figure.Width(), figure.Height(), 700);
    canvas.DrawText(digits, big, figure, kAlignCenter, course.live ? palette.value : palette.dim);
    std::string note;
    if (!HasLiveFix(context.app.gps)) {
        note = LanguageText(kTextNoFix);
    } else if (!course.live) {
        note = course.have ? FillLanguageText(kTextLastCourse, {DegreesText(course.degrees),
                                                                AgeText(course.ageSeconds)})
                           : LanguageText(kTextTooSlowForCourse);
    }
    PaintLine(canvas, note, label, {box.left, figure.bottom, box.right, box.bottom},
              kAlignHCenter | kAlignBottom, palette.label);
}

std::string ClockText(FileTime utc) {
    const CivilTime t = FileTimeToCivil(UtcToLocal(utc));
    return PrintFormat("%02d:%02d", t.hour, t.minute);
}

// The sun's line; the short form, with arrows for rising and setting, for
// a narrow window.
std::string SunLine(const ViewContext& context, bool compact) {
    const MapFollow& place = context.app.mapFollow;
    if (!place.havePosition) return kSun + LanguageText(kTextWaitingForPosition);
    const SunTimes times = TodaysSunTimes(context.nowUtc, place.latitude, place.longitude);
    switch (times.day) {
        case SunDay::kAlwaysUp:
            return kSun + LanguageText(kTextSunUpAllDay);
        case SunDay::kAlwaysDown:
            return kSun + LanguageText(kTextSunDownAllDay);
        default:
            if (compact) {
                return std::string(kSun) + "\u2191" + ClockText(times.sunriseUtc) + " \u2193" +
                       ClockText(times.sunsetUtc);
            }
            return kSun + FillLanguageText(kTextSunriseSunset, {ClockText(times.sunriseUtc),
                                                                ClockText(times.sunsetUtc)});
    }
}

void PaintInfo(Canvas& canvas, const ViewContext& context, const Rect& box,
               const CourseMemory& course, const std::optional<DestinationShown>& destination,
               const Palette& palette) {
    const Font text = context.fonts.Slot(kInstrumentTextSlot);
    const Font strong = context.fonts.Slot(kInstrumentStrongSlot);
    const int line = canvas.MeasureText("Ag", text).height;
    int top = box.bottom - line;
    const std::string sun = SunLine(context, false);
    const bool narrow = canvas.MeasureText(sun, text).width > box.Width();
    PaintLine(canvas, narrow ? SunLine(context, true) : sun, text,
              {box.left, top, box.right, top + line}, kAlignHCenter | kAlignTop, palette.label);
    if (!destination) return;
    const GpsState& gps = context.app.gps;
    std::string distance;
    std::string togo;
    FormatDistance(context.app.options.unitSystem, gps.destinationDistanceKm, &distance);
    FormatDuration(gps.destinationSeconds, &togo, kDurationCompact);
    top -= line * 3 / 2;
    PaintLine(canvas, distance + "   " + (gps.destinationSeconds < 0 ? "--" : togo), strong,
              {box.left, top, box.right, top + line}, kAlignHCenter | kAlignTop, palette.value);
    const std::string turn =
        course.live ? TurnHint(TurnDegrees(course.degrees, destination->bearing))
                    : FillLanguageText(kTextBearing, {DegreesText(destination->bearing)});
    top -= line;
    PaintLine(canvas, "\u25C6 " + destination->point.name + "   " + turn, strong,
              {box.left, top, box.right, top + line}, kAlignHCenter | kAlignTop, palette.good);
}

}  // namespace

double TurnDegrees(double course, double bearing) {
    const double turn = std::remainder(bearing - course, 360.0);
    return turn <= -180.0 ? turn + 360.0 : turn;
}

std::string TurnHint(double turnDegrees) {
    const long whole = std::lround(std::abs(turnDegrees));
    if (whole == 0) return std::string("0") + kDegree;
    if (turnDegrees < 0) return "\u25C4 " + std::to_string(whole) + kDegree;
    return std::to_string(whole) + kDegree + " \u25BA";
}

void PaintCompassView(Canvas& canvas, const ViewContext& context) {
    const Palette& palette = PaletteOf(context);
    const Rect body = context.layout.body;
    canvas.DrawRectangle(body, palette.background, kNoColor);
    const int line = canvas.MeasureText("Ag", context.fonts.Slot(kInstrumentTextSlot)).height;
    const CompassAreas areas = CompassAreasOf(body, line);
    const CourseMemory& course = context.app.instruments.course;
    const std::optional<DestinationShown> destination = DestinationOf(context);
    PaintHeader(canvas, context, areas.header, course, palette);
    PaintCard(canvas, context, areas.card, course, destination, palette);
    PaintInfo(canvas, context, areas.info, course, destination, palette);
    PaintCoordinateStrip(canvas, context);
}

}  // namespace tolvane
