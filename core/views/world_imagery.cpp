#include "core/views/world_imagery.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "core/geo/solar.h"
#include "core/placement/world_map_placement.h"

namespace tolvane {
namespace {

constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;
constexpr FileTime kTicksPerMinute = 60 * kFileTimeTicksPerSecond;
// The sine of the sun's elevation over which day fades into night: from
// about 3 degrees above the horizon to 6 below, civil twilight.
constexpr double kTwilightTop = 0.05;
constexpr double kTwilightBottom = -0.10;
// How much of the day picture's light the night side keeps, of 256.
constexpr int kNightShade = 56;

// Mixes two 0xRRGGBB colours, weight 0..256 of the first.
std::uint32_t Blend(std::uint32_t first, std::uint32_t second, int weight) {
    std::uint32_t result = 0;
    for (int shift = 0; shift <= 16; shift += 8) {
        const int a = static_cast<int>((first >> shift) & 0xFFu);
        const int b = static_cast<int>((second >> shift) & 0xFFu);
        result |= static_cast<std::uint32_t>((a * weight + b * (256 - weight)) >> 8) << shift;
    }
    return result;
}

// Adds two 0xRRGGBB colours, each channel at most full.
std::uint32_t Lighten(std::uint32_t first, std::uint32_t second) {
    std::uint32_t result = 0;
    for (int shift = 0; shift <= 16; shift += 8) {
        const std::uint32_t sum = ((first >> shift) & 0xFFu) + ((second >> shift) & 0xFFu);
        result |= std::min(sum, 0xFFu) << shift;
    }
    return result;
}

// The latitude of the middle of each row of a picture in the projection.
std::vector<double> RowLatitudes(const MapProjection& projection, int width, int height) {
    const double distance = ImageryDistance(projection, width);
    const double top = height / 2.0;
    std::vector<double> latitudes(static_cast<std::size_t>(height));
    for (int row = 0; row < height; ++row) {
        latitudes[static_cast<std::size_t>(row)] =
            YToLatitude(projection, top - row - 0.5, distance);
    }
    return latitudes;
}

}  // namespace

double ImageryDistance(const MapProjection& projection, int width) {
    return projection.Scale() * 360.0 * kKmPerDegreeLongitude / std::max(1, width);
}

Image ReprojectToMap(const Image& equirectangular, const MapProjection& projection) {
    const int width = equirectangular.width;
    if (width <= 0 || equirectangular.height <= 0) return {};
    const double distance = ImageryDistance(projection, width);
    const int height =
        static_cast<int>(std::lround(2 * projection.LatitudeToY(kCutLatitude, distance)));
    Image map{width, height, std::vector<std::uint32_t>(static_cast<std::size_t>(width) * height)};
    const std::vector<double> latitudes = RowLatitudes(projection, width, height);
    for (int row = 0; row < height; ++row) {
        const double fromTop = (90.0 - latitudes[static_cast<std::size_t>(row)]) / 180.0;
        const int source = std::clamp(static_cast<int>(fromTop * equirectangular.height), 0,
                                      equirectangular.height - 1);
        std::copy_n(equirectangular.pixels.begin() + static_cast<std::ptrdiff_t>(source) * width,
                    width, map.pixels.begin() + static_cast<std::ptrdiff_t>(row) * width);
    }
    return map;
}

void LightNightSide(WorldImagery& imagery) {
    const Image& day = imagery.day;
    Image& night = imagery.night;
    if (night.width != day.width || night.height != day.height) return;
    for (std::size_t at = 0; at < night.pixels.size(); ++at) {
        night.pixels[at] = Lighten(Blend(day.pixels[at], 0, kNightShade), night.pixels[at]);
    }
}

void ShadeDayAndNight(WorldImagery& imagery, const MapProjection& projection, FileTime utc) {
    const Image& day = imagery.day;
    const FileTime minute = utc - utc % kTicksPerMinute;
    if (minute == imagery.shadedAt || day.width <= 0) return;
    const bool haveNight = imagery.night.width == day.width && imagery.night.height == day.height;
    imagery.shaded = day;
    imagery.shadedAt = minute;
    const SubsolarPoint sun = SubsolarPointAt(utc);
    const double sinSun = std::sin(sun.latitude * kRadiansPerDegree);
    const double cosSun = std::cos(sun.latitude * kRadiansPerDegree);
    // The sun's elevation is sin(phi) sin(d) + cos(phi) cos(d) cos(h): the
    // rows give phi, the columns the hour angle h.
    std::vector<double> columnCosines(static_cast<std::size_t>(day.width));
    for (int column = 0; column < day.width; ++column) {
        const double longitude = (column + 0.5) * 360.0 / day.width - 180.0;
        columnCosines[static_cast<std::size_t>(column)] =
            cosSun * std::cos((longitude - sun.longitude) * kRadiansPerDegree);
    }
    const std::vector<double> latitudes = RowLatitudes(projection, day.width, day.height);
    for (int row = 0; row < day.height; ++row) {
        const double phi = latitudes[static_cast<std::size_t>(row)] * kRadiansPerDegree;
        const double fromDeclination = std::sin(phi) * sinSun;
        const double cosPhi = std::cos(phi);
        const std::size_t start = static_cast<std::size_t>(row) * day.width;
        for (int column = 0; column < day.width; ++column) {
            const double sinElevation =
                fromDeclination + cosPhi * columnCosines[static_cast<std::size_t>(column)];
            if (sinElevation >= kTwilightTop) continue;
            const double light = std::clamp(
                (sinElevation - kTwilightBottom) / (kTwilightTop - kTwilightBottom), 0.0, 1.0);
            const std::size_t at = start + static_cast<std::size_t>(column);
            const std::uint32_t dark =
                haveNight ? imagery.night.pixels[at] : Blend(day.pixels[at], 0, kNightShade);
            imagery.shaded.pixels[at] = Blend(day.pixels[at], dark, static_cast<int>(light * 256));
        }
    }
}

}  // namespace tolvane
