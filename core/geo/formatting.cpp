#include "core/geo/formatting.h"

#include <cmath>
#include <cstdio>

#include "core/geo/units.h"

namespace tolvane {
namespace {

constexpr double kMilesPerKm = 0.621;
constexpr double kFeetPerMile = 5280;
constexpr double kMetresPerKm = 1000;

constexpr char kDegreeSign[] = "\u00B0";

// What differs between a latitude and a longitude text.
struct CoordinateAxis {
    char positiveLetter;
    char negativeLetter;
    const char* gapAfterFirstLetter;  // aligns the two lines of the GPS Info view
    const char* degreesFormat;
    const char* decimalFormat;
};

constexpr CoordinateAxis kLatitudeAxis = {'N', 'S', "   ", "%02d", "%09.6f"};
constexpr CoordinateAxis kLongitudeAxis = {'E', 'W', " ", "%03d", "%010.6f"};

template <typename... Values>
std::string Printf(const char* format, Values... values) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, format, values...);
    return buffer;
}

// Degrees and minutes are printed as integers. A value that no coordinate
// can have (from a damaged point file) prints as 0 instead of overflowing.
int TruncateToInt(double value) {
    if (!(value > -2147483648.0 && value < 2147483648.0)) return 0;
    return static_cast<int>(value);
}

// The text without the hemisphere letter, for a non-negative value. Each
// field is rounded only by its own printing, so 59.999 seconds show as 60.00
// while the minutes stay as they are.
std::string CoordinateDigits(int coordFormat, const CoordinateAxis& axis, double value) {
    const double degrees = std::floor(value);
    const double minutes = (value - degrees) * 60;
    switch (coordFormat) {
        case kDegMinSec: {
            const double wholeMinutes = std::floor(minutes);
            const double seconds = (minutes - wholeMinutes) * 60;
            return Printf(axis.degreesFormat, TruncateToInt(degrees)) + kDegreeSign +
                   Printf("%02d", TruncateToInt(wholeMinutes)) + "'" + Printf("%05.2f", seconds) +
                   "\"";
        }
        case kDegMin:
            return Printf(axis.degreesFormat, TruncateToInt(degrees)) + kDegreeSign +
                   Printf("%07.4f", minutes) + "'";
        case kDecimalDeg:
            return Printf(axis.decimalFormat, value) + kDegreeSign;
        default:
            return {};
    }
}

void FormatCoordinate(int coordFormat, HemisphereStyle style, double value,
                      const CoordinateAxis& axis, std::string* out) {
    if (out == nullptr) return;
    // Zero belongs to the north and east.
    const bool positive = value >= 0.0;
    const std::string digits = CoordinateDigits(coordFormat, axis, positive ? value : -value);
    if (digits.empty()) {
        out->clear();
        return;
    }
    const char letter = positive ? axis.positiveLetter : axis.negativeLetter;
    if (style == HemisphereStyle::kHemisphereFirst) {
        *out = letter + std::string(axis.gapAfterFirstLetter) + digits;
    } else {
        *out = digits + " " + letter;
    }
}

}  // namespace

const char* SpeedUnitText(int unitSystem) {
    switch (unitSystem) {
        case kMetric:
            return "km/h";
        case kImperial:
            return "MPH";
        default:
            return "kts";
    }
}

const char* AltitudeUnitText(int unitSystem) {
    return unitSystem == kMetric ? "m" : "ft";
}

const char* LongDistanceUnitText(int unitSystem) {
    return unitSystem == kMetric ? "km" : "mile";
}

const char* ShortDistanceUnitText(int unitSystem) {
    return AltitudeUnitText(unitSystem);
}

void FormatDistance(int unitSystem, double km, std::string* out) {
    if (out == nullptr) return;
    // The switch to the smaller unit looks at the converted value, not at
    // its rounded text: 0.99981 miles show as 5279.00 ft.
    const double large = unitSystem == kMetric ? km : km * kMilesPerKm;
    const double smallPerLarge = unitSystem == kMetric ? kMetresPerKm : kFeetPerMile;
    if (large >= 1.0) {
        *out = Printf("%0.2f %s", large, LongDistanceUnitText(unitSystem));
    } else {
        *out = Printf("%0.2f %s", large * smallPerLarge, ShortDistanceUnitText(unitSystem));
    }
}

void FormatLatitude(int coordFormat, HemisphereStyle style, double degrees, std::string* out) {
    FormatCoordinate(coordFormat, style, degrees, kLatitudeAxis, out);
}

void FormatLongitude(int coordFormat, HemisphereStyle style, double degrees, std::string* out) {
    FormatCoordinate(coordFormat, style, degrees, kLongitudeAxis, out);
}

std::string CoordFormatEntryText(int coordFormat) {
    const std::string degree = kDegreeSign;
    switch (coordFormat) {
        case kDegMinSec:
            return "WGS84 dd" + degree + "mm'ss.ss\"";
        case kDegMin:
            return "WGS84 dd" + degree + "mm.mmmm'";
        case kDecimalDeg:
            return "WGS84 dd.dddddd" + degree;
        default:
            return {};
    }
}

std::string MinutesSecondsText(int seconds) {
    const int shown = seconds < 0 ? 0 : seconds;
    return Printf("%d:%02d", shown / 60, shown % 60);
}

}  // namespace tolvane
