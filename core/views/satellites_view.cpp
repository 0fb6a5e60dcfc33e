#include "core/views/satellites_view.h"

#include <algorithm>
#include <cmath>

#include "core/base/print_format.h"
#include "core/base/string_manager.h"

namespace tolvane {
namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr std::uint32_t kTitleLabel = 10405;
constexpr Color kUntracked = 0xFFFFFF;
constexpr Color kTrackedNumber = 0xFFFFFF;
// The number on an untracked (white) disc is black in both palettes: the
// night's white text would vanish on it.
constexpr Color kUntrackedNumber = 0x000000;

struct SkyColors {
    Color horizon;
    Color ring30;
    Color ring60;
    Color title;
};

SkyColors SkyColorsFor(bool night) {
    if (night) return {0x000000, 0x2C2C2C, 0x585858, 0xFAFBFD};
    return {0xFFFFFF, 0xF4F4F4, 0xE3E3E3, 0x646567};
}

struct SnrBand {
    int upper;
    Color color;
};

// The bands of the legend, in 0xRRGGBB.
constexpr SnrBand kSnrBands[] = {
    {10, 0xFF0000}, {20, 0xFF9900}, {30, 0xFFFF00}, {40, 0x66CC00}, {50, 0x00CCCC}, {99, 0x0066FF},
};
// Above 99 no band applies; violet carries the scale on past the blue of
// the strongest band.
constexpr Color kSnrAboveScale = 0x9933FF;

Rect Square(Point centre, int radius) {
    return {centre.x - radius, centre.y - radius, centre.x + radius, centre.y + radius};
}

void PaintBackground(Canvas& canvas, const SkyPlot& plot, const SkyColors& colors,
                     const Palette& palette) {
    canvas.DrawEllipse(Square(plot.centre, plot.radius), colors.horizon, palette.label);
    canvas.DrawEllipse(Square(plot.centre, plot.ring30), colors.ring30, kNoColor);
    canvas.DrawEllipse(Square(plot.centre, plot.ring60), colors.ring60, kNoColor);
    const Point c = plot.centre;
    canvas.DrawLine({c.x - plot.radius, c.y}, {c.x + plot.radius, c.y}, palette.label);
    canvas.DrawLine({c.x, c.y - plot.radius}, {c.x, c.y + plot.radius}, palette.label);
}

void PaintDirections(Canvas& canvas, const SkyPlot& plot, const Font& font, Color color) {
    const Point c = plot.centre;
    const int r = plot.radius + 2;
    // Each label's box is sized by its text, then set outside the horizon:
    // the offsets are in halves of the text's width and height.
    struct Label {
        const char* text;
        Point anchor;
        int halfWidths;
        int halfHeights;
    };
    const Label labels[] = {
        {"N", {c.x, c.y - r}, -1, -2},
        {"E", {c.x + r, c.y}, 0, -1},
        {"S", {c.x, c.y + r}, -1, 0},
        {"W", {c.x - r, c.y}, -2, -1},
    };
    for (const Label& label : labels) {
        const TextSize size = canvas.MeasureText(label.text, font);
        const int left = label.anchor.x + label.halfWidths * size.width / 2;
        const int top = label.anchor.y + label.halfHeights * size.height / 2;
        canvas.DrawText(label.text, font, {left, top, left + size.width, top + size.height},
                        kAlignCenter, color);
    }
}

// Draws the digits of an elevation label one after the other, standing on
// the horizontal line and ending just inside the ring at radius.
void PaintElevationLabel(Canvas& canvas, const SkyPlot& plot, const char* digits, int radius,
                         const Font& font, Color color) {
    const int lineY = plot.centre.y;
    int x = plot.centre.x + radius - 2 - canvas.MeasureText(digits, font).width;
    for (const char* digit = digits; *digit; ++digit) {
        const std::string text(1, *digit);
        const TextSize size = canvas.MeasureText(text, font);
        canvas.DrawText(text, font, {x, lineY - size.height, x + size.width, lineY}, kAlignCenter,
                        color);
        x += size.width;
    }
}

void PaintElevations(Canvas& canvas, const SkyPlot& plot, const Font& font, Color color) {
    PaintElevationLabel(canvas, plot, "0", plot.radius, font, color);
    PaintElevationLabel(canvas, plot, "30", plot.ring30, font, color);
    PaintElevationLabel(canvas, plot, "60", plot.ring60, font, color);
    // The zenith's label stands just right of the centre.
    PaintElevationLabel(canvas, plot, "90", canvas.MeasureText("90", font).width + 4, font, color);
}

// The legend: "SNR", "0", then a colour box and the upper bound of each
// band, centred along the bottom of box.
void PaintLegend(Canvas& canvas, const Rect& box, const Font& font, Color textColor,
                 Color boxEdge) {
    const int gap = std::max(2, font.height / 3);
    const int swatch = font.height;
    int width = canvas.MeasureText("SNR", font).width + gap + canvas.MeasureText("0", font).width;
    for (const SnrBand& band : kSnrBands) {
        width += gap + swatch + gap + canvas.MeasureText(std::to_string(band.upper), font).width;
    }
    int x = box.left + (box.Width() - width) / 2;
    const auto text = [&](const std::string& label) {
        const int w = canvas.MeasureText(label, font).width;
        canvas.DrawText(label, font, {x, box.top, x + w, box.bottom}, kAlignCenter, textColor);
        x += w;
    };
    text("SNR");
    x += gap;
    text("0");
    const int swatchTop = box.top + (box.Height() - swatch) / 2;
    for (const SnrBand& band : kSnrBands) {
        x += gap;
        canvas.DrawRectangle({x, swatchTop, x + swatch, swatchTop + swatch}, band.color, boxEdge);
        x += swatch + gap;
        text(std::to_string(band.upper));
    }
}

void PaintSatellites(Canvas& canvas, const SkyPlot& plot, const GpsState& gps, const Font& font,
                     const Palette& palette) {
    const TextSize box = canvas.MeasureText("09", font);
    const int radius = static_cast<int>(std::hypot(box.width, box.height) / 2.0 + 0.5);
    const int count = std::clamp(gps.satellitesInView, 0, kMaxSatellites);
    for (int i = 0; i < count; ++i) {
        const Point at = SkyPosition(plot, gps.satElevation[i], gps.satAzimuth[i]);
        const bool tracked = gps.satSnr[i] > 0;
        const Rect disc = Square(at, radius);
        canvas.DrawEllipse(disc, SnrColor(gps.satSnr[i]), tracked ? kNoColor : palette.line);
        canvas.DrawText(std::to_string(gps.satPrn[i]), font, disc, kAlignCenter,
                        tracked ? kTrackedNumber : kUntrackedNumber);
    }
}

}  // namespace

