#pragma once

#include <string>
#include <vector>

#include "core/views/canvas.h"
#include "core/views/font_set.h"

namespace tolvane {

// Slots of the instrument views' running text; the large figures are sized
// to their room instead.
inline constexpr int kInstrumentLabelSlot = 3;   // the base height, normal
inline constexpr int kInstrumentTextSlot = 6;    // a quarter larger, normal
inline constexpr int kInstrumentStrongSlot = 8;  // a quarter larger, bold

// Whether a view's body is wide enough to set its parts side by side
// rather than one above the other.
bool IsWideBody(const Rect& body);

// The point at radius and a direction in degrees from centre, 0 up and
// clockwise, as a compass reads.
Point Polar(Point centre, double radius, double degrees);

// An arc from one direction to another, clockwise, as a polyline of points
// no more than about 3 degrees apart.
std::vector<Point> ArcPoints(Point centre, double radius, double fromDegrees, double toDegrees);

// A triangle whose tip stands at radius tipRadius in direction degrees and
// whose base, size wide, lies further out (size > 0) or further in.
std::vector<Point> RadialTriangle(Point centre, double tipRadius, double degrees, double size);

// The box of text in font, centred on a point.
Rect TextBoxAt(Canvas& canvas, const std::string& text, const Font& font, Point centre);

// The box of a circle.
Rect CircleBox(Point centre, int radius);

// A line of text in box, in font or, where it would not fit the box's
// width, in the largest smaller size that does.
void PaintLine(Canvas& canvas, const std::string& text, const Font& font, const Rect& box,
               unsigned align, Color color);

// A figure and its unit, the unit in unitFont after it, set at the left of
// box and as large as box allows.
void PaintFigure(Canvas& canvas, const Rect& box, const std::string& value, const std::string& unit,
                 const Font& unitFont, Color valueColor, Color unitColor);

}  // namespace tolvane
