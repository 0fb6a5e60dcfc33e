#include "core/geo/scale_bar.h"

#include <cmath>

#include "core/base/print_format.h"
#include "core/geo/units.h"

namespace tolvane {
namespace {

// The bar measures the map, so it takes the exact lengths of the units
// rather than the rounded factor the distance texts keep.
constexpr double kKmPerMile = 1.609344;
constexpr double kKmPerFoot = 0.0003048;
constexpr double kKmPerMetre = 0.001;

struct BarUnit {
    double km;  // one of the unit, in km
    const char* text;
};

// The largest of 1, 2 and 5 times a power of ten that is at most value.
double RoundDown(double value) {
    const double power = std::pow(10.0, std::floor(std::log10(value)));
    for (const double step : {5.0, 2.0}) {
        if (step * power <= value) return step * power;
    }
    return power;
}

}  // namespace

ScaleBar ChooseScaleBar(double pixelsPerKm, int unitSystem, int mostPixels) {
    if (!(pixelsPerKm > 0) || !std::isfinite(pixelsPerKm) || mostPixels <= 0) return {};
    const double mostKm = mostPixels / pixelsPerKm;
    BarUnit unit{kKmPerNauticalMile, "nm"};
    if (unitSystem == kMetric) {
        unit = mostKm >= 1.0 ? BarUnit{1.0, "km"}
                             : BarUnit{kKmPerMetre, "m"};
    } else if (unitSystem == kImperial) {
        unit = mostKm >= kKmPerMile ? BarUnit{kKmPerMile, "mi"}
                                    : BarUnit{kKmPerFoot, "ft"};
    }
    const double length = RoundDown(mostKm / unit.km);
    const int pixels = static_cast<int>(std::lround(length * unit.km * pixelsPerKm));
    if (pixels <= 0) return {};
    return {pixels, PrintFormat("%g %s", length, unit.text)};
}

}  // namespace tolvane
