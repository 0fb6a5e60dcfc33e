#pragma once

#include <string>

#include "core/views/canvas.h"
#include "core/views/view_context.h"

namespace tolvane {

// The dial sweeps 240 degrees, from -120 (lower left) through 0 (up) to
// 120 (lower right).
inline constexpr double kDialSweepDegrees = 240.0;

// The needle's direction for a speed on a dial of full scale; a speed past
// the scale rests the needle at its end.
double DialAngle(double speed, int fullScale);

// The step between labelled ticks: 4 to 8 labels over the scale.
int DialLabelStep(int fullScale);

// The speed digits in the current unit with one decimal; "0.0" below
// 0.5 km/h, where a receiver standing still reports noise.
std::string SpeedDigits(const GpsState& gps, int unitSystem);

// The speed in large digits over an arc dial with its needle, the
// maximum and average marks and the red band from the selected alarm
// limit, the alarm's line beneath; the digits turn red while it sounds.
void PaintSpeedView(Canvas& canvas, const ViewContext& context);

}  // namespace tolvane
