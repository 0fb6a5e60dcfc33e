#include "core/views/gps_info_view.h"

#include <algorithm>
#include <string>
#include <vector>

#include "core/base/print_format.h"
#include "core/base/string_manager.h"
#include "core/geo/formatting.h"
#include "core/geo/units.h"

namespace tolvane {
namespace {

constexpr std::uint32_t kAltitudeLabel = 10400;
constexpr std::uint32_t kSpeedLabel = 10402;
constexpr char kNoFixTime[] = "- - / - - / - -    - - : - - : - -";
constexpr std::uint32_t kSearchingText = 10410;
constexpr std::uint32_t kSatellitesHeardText = 10411;
constexpr std::uint32_t kOneSatelliteHeardText = 10412;
constexpr std::uint32_t kNoSatellitesHeardText = 10413;
constexpr std::uint32_t kFix3dText = 14610;
constexpr std::uint32_t kFix2dText = 14611;
constexpr std::uint32_t kNoFixTypeText = 14612;
constexpr char kSearchingJoin[] = " \u2014 ";

// One row of the view: up to three texts in one font, spread over the
// width, or the separator line when it has none.
struct InfoRow {
    std::vector<std::string> texts;
    Font font;
};

std::string FixTypeText(double fixType) {
    if (fixType == 3.0) return LanguageText(kFix3dText);
    if (fixType == 2.0) return LanguageText(kFix2dText);
    return LanguageText(kNoFixTypeText);
}

// The satellites heard: how many in view have a signal, and the best.
std::string HeardText(const GpsState& gps) {
    int heard = 0;
    int best = 0;
    const int count = std::clamp(gps.satellitesInView, 0, kMaxSatellites);
    for (int i = 0; i < count; ++i) {
        if (gps.satSnr[i] <= 0) continue;
        ++heard;
        best = std::max(best, gps.satSnr[i]);
    }
    if (heard == 0) return LanguageText(kNoSatellitesHeardText);
    if (heard == 1) return FillLanguageText(kOneSatelliteHeardText, {std::to_string(best)});
    return FillLanguageText(kSatellitesHeardText, {std::to_string(heard), std::to_string(best)});
}

// The searching line as rows of the dilutions' font: one where it fits the
// width, else its two texts one under the other.
std::vector<InfoRow> SearchingRows(Canvas& canvas, const ViewContext& context, int width) {
    const std::vector<std::string> texts = SearchingTexts(context.app);
    if (texts.empty()) return {};
    const Font font = context.fonts.Slot(kDilutionFontSlot);
    const std::string line = SearchingLine(context.app);
    if (canvas.MeasureText(line, font).width <= width) return {{{line}, font}};
    return {{{texts[0]}, font}, {{texts[1]}, font}};
}

std::vector<InfoRow> InfoRows(const ViewContext& context) {
    const AppState& app = context.app;
    const GpsState& gps = app.gps;
    const int format = app.options.coordinateFormat;
    std::string latitude;
    std::string longitude;
    FormatLatitude(format, HemisphereStyle::kHemisphereFirst, gps.latitude, &latitude);
    FormatLongitude(format, HemisphereStyle::kHemisphereFirst, gps.longitude, &longitude);
    const FontSet& fonts = context.fonts;
    return {
        {{latitude}, fonts.Slot(kCoordinateFontSlot)},
        {{longitude}, fonts.Slot(kCoordinateFontSlot)},
        {{AltitudeSpeedLine(app)}, fonts.Slot(kAltitudeSpeedFontSlot)},
        {{}, {}},
        {{FixTimeLine(gps, context.locale)}, fonts.Slot(kAltitudeSpeedFontSlot)},
        {{PrintFormat("hdop: %0.2f", gps.hdop), PrintFormat("vdop: %0.2f", gps.vdop),
          PrintFormat("pdop: %0.2f", gps.pdop)},
         fonts.Slot(kDilutionFontSlot)},
        {{FixTypeText(gps.fixType)}, fonts.Slot(kFixTypeFontSlot)},
    };
}

int RowHeight(Canvas& canvas, const InfoRow& row) {
    return row.texts.empty() ? 1 : canvas.MeasureText(row.texts.front(), row.font).height;
}

void PaintRow(Canvas& canvas, const InfoRow& row, const Rect& box, const Palette& palette) {
    if (row.texts.empty()) {
        canvas.DrawLine({box.left, box.top}, {box.right - 1, box.top}, palette.text);
        return;
    }
    // Texts side by side share the width in equal cells, but no wider than
    // about ten characters each, so that they stay together on a wide window.
    const int count = static_cast<int>(row.texts.size());
    const int width = std::min(box.Width(), count * 10 * row.font.height);
    const int left = box.left + (box.Width() - width) / 2;
    for (int i = 0; i < count; ++i) {
        const Rect cell{left + width * i / count, box.top, left + width * (i + 1) / count,
                        box.bottom};
        canvas.DrawText(row.texts[i], row.font, cell, kAlignHCenter | kAlignTop, palette.text);
    }
}

}  // namespace

std::string AltitudeSpeedLine(const AppState& app) {
    const int units = app.options.unitSystem;
    const char* format =
        units == kMetric ? "%s %0.2f %s   %s %0.2f %s" : "%s %0.2f %s  %s %0.2f %s";
    return PrintFormat(format, LanguageText(kAltitudeLabel).c_str(),
                       AltitudeInUnit(app.gps.altitude, units), AltitudeUnitText(units),
                       LanguageText(kSpeedLabel).c_str(), SpeedInUnit(app.gps.speedKnots, units),
                       SpeedUnitText(units));
}

std::vector<std::string> SearchingTexts(const AppState& app) {
    const FirstFix& firstFix = app.instruments.firstFix;
    if (!app.gpsRunning || !firstFix.searching) return {};
    return {FillLanguageText(kSearchingText, {MinutesSecondsText(firstFix.searchingSeconds)}),
            HeardText(app.gps)};
}

std::string SearchingLine(const AppState& app) {
    const std::vector<std::string> texts = SearchingTexts(app);
    return texts.empty() ? std::string() : texts[0] + kSearchingJoin + texts[1];
}

std::string FixTimeLine(const GpsState& gps, const LocaleFormats* locale) {
    if (!gps.connected || !gps.fixValid) return kNoFixTime;
    const CivilTime t = FileTimeToCivil(gps.fixTime);
    if (locale == nullptr) {
        return PrintFormat("%04d-%02d-%02d  %02d:%02d:%02d", t.year, t.month, t.day, t.hour,
                           t.minute, t.second);
    }
    return locale->ShortDate(t) + "  " + locale->TimeOfDay(t);
}

void PaintGpsInfoView(Canvas& canvas, const ViewContext& context) {
    const Palette& palette = PaletteOf(context);
    const Rect view = context.layout.view;
    canvas.DrawRectangle(view, palette.background, kNoColor);
    std::vector<InfoRow> rows = InfoRows(context);
    const int margin = context.layout.barHeight / 2;
    for (InfoRow& row : SearchingRows(canvas, context, view.Width() - 2 * margin)) {
        rows.push_back(std::move(row));
    }
    std::vector<int> heights;
    int total = 0;
    for (const InfoRow& row : rows) total += heights.emplace_back(RowHeight(canvas, row));
    // The rows share the free height evenly, above, between and below them.
    const int gaps = static_cast<int>(rows.size()) + 1;
    const int free = std::max(0, view.Height() - total);
    int top = view.top + free / gaps;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        // Texts keep a margin from the sides; the separator runs across.
        const int inset = rows[i].texts.empty() ? 0 : margin;
        PaintRow(canvas, rows[i], {view.left + inset, top, view.right - inset, top + heights[i]},
                 palette);
        top += heights[i] + free / gaps;
    }
}

}  // namespace tolvane
