#include "core/geo/formatting.h"

#include <gtest/gtest.h>

#include "core/geo/units.h"

namespace tolvane {
namespace {

std::string Distance(int unitSystem, double km) {
    std::string out = "untouched";
    FormatDistance(unitSystem, km, &out);
    return out;
}

std::string Latitude(int format, HemisphereStyle style, double degrees) {
    std::string out = "untouched";
    FormatLatitude(format, style, degrees, &out);
    return out;
}

std::string Longitude(int format, HemisphereStyle style, double degrees) {
    std::string out = "untouched";
    FormatLongitude(format, style, degrees, &out);
    return out;
}

constexpr auto kFirst = HemisphereStyle::kHemisphereFirst;
constexpr auto kLast = HemisphereStyle::kHemisphereLast;

TEST(FormattingTest, DistanceSwitchesUnitOnTheConvertedValue) {
    EXPECT_EQ(Distance(kMetric, 0.5), "500.00 m");
    EXPECT_EQ(Distance(kMetric, 0.999), "999.00 m");
    EXPECT_EQ(Distance(kMetric, 1.0), "1.00 km");
    EXPECT_EQ(Distance(kImperial, 2.0), "1.24 mile");
    // 1.61 km are 0.99981 miles: below one mile although the text would round up.
    EXPECT_EQ(Distance(kImperial, 1.61), "5279.00 ft");
    // Nautical shows statute miles and feet, never nautical miles.
    EXPECT_EQ(Distance(kNautical, 1.0), "3278.88 ft");
    EXPECT_EQ(Distance(kNautical, 100.0), "62.10 mile");
    FormatDistance(kMetric, 1.0, nullptr);
}

TEST(FormattingTest, EveryFormatInBothStylesRoundedWithoutCarryAndNeverOverflowing) {
    // Zero is north and east; the smallest negative is south and west.
    EXPECT_EQ(Latitude(kDegMinSec, kFirst, 0.0), "N   00°00'00.00\"");
    EXPECT_EQ(Longitude(kDegMinSec, kFirst, 0.0), "E 000°00'00.00\"");
    EXPECT_EQ(Latitude(kDecimalDeg, kLast, -0.000001), "00.000001° S");
    EXPECT_EQ(Longitude(kDecimalDeg, kLast, -0.000001), "000.000001° W");

    EXPECT_EQ(Longitude(kDecimalDeg, kLast, 5.5), "005.500000° E");
    EXPECT_EQ(Longitude(kDecimalDeg, kFirst, 5.5), "E 005.500000°");
    EXPECT_EQ(Latitude(kDecimalDeg, kFirst, 5.5), "N   05.500000°");
    EXPECT_EQ(Latitude(kDegMin, kFirst, -33.8675), "S   33°52.0500'");
    EXPECT_EQ(Longitude(kDegMin, kLast, -151.2075), "151°12.4500' W");
    EXPECT_EQ(Latitude(kDegMinSec, kLast, 48.858222), "48°51'29.60\" N");
    EXPECT_EQ(Longitude(kDegMinSec, kFirst, 2.2945), "E 002°17'40.20\"");

    // Rounded fields are not carried: 25.0333333 degrees are 25 degrees,
    // 1 minute and 59.99988 seconds; 0.99999999 degrees are 59.9999994
    // minutes.
    EXPECT_EQ(Latitude(kDegMinSec, kFirst, 25.0333333), "N   25°01'60.00\"");
    EXPECT_EQ(Longitude(kDegMinSec, kLast, 25.0333333), "025°01'60.00\" E");
    EXPECT_EQ(Latitude(kDegMin, kLast, 0.99999999), "00°60.0000' N");

    // Values no coordinate has do not overflow.
    EXPECT_EQ(Latitude(kDegMin, kFirst, 1e300), "N   00°00.0000'");
    EXPECT_EQ(Longitude(kDegMinSec, kLast, -3e9), "000°00'00.00\" W");
}

TEST(FormattingTest, FormatEntriesCarryTheirSeparators) {
    EXPECT_EQ(CoordFormatEntryText(kDegMinSec), "WGS84 dd°mm'ss.ss\"");
    EXPECT_EQ(CoordFormatEntryText(kDegMin), "WGS84 dd°mm.mmmm'");
    EXPECT_EQ(CoordFormatEntryText(kDecimalDeg), "WGS84 dd.dddddd°");
}

}  // namespace
}  // namespace tolvane
