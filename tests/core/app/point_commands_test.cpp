#include "core/app/point_commands.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

// A new point takes the first number that no point of its list has, so a
// gap left by a deleted point is filled before the numbers go on; a new
// destination's name is free among the waypoints too.
TEST(PointCommandsTest, ANewPointIsNamedAfterTheFirstFreeNumberOfItsList) {
    EXPECT_EQ(NextFreeName("WP", {}), "WP001");
    EXPECT_EQ(NextFreeName("WP", {"WP001", "WP002", "WP004", "POI003"}), "WP003");
    EXPECT_EQ(NextFreeName("POI", {"POI001", "wp002"}), "POI002");

    AppState app;
    GeoPoint waypoint;
    waypoint.name = "WP003";
    app.points.waypoints.Append(waypoint);
    DestinationDraft draft;
    for (const char* name : {"WP001", "Harbour", "WP002"}) {
        GeoPoint point;
        point.name = name;
        draft.points.push_back(point);
    }
    bool haveFix = true;
    const GeoPoint point = NewDestinationAtFix(app, draft, haveFix);
    EXPECT_FALSE(haveFix);
    EXPECT_EQ(point.name, "WP004");
    EXPECT_EQ(point.category, "Waypoint");
}

}  // namespace
}  // namespace tolvane
