#include "core/geo/coordinate_entry.h"

#include <gtest/gtest.h>

#include "core/geo/formatting.h"

namespace tolvane {
namespace {

constexpr auto kLat = CoordAxis::kLatitude;
constexpr auto kLon = CoordAxis::kLongitude;

// What the program prints, in every format and style, reads back within the
// printing's precision (a hundredth of a second is 2.8e-6 degrees).
TEST(CoordinateEntryTest, EveryPrintedFormatAndStyleReadsBack) {
    const double kValues[] = {0.0, -0.000001, 25.025, -33.856784, 89.999999, -90.0, 5.5};
    for (const int format : {kDegMinSec, kDegMin, kDecimalDeg}) {
        for (const auto style :
             {HemisphereStyle::kHemisphereFirst, HemisphereStyle::kHemisphereLast}) {
            for (const double value : kValues) {
                std::string latitude;
                std::string longitude;
                FormatLatitude(format, style, value, &latitude);
                FormatLongitude(format, style, value * 2, &longitude);
                ASSERT_TRUE(ParseCoordinate(latitude, kLat)) << latitude;
                ASSERT_TRUE(ParseCoordinate(longitude, kLon)) << longitude;
                EXPECT_NEAR(*ParseCoordinate(latitude, kLat), value, 3e-6) << latitude;
                EXPECT_NEAR(*ParseCoordinate(longitude, kLon), value * 2, 3e-6) << longitude;
            }
        }
        EXPECT_TRUE(ParseCoordinate(CoordinateExample(format, kLat), kLat));
        EXPECT_TRUE(ParseCoordinate(CoordinateExample(format, kLon), kLon));
    }
}

TEST(CoordinateEntryTest, TypedAndPastedEntriesAreRead) {
    const struct {
        const char* text;
        CoordAxis axis;
        double degrees;
    } kCases[] = {
        {"25 1 30 N", kLat, 25.025},
        {"s33.5", kLat, -33.5},
        {"-33.5", kLat, -33.5},
        {"+151\xC2\xB0"
         "12'36\"",
         kLon, 151.21},
        {"151:12:36 w", kLon, -151.21},
        {"33\xC2\xB0"
         "30\xE2\x80\xB2"
         "36\xE2\x80\xB3 S",
         kLat, -33.51},
        {"N 25\xC2\xB0 01.5'", kLat, 25.025},
        {"  12  ", kLat, 12},
        {"0 0 60.00 E", kLon, 1.0 / 60},  // the printing's 60.00 seconds
        {"180", kLon, 180},
    };
    for (const auto& c : kCases) {
        const std::optional<double> value = ParseCoordinate(c.text, c.axis);
        ASSERT_TRUE(value) << c.text;
        EXPECT_NEAR(*value, c.degrees, 1e-9) << c.text;
    }
}

TEST(CoordinateEntryTest, BadEntriesAreRefused) {
    const struct {
        const char* text;
        CoordAxis axis;
    } kCases[] = {
        {"", kLat},
        {"N", kLat},
        {"91", kLat},
        {"-90.1", kLat},
        {"181 E", kLon},
        {"N -5", kLat},
        {"25 E", kLat},
        {"12 N", kLon},
        {"N 25 S", kLat},
        {"25 60 0 N", kLat},
        {"25 1 60.01", kLat},
        {"25.5 10", kLat},
        {"25 10 20 30", kLat},
        {"1e5", kLon},
        {"25,5", kLat},
        {"25N30", kLat},
        {"abc", kLon},
        {"1.2.3", kLon},
        {"--5", kLat},
        {". N", kLat},
    };
    for (const auto& c : kCases) EXPECT_FALSE(ParseCoordinate(c.text, c.axis)) << c.text;
}

}  // namespace
}  // namespace tolvane