SkyPlot MakeSkyPlot(Point centre, int radius, int barHeight) {
    return {centre, radius,
            static_cast<int>(radius * std::cos(30.0 * kRadiansPerDegree) - barHeight / 10),
            static_cast<int>(radius * std::cos(60.0 * kRadiansPerDegree) - barHeight / 5)};
}

Point SkyPosition(const SkyPlot& plot, double elevation, double azimuth) {
    const double rho = plot.radius * std::cos(elevation * kRadiansPerDegree);
    const double a = azimuth * kRadiansPerDegree;
    return {plot.centre.x + static_cast<int>(std::sin(a) * rho),
            plot.centre.y - static_cast<int>(std::cos(a) * rho)};
}

Color SnrColor(int snr) {
    if (snr <= 0) return kUntracked;
    for (const SnrBand& band : kSnrBands) {
        if (snr <= band.upper) return band.color;
    }
    return kSnrAboveScale;
}

void PaintSatellitesView(Canvas& canvas, const ViewContext& context) {
    const bool night = context.app.options.nightView != 0;
    const Palette& palette = PaletteOf(context);
    const SkyColors colors = SkyColorsFor(night);
    const Rect view = context.layout.view;
    const GpsState& gps = context.app.gps;
    const Font& directionFont = context.fonts.Slot(kSkyDirectionFontSlot);
    const Font& legendFont = context.fonts.Slot(kSkyLegendFontSlot);
    canvas.DrawRectangle(view, palette.background, kNoColor);

    const int pad = std::max(2, context.layout.barHeight / 4);
    const std::string title = PrintFormat("%s %d/%d", LanguageText(kTitleLabel).c_str(),
                                          gps.satellitesUsed, gps.satellitesInView);
    const int titleHeight = canvas.MeasureText(title, directionFont).height;
    canvas.DrawText(title, directionFont,
                    {view.left, view.top + pad, view.right, view.top + pad + titleHeight},
                    kAlignHCenter | kAlignTop, colors.title);
    const int legendHeight = canvas.MeasureText("SNR", legendFont).height;
    const Rect legend{view.left, view.bottom - pad - legendHeight, view.right, view.bottom - pad};
    PaintLegend(canvas, legend, legendFont, palette.text, palette.label);

    // The plot fills what is left, with room for the direction labels.
    const TextSize letter = canvas.MeasureText("W", directionFont);
    const Rect area{view.left + pad, view.top + 2 * pad + titleHeight, view.right - pad,
                    legend.top - pad};
    const int radius = std::max(
        1, std::min(area.Width() - 2 * letter.width, area.Height() - 2 * letter.height) / 2 - 2);
    const SkyPlot plot = MakeSkyPlot({(area.left + area.right) / 2, (area.top + area.bottom) / 2},
                                     radius, context.layout.barHeight);
    PaintBackground(canvas, plot, colors, palette);
    PaintDirections(canvas, plot, directionFont, palette.text);
    PaintElevations(canvas, plot, context.fonts.Slot(kSkyElevationFontSlot), palette.text);
    PaintSatellites(canvas, plot, gps, legendFont, palette);
}

}  // namespace tolvane
