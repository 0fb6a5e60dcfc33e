#pragma once

#include <string>

#include "core/views/canvas.h"
#include "core/views/view_context.h"

namespace tolvane {

inline constexpr int kCoordinateFontSlot = 27;
inline constexpr int kAltitudeSpeedFontSlot = 2;
inline constexpr int kDilutionFontSlot = 17;
inline constexpr int kFixTypeFontSlot = 20;

// The altitude and speed line: three blanks between its halves in the
// Metric system, two in the others.
std::string AltitudeSpeedLine(const AppState& app);

// The fix's local date and time in the user's formats (ISO 8601 without
// them), or the placeholder without a fix.
std::string FixTimeLine(const GpsState& gps, const LocaleFormats* locale);

// The text view of the current fix: coordinates, altitude and speed, the
// fix time, the dilutions and the fix type, in stacked lines spread evenly
// down the view.
void PaintGpsInfoView(Canvas& canvas, const ViewContext& context);

}  // namespace tolvane
