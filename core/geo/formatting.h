#pragma once

#include <string>

namespace tolvane {

// The coordinate formats, in the order of the Options combo.
enum CoordFormat : int { kDegMinSec = 0, kDegMin = 1, kDecimalDeg = 2 };

// Where the hemisphere letter stands: the GPS Info view puts it first, the
// coordinate strip last.
enum class HemisphereStyle { kHemisphereFirst, kHemisphereLast };

// Unit texts of a unit system. Any system other than Metric uses the texts
// of the unit its values are converted to (knots for speed, feet and miles
// for lengths), so a value and its unit never disagree.
const char* SpeedUnitText(int unitSystem);          // "km/h", "MPH", "kts"
const char* AltitudeUnitText(int unitSystem);       // "m", "ft"; also the proximity range unit
const char* LongDistanceUnitText(int unitSystem);   // "km", "mile"
const char* ShortDistanceUnitText(int unitSystem);  // "m", "ft"

// Writes the text of a distance given in km into out, for example
// "500.00 m" or "1.24 mile"; a null out writes nothing. Nautical shows
// statute miles and feet like Imperial, only its speed is in knots.
void FormatDistance(int unitSystem, double km, std::string* out);

// Writes the text of a latitude or longitude in degrees into out, for
// example "N   25°01'60.00\"" or "005.500000° E". Fields are never carried
// into the next larger one, so 60.00 seconds can show. An unknown format
// writes an empty text; a null out writes nothing.
void FormatLatitude(int coordFormat, HemisphereStyle style, double degrees, std::string* out);
void FormatLongitude(int coordFormat, HemisphereStyle style, double degrees, std::string* out);

// The minutes and seconds of a wait, "0:42", "12:05", "75:10": the
// minutes go on counting past the hour. A negative time reads as 0:00.
std::string MinutesSecondsText(int seconds);

// The Options combo entry of a coordinate format, "WGS84 dd°mm'ss.ss\"" and
// so on; empty for an unknown format.
std::string CoordFormatEntryText(int coordFormat);

}  // namespace tolvane
