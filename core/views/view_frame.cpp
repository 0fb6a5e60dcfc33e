#include "core/views/view_frame.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "core/base/csv_text.h"
#include "core/base/string_manager.h"
#include "core/geo/formatting.h"
#include "core/views/view_context.h"

namespace tolvane {
namespace {

constexpr int kTitleFontSlot = 4;
constexpr int kMarkFontSlot = 0;
constexpr char kNoPosition[] = "--";
constexpr std::uint32_t kTextGpsOff = 14600;
constexpr std::uint32_t kTextNoGps = 14601;
constexpr std::uint32_t kTextNoFix = 14602;
constexpr std::uint32_t kTextAlarm = 14603;

// A status mark of the title bar: a short word in a box, filled when the
// state it names is active, outlined when it is only selected.
struct StatusMark {
    std::string text;
    Color color;
    bool filled;
};

StatusMark GpsMark(const ViewContext& context, const Palette& palette) {
    const GpsState& gps = context.app.gps;
    if (!context.app.gpsRunning) return {LanguageText(kTextGpsOff), palette.dim, false};
    if (!gps.connected) return {LanguageText(kTextNoGps), palette.warning, false};
    // Blinks with the state's own no-fix flag, once a second.
    if (!gps.fixValid) return {LanguageText(kTextNoFix), palette.warning, gps.noFixBlink != 0};
    return {gps.fixType >= 3.0 ? "3D" : "2D", palette.good, true};
}

std::vector<StatusMark> StatusMarks(const ViewContext& context, const Palette& palette) {
    const AppState& app = context.app;
    std::vector<StatusMark> marks{GpsMark(context, palette)};
    if (app.options.trackLoggerEnabled) marks.push_back({"LOG", palette.titleText, false});
    if (app.options.navigation) marks.push_back({"NAV", palette.titleText, false});
    if (app.alarm.sounding) {
        marks.push_back({LanguageText(kTextAlarm), palette.alarm, true});
    } else if (app.options.speedAlarmIndex >= 0) {
        marks.push_back({"ALM", palette.titleText, false});
    }
    return marks;
}

int MarkPad(const Rect& bar) {
    return std::max(2, bar.Height() / 6);
}

// The marks' boxes in the marks' order, set from the right edge leftwards.
std::vector<Rect> StatusMarkBoxes(Canvas& canvas, const ViewContext& context,
                                  const std::vector<StatusMark>& marks) {
    const Rect bar = context.layout.titleBar;
    const Font font = context.fonts.Slot(kMarkFontSlot);
    const int pad = MarkPad(bar);
    std::vector<Rect> boxes(marks.size());
    int right = bar.right - pad;
    for (std::size_t i = marks.size(); i-- > 0;) {
        const int width = canvas.MeasureText(marks[i].text, font).width + 2 * pad;
        boxes[i] = {right - width, bar.top + pad, right, bar.bottom - pad};
        right = boxes[i].left - pad;
    }
    return boxes;
}

// Draws the marks from the right edge leftwards; returns where they begin.
int PaintStatusMarks(Canvas& canvas, const ViewContext& context, const Palette& palette) {
    const Font font = context.fonts.Slot(kMarkFontSlot);
    const std::vector<StatusMark> marks = StatusMarks(context, palette);
    const std::vector<Rect> boxes = StatusMarkBoxes(canvas, context, marks);
    for (std::size_t i = marks.size(); i-- > 0;) {
        canvas.DrawRectangle(boxes[i], marks[i].filled ? marks[i].color : kNoColor,
                             marks[i].color);
        canvas.DrawText(marks[i].text, font, boxes[i], kAlignCenter,
                        marks[i].filled ? palette.titleBackground : marks[i].color);
    }
    return boxes.front().left - MarkPad(context.layout.titleBar);
}

// The text that names each view: its menu command's, or the Map menu's for
// the Map view, which has no menu item of its own.
constexpr std::uint32_t kViewNames[] = {40048, 40012, 40015, 40014, 40020, 10660, 40262};

// The view's name; the World Map adds the time in UTC, the clock its day
// and night line follows.
std::string TitleText(const ViewContext& context) {
    const int view = context.app.currentView;
    std::string title = ViewTitle(view);
    if (view != kViewWorldMap || context.nowUtc <= 0) return title;
    const CivilTime utc = FileTimeToCivil(context.nowUtc);
    char clock[16];
    std::snprintf(clock, sizeof clock, "  %02d:%02d UTC", utc.hour, utc.minute);
    return title + clock;
}

}  // namespace

ViewLayout LayOutViews(int width, int height, bool largeLayout, bool fullScreen,
                       const FontSet& fonts) {
    ViewLayout layout;
    layout.large = largeLayout;
    layout.barHeight = std::max(12, std::min(fonts.BaseHeight() * 8 / 5, width / 15));
    layout.client = {0, 0, width, height};
    const int titleHeight = fullScreen ? 0 : layout.barHeight;
    layout.titleBar = {0, 0, width, titleHeight};
    layout.view = {0, titleHeight, width, height};
    layout.strip = {0, height - layout.barHeight, width, height};
    layout.body = {0, titleHeight, width, layout.strip.top};
    return layout;
}

const Palette& PaletteFor(bool night) {
    static constexpr Palette kDay{
        .background = 0xFFFFFF,
        .text = 0x000000,
        .value = 0x111820,
        .label = 0x55606E,
        .dim = 0xA3A8AF,
        .line = 0x000000,
        .panel = 0xF0F2F5,
        .panelEdge = 0xC9CED6,
        .accent = 0x1565C0,
        .alarm = 0xD32F2F,
        .good = 0x2E7D32,
        .warning = 0xE08A00,
        .sun = 0xF2A900,
        .titleBackground = 0x1F2A38,
        .titleText = 0xFFFFFF,
        .stripBackground = 0x000000,
        .stripText = 0xFFFFFF,
    };
    static constexpr Palette kNight{
        .background = 0x000000,
        .text = 0xFFFFFF,
        .value = 0xE39B3A,
        .label = 0x98683A,
        .dim = 0x4E4640,
        .line = 0x6A4A30,
        .panel = 0x120C08,
        .panelEdge = 0x3A2618,
        .accent = 0xD0502A,
        .alarm = 0xE0301E,
        .good = 0x6E9440,
        .warning = 0xB87A20,
        .sun = 0xC8902A,
        .titleBackground = 0x140A06,
        .titleText = 0xCF9148,
        .stripBackground = 0x000000,
        .stripText = 0xCF9148,
    };
    return night ? kNight : kDay;
}

const Palette& PaletteOf(const ViewContext& context) {
    return PaletteFor(context.app.options.nightView != 0);
}

std::string ViewTitle(int view) {
    if (view < 0 || view >= static_cast<int>(std::size(kViewNames))) return {};
    const std::string text = LanguageText(kViewNames[view]);
    return text.substr(0, text.find('\t'));
}

Rect GpsMarkBox(Canvas& canvas, const ViewContext& context) {
    if (context.layout.titleBar.Height() <= 0) return {};
    return StatusMarkBoxes(canvas, context, StatusMarks(context, PaletteOf(context))).front();
}

void PaintTitleBar(Canvas& canvas, const ViewContext& context) {
    const Rect bar = context.layout.titleBar;
    if (bar.Height() <= 0) return;
    const Palette& palette = PaletteOf(context);
    canvas.DrawRectangle(bar, palette.titleBackground, kNoColor);
    const int marksLeft = PaintStatusMarks(canvas, context, palette);
    const int pad = bar.Height() / 3;
    canvas.DrawText(TitleText(context), context.fonts.Slot(kTitleFontSlot),
                    {bar.left + pad, bar.top, marksLeft, bar.bottom}, kAlignVCenter,
                    palette.titleText);
}

namespace {

// The strip's two halves with their texts and the separator between.
void PaintStrip(Canvas& canvas, const ViewContext& context, const std::string& westText,
                const std::string& eastText, Color color) {
    const Rect strip = context.layout.strip;
    const Palette& palette = PaletteOf(context);
    const Font font{14 * strip.Height() / 15 - 1, 400};
    const int middle = (strip.left + strip.right) / 2;
    canvas.DrawRectangle(strip, palette.stripBackground, kNoColor);
    const Rect west{strip.left, strip.top, middle, strip.bottom};
    const Rect east{middle, strip.top, strip.right, strip.bottom};
    canvas.DrawText(westText, font, west, kAlignCenter, color);
    canvas.DrawText(eastText, font, east, kAlignCenter, color);
    canvas.DrawLine({middle, strip.top}, {middle, strip.bottom - 1}, palette.stripText);
}

}  // namespace

void PaintCoordinateStrip(Canvas& canvas, const ViewContext& context) {
    if (!HasLiveFix(context.app.gps)) {
        return PaintStrip(canvas, context, kNoPosition, kNoPosition, PaletteOf(context).dim);
    }
    const GpsState& gps = context.app.gps;
    const int format = context.app.options.coordinateFormat;
    std::string latitude;
    std::string longitude;
    FormatLatitude(format, HemisphereStyle::kHemisphereLast, gps.latitude, &latitude);
    FormatLongitude(format, HemisphereStyle::kHemisphereLast, gps.longitude, &longitude);
    PaintStrip(canvas, context, latitude, longitude, PaletteOf(context).stripText);
}

void PaintPixelStrip(Canvas& canvas, const ViewContext& context, double x, double y, int width,
                     int height) {
    const double shownX = std::clamp(x, 0.0, static_cast<double>(width));
    const double shownY = std::clamp(y, 0.0, static_cast<double>(height));
    PaintStrip(canvas, context, FormatText("X : %0.4f", shownX), FormatText("Y : %0.4f", shownY),
               PaletteOf(context).stripText);
}

Font FitFont(Canvas& canvas, const std::string& text, int maxWidth, int maxHeight, int weight) {
    Font font{std::max(1, maxHeight), weight};
    const int width = canvas.MeasureText(text, font).width;
    if (width > maxWidth && width > 0) {
        font.height = std::max(1, font.height * maxWidth / width);
    }
    return font;
}

}  // namespace tolvane
