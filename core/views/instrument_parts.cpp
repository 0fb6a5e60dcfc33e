#include "core/views/instrument_parts.h"

#include <algorithm>
#include <cmath>

#include "core/placement/map_placement.h"
#include "core/views/view_frame.h"

namespace tolvane {
namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr double kArcStepDegrees = 3.0;

}  // namespace

bool IsWideBody(const Rect& body) {
    return body.Width() * 20 > body.Height() * 23;
}

Point Polar(Point centre, double radius, double degrees) {
    const double a = degrees * kRadiansPerDegree;
    return {centre.x + ClampCoordinate(std::sin(a) * radius),
            centre.y - ClampCoordinate(std::cos(a) * radius)};
}

std::vector<Point> ArcPoints(Point centre, double radius, double fromDegrees, double toDegrees) {
    const int steps =
        std::max(1, static_cast<int>(std::ceil((toDegrees - fromDegrees) / kArcStepDegrees)));
    std::vector<Point> points;
    points.reserve(steps + 1);
    for (int i = 0; i <= steps; ++i) {
        points.push_back(
            Polar(centre, radius, fromDegrees + (toDegrees - fromDegrees) * i / steps));
    }
    return points;
}

std::vector<Point> RadialTriangle(Point centre, double tipRadius, double degrees, double size) {
    // Half the base's width as an angle at the base's radius.
    const double baseRadius = tipRadius + size;
    const double halfAngle = std::atan2(size / 2, std::abs(baseRadius)) / kRadiansPerDegree;
    return {Polar(centre, tipRadius, degrees), Polar(centre, baseRadius, degrees - halfAngle),
            Polar(centre, baseRadius, degrees + halfAngle)};
}

Rect TextBoxAt(Canvas& canvas, const std::string& text, const Font& font, Point centre) {
    const TextSize size = canvas.MeasureText(text, font);
    return {centre.x - size.width / 2, centre.y - size.height / 2,
            centre.x + (size.width + 1) / 2 + 1, centre.y + (size.height + 1) / 2 + 1};
}

Rect CircleBox(Point centre, int radius) {
    return {centre.x - radius, centre.y - radius, centre.x + radius, centre.y + radius};
}

void PaintLine(Canvas& canvas, const std::string& text, const Font& font, const Rect& box,
               unsigned align, Color color) {
    canvas.DrawText(text, FitFont(canvas, text, box.Width(), font.height, font.weight), box, align,
                    color);
}

void PaintFigure(Canvas& canvas, const Rect& box, const std::string& value, const std::string& unit,
                 const Font& unitFont, Color valueColor, Color unitColor) {
    const int unitWidth = unit.empty() ? 0 : canvas.MeasureText(" " + unit, unitFont).width;
    const Font valueFont = FitFont(canvas, value, box.Width() - unitWidth, box.Height(), 700);
    const int valueWidth = canvas.MeasureText(value, valueFont).width;
    canvas.DrawText(value, valueFont, {box.left, box.top, box.left + valueWidth, box.bottom},
                    kAlignLeft | kAlignBottom, valueColor);
    if (unit.empty()) return;
    // The unit stands on the figure's baseline, near enough: both are set
    // to the bottom of the box, the smaller font with a little less descent.
    canvas.DrawText(" " + unit, unitFont,
                    {box.left + valueWidth, box.top, box.left + valueWidth + unitWidth,
                     box.bottom - (valueFont.height - unitFont.height) / 5},
                    kAlignLeft | kAlignBottom, unitColor);
}

}  // namespace tolvane
