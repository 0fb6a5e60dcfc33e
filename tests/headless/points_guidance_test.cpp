// Points marked while a recording replays, a destination list made of them
// and the guidance through it with spoken arrivals; the points and the list
// taken to other software as GPX.

#include <gtest/gtest.h>

#include <filesystem>

#include "core/app/point_commands.h"
#include "core/data/geo_point_file.h"
#include "core/data/gpx_writer.h"
#include "core/nav/destination_list.h"
#include "core/nav/voice_guide.h"
#include "tests/core/test_support.h"
#include "tests/headless/replay_text.h"
#include "tests/platform/scoped_environment.h"
#include "tests/tools/shell_command.h"

namespace tolvane::headless {
namespace {

using testing::Quoted;
using testing::RunShell;

// A walk of about twenty metres in Brisbane that goes east, turns back to
// the south-west and comes home: 74 seconds.
const std::string kWalk = testing::TestDataFile("gpsd/haicom-305N.log");
// The seconds of the walk at which the points are marked, far enough apart
// to be reached one after the other.
constexpr int kMarkTicks[] = {24, 48, 64};
constexpr int kRangeMetres = 3;

bool Replay(const RunSettings& settings, const TickObserver& onTick) {
    return testing::ReplayText(testing::ReadFileBytes(kWalk), settings, onTick);
}

std::string SchemaErrors(const std::string& path) {
    const testing::ShellResult result = RunShell(
        Quoted(TOLVANE_XMLLINT_PROGRAM) + " --noout --nonet --schema " +
        Quoted(testing::TestDataFile("schemas/gpx-1.1.xsd")) + " " + Quoted(path) + " 2>&1");
    return result.exitCode == 0 ? "" : result.output;
}

class PointsGuidanceTest : public ::testing::Test {
  protected:
    // Marks a waypoint at each of the marking seconds, as "Add Waypoint" does
    // with the fix of the moment, each with a voice text.
    void MarkWaypoints() {
        int tick = 0;
        ASSERT_TRUE(Replay({}, [&](AppState& app, FileTime) {
            for (const int mark : kMarkTicks) {
                if (tick != mark) continue;
                bool haveFix = false;
                GeoPoint point = NewPointAtFix(app, PointKind::kWaypoint, points_, haveFix);
                EXPECT_TRUE(haveFix);
                point.voiceGuide = "Arrived at " + point.name;
                point.proximityRange = kRangeMetres;
                EXPECT_TRUE(points_.Add(PointKind::kWaypoint, point));
            }
            ++tick;
            return true;
        }));
    }

    testing::TemporaryFolder folder_;
    testing::ScopedEnvironment temporary_{"TMPDIR", folder_.Path().c_str()};
    PointCollection points_;
};

TEST_F(PointsGuidanceTest, MarkedWaypointsAreGuidedThroughWithSpokenArrivals) {
    points_.Load(folder_.File("Waypoint.csv"), folder_.File("POI"));
    MarkWaypoints();
    const std::vector<PointRow> rows = points_.Select({});
    ASSERT_EQ(rows.size(), 3u);

    // The list is built in the editor from the waypoints and saved.
    Navigation built;
    DestinationDraft draft;
    for (const PointRow row : rows) InsertDestination(draft, 99, points_.At(row));
    ApplyDestinations(built, draft);
    const std::string list = folder_.File("Walk.csv");
    ASSERT_TRUE(SaveDestinationList(built, list));

    // Guided through it: each arrival is spoken into the voice guide's wave
    // file (removed after each, so every arrival must make its own) and the
    // next destination becomes current. After the last one the menu's
    // Reset, Previous and Next step through the list as a user would.
    RunSettings settings;
    settings.destinationsFile = list;
    settings.navigation = 1;
    settings.voice = true;
    const std::string wave = folder_.File(kVoiceGuideWaveName);
    std::vector<int> order{0};
    int spoken = 0;
    std::vector<int> steps;
    ASSERT_TRUE(Replay(settings, [&](AppState& app, FileTime) {
        const int index = CurrentDestinationIndex(app.navigation);
        if (index != order.back()) {
            order.push_back(index);
            if (std::filesystem::exists(wave)) ++spoken;
            std::filesystem::remove(wave);
        }
        if (index == kNoDestination && steps.empty()) {
            ResetDestinations(app.navigation);
            steps.push_back(CurrentDestinationIndex(app.navigation));
            PreviousDestination(app.navigation);  // nothing reached: stays on the first
            steps.push_back(CurrentDestinationIndex(app.navigation));
            NextDestination(app.navigation);
            NextDestination(app.navigation);
            steps.push_back(CurrentDestinationIndex(app.navigation));
            PreviousDestination(app.navigation);
            steps.push_back(CurrentDestinationIndex(app.navigation));
            return false;
        }
        return true;
    }));
    EXPECT_EQ(order, (std::vector<int>{0, 1, 2, kNoDestination}));
    EXPECT_EQ(spoken, 3);
    EXPECT_EQ(steps, (std::vector<int>{0, 0, 2, 1}));
}

TEST_F(PointsGuidanceTest, ExportedPointsAndListsPassTheGpxSchemaAndReadInGpsbabel) {
    GeoPoint awkward;
    awkward.latitude = -89.999999;
    awkward.longitude = 179.999999;
    awkward.name = "Fish & <Chips>";
    awkward.category = "Restaurant";
    awkward.voiceGuide = "Say \"hello\"";
    awkward.comment = std::string("bell\x07 and\r\nnew line");
    GeoPoint plain;
    plain.name = "Plain";
    const std::string points = folder_.File("points.gpx");
    const std::string route = folder_.File("route.gpx");
    const std::string empty = folder_.File("empty.gpx");
    ASSERT_TRUE(SaveGpxFile(points, WaypointsGpx({awkward, plain})));
    ASSERT_TRUE(SaveGpxFile(route, RouteGpx("Walk & talk", {plain, awkward})));
    ASSERT_TRUE(SaveGpxFile(empty, RouteGpx("", {})));
    for (const std::string& path : {points, route, empty}) EXPECT_EQ(SchemaErrors(path), "");

    const std::vector<std::string> rows = testing::GpsbabelRows("-i gpx", points);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_NE(rows[0].find("-89.999999,179.999999,\"Fish & <Chips>\""), std::string::npos)
        << rows[0];
    EXPECT_EQ(testing::GpsbabelRows("-r -i gpx", route).size(), 2u);
    EXPECT_FALSE(SaveGpxFile(folder_.File("no/such/folder.gpx"), WaypointsGpx({})));
}

}  // namespace
}  // namespace tolvane::headless
