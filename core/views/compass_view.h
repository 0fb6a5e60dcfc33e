#pragma once

#include <string>

#include "core/views/canvas.h"
#include "core/views/view_context.h"

namespace tolvane {

// The turn from a course to a bearing, -180 (exclusive) to 180 degrees,
// negative to the left.
double TurnDegrees(double course, double bearing);

// The turn hint: "◄ 35°" to the left, "35° ►" to the right, "0°" ahead.
std::string TurnHint(double turnDegrees);

// The compass: a card with 5 degree ticks, north-up with a course arrow or
// course-up under a fixed lubber line, the course in large digits, the
// sun's direction on the rim with today's sunrise and sunset, and with
// navigation on the destination's bearing, distance and time to go. Below
// 2 km/h the course means nothing: the card stops and greys and the last
// course is shown with its age.
void PaintCompassView(Canvas& canvas, const ViewContext& context);

}  // namespace tolvane
