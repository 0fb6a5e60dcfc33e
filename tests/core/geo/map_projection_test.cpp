#include "core/geo/map_projection.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(MapProjectionTest, StretchTableAndLatitudeIntegration) {
    MapProjection projection;
    projection.SetScale(1000);
    const double distance = 10.0;
    const double pixelsPerDegree = 1000 / distance * 111.0;
    EXPECT_EQ(projection.StretchFactor(0), 1.0);
    EXPECT_NEAR(projection.StretchFactor(60), 2.0, 0.01);
    EXPECT_NEAR(projection.StretchFactor(80), 5.74, 0.01);

    EXPECT_EQ(projection.LatitudeToY(0, distance), 0);
    EXPECT_EQ(projection.LatitudeToY(1.0, distance), pixelsPerDegree);
    EXPECT_EQ(projection.LatitudeToY(0.5, distance), pixelsPerDegree / 2);
    EXPECT_EQ(projection.LatitudeToY(85, distance), projection.LatitudeToY(80, distance));
    EXPECT_EQ(projection.LatitudeToY(-85, distance), -projection.LatitudeToY(80, distance));

    const auto origin = projection.ProjectToScreen(0, 0, 40, 70, distance);
    EXPECT_EQ(origin.x, 40);
    EXPECT_EQ(origin.y, 70);
    const auto east = projection.ProjectToScreen(0, 1, 40, 70, distance);
    EXPECT_DOUBLE_EQ(east.x - 40, 114.319 * 1000 / distance);
    const auto north = projection.ProjectToScreen(1, 0, 40, 70, distance);
    EXPECT_DOUBLE_EQ(70 - north.y, pixelsPerDegree);

    EXPECT_DOUBLE_EQ(projection.AdjustForLatitude(60.7, 10), 10 / projection.StretchFactor(60));
    // Beyond the table the last factor is used.
    EXPECT_DOUBLE_EQ(projection.AdjustForLatitude(-89, 10), 10 / projection.StretchFactor(80));
}

}  // namespace
}  // namespace tolvane
