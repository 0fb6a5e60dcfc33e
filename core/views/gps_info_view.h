#pragma once

#include <string>
#include <vector>

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

// While the GPS runs and has had no fix since its start: how long it has
// searched and what it hears, "Searching 0:42" and "7 satellites heard,
// best 38 dB-Hz" (satellites in view with a signal, and the strongest
// signal). Empty otherwise.
std::vector<std::string> SearchingTexts(const AppState& app);

// The searching texts in one line, "Searching 0:42 — 7 satellites heard,
// best 38 dB-Hz"; empty while not searching.
std::string SearchingLine(const AppState& app);

// The text view of the current fix: coordinates, altitude and speed, the
// fix time, the dilutions and the fix type, in stacked lines spread evenly
// down the view; while searching for the first fix, the searching line
// below them, in two lines where one would not fit the width.
void PaintGpsInfoView(Canvas& canvas, const ViewContext& context);

}  // namespace tolvane
