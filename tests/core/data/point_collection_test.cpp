#include "core/data/point_collection.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "core/data/geo_point_file.h"
#include "core/data/point_entry.h"
#include "core/geo/coordinate_entry.h"
#include "core/geo/formatting.h"
#include "core/geo/units.h"
#include "core/nav/destination_list.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

using testing::ReadFileBytes;
using testing::WriteFileBytes;

GeoPoint Accepted(const PointEntry& entry) {
    const PointEntryResult result = PointFromEntry(entry, GeoPoint{}, kDegMin, kMetric);
    EXPECT_TRUE(result.accepted) << result.refusal;
    return result.point;
}

// Saving what was read writes the same bytes again, so every field of every
// point came back.
void ExpectReadsBackByteForByte(const std::string& path) {
    DynamicList<GeoPoint> loaded;
    const CsvReadResult read = LoadPointFile(path, loaded);
    EXPECT_EQ(read.linesSkipped, 0);
    const std::string again = path + ".again";
    ASSERT_TRUE(SavePointFile(again, loaded));
    EXPECT_EQ(ReadFileBytes(again), ReadFileBytes(path)) << path;
}

class PointCollectionTest : public ::testing::Test {
  protected:
    void SetUp() override {
        std::filesystem::create_directories(poiFolder_);
        WriteFileBytes(poiFolder_ + "/Bank.csv", "2.000000,1.000000,Old Bank,Bank,,,,,\r\n");
        points_.Load(waypointFile_, poiFolder_);
    }

    testing::TemporaryFolder folder_;
    std::string waypointFile_ = folder_.File("Waypoint.csv");  // not there yet
    std::string poiFolder_ = folder_.File("POI");
    PointCollection points_;
};

TEST_F(PointCollectionTest, EditorEntriesAreSavedToTheirFilesInTheFileFormat) {
    PointEntry bridge;
    bridge.name = "Bridge over the River Kwai";  // cut to 19
    bridge.latitude = "S 33 52.1234";
    bridge.longitude = "151.2153 E";
    bridge.category = "Informaion";  // shown misspelled, stored by its lookup name
    bridge.speedLimit = "50";
    bridge.voiceGuide = "Turn \"left\", then\r\nstop";
    bridge.comment = "gate, code 12";
    ASSERT_TRUE(points_.Add(PointKind::kWaypoint, Accepted(bridge)));

    PointEntry cafe;
    cafe.name = "Caf\xC3\xA9 \xE2\x82\xAC";  // "Café €", two Windows-1252 bytes
    cafe.latitude = "-33.5";
    cafe.longitude = "151";
    cafe.category = "00006";  // Bank, by its code
    cafe.proximityRange = "150";
    ASSERT_TRUE(points_.Add(PointKind::kPoi, Accepted(cafe)));
    PointEntry hut = cafe;
    hut.name = "Hut";
    hut.category = "Hiking hut";  // the user's own category, its own file
    ASSERT_TRUE(points_.Add(PointKind::kPoi, Accepted(hut)));

    EXPECT_EQ(ReadFileBytes(waypointFile_),
              "151.215300,-33.868723,Bridge over the Riv@50,Information,,"
              "Turn  left   then  stop,,,gate, code 12\r\n");
    EXPECT_EQ(ReadFileBytes(poiFolder_ + "/Bank.csv"),
              "2.000000,1.000000,Old Bank,Bank,,,,,\r\n"
              "151.000000,-33.500000,Caf\xE9 \x80,Bank,150,,,,\r\n");
    EXPECT_EQ(ReadFileBytes(poiFolder_ + "/Hiking hut.csv"),
              "151.000000,-33.500000,Hut,Hiking hut,150,,,,\r\n");
    for (const char* file : {"/Waypoint.csv", "/POI/Bank.csv", "/POI/Hiking hut.csv"}) {
        ExpectReadsBackByteForByte(folder_.Path() + file);
    }

    // An edit and a removal rewrite only the file the point belongs to.
    PointQuery banks;
    banks.category = "Bank";
    std::vector<PointRow> rows = points_.Select(banks);
    ASSERT_EQ(rows.size(), 2u);
    GeoPoint edited = points_.At(rows[0]);  // "Café €" sorts before "Old Bank"
    edited.name = "Cafe";
    ASSERT_TRUE(points_.Replace(rows[0], edited));
    ASSERT_TRUE(points_.Remove(points_.Select(banks)[1]));
    EXPECT_EQ(ReadFileBytes(poiFolder_ + "/Bank.csv"),
              "151.000000,-33.500000,Cafe,Bank,150,,,,\r\n");
    EXPECT_EQ(ReadFileBytes(poiFolder_ + "/Hiking hut.csv"),
              "151.000000,-33.500000,Hut,Hiking hut,150,,,,\r\n");

    // The program's lists are the files' points, waypoints apart.
    DynamicList<GeoPoint> waypoints;
    DynamicList<GeoPoint> pois;
    points_.CopyTo(waypoints, pois);
    EXPECT_EQ(waypoints.Count(), 1);
    EXPECT_EQ(pois.Count(), 2);

    // An unwritable file says which it was; the point is kept for a retry.
    std::filesystem::remove(poiFolder_ + "/Hiking hut.csv");
    std::filesystem::create_directory(poiFolder_ + "/Hiking hut.csv");
    EXPECT_FALSE(points_.Add(PointKind::kPoi, Accepted(hut)));
    EXPECT_EQ(points_.FailedPath(), poiFolder_ + "/Hiking hut.csv");
}

TEST_F(PointCollectionTest, TheListFiltersSearchesAndSortsByDistance) {
    const auto add = [&](PointKind kind, const char* name, double latitude) {
        GeoPoint point;
        point.name = name;
        point.latitude = latitude;
        point.category = kind == PointKind::kPoi ? "Bar" : "";
        ASSERT_TRUE(points_.Add(kind, point));
    };
    add(PointKind::kWaypoint, "alpha", 0.02);
    add(PointKind::kWaypoint, "Zulu", 0.001);
    add(PointKind::kPoi, "Beta bar", 0.01);
    const auto names = [&](const PointQuery& query) {
        std::string text;
        for (const PointRow row : points_.Select(query)) text += points_.At(row).name + ";";
        return text;
    };
    PointQuery query;
    EXPECT_EQ(names(query), "alpha;Beta bar;Old Bank;Zulu;");
    query.kinds = KindFilter::kPoi;
    EXPECT_EQ(names(query), "Beta bar;Old Bank;");
    EXPECT_EQ(KindToAdd(query.kinds), PointKind::kPoi);
    EXPECT_EQ(KindToAdd(KindFilter::kAll), PointKind::kWaypoint);
    query.category = "00013";  // Bar by its code
    EXPECT_EQ(names(query), "Beta bar;");
    query = {};
    query.search = "LU";
    EXPECT_EQ(names(query), "Zulu;");

    query = {};
    query.sort = PointSort::kByDistance;
    EXPECT_EQ(names(query), "alpha;Beta bar;Old Bank;Zulu;");  // no fix: by name
    query.haveFix = true;
    EXPECT_EQ(names(query), "Zulu;Beta bar;alpha;Old Bank;");
    EXPECT_EQ(DistanceText(query, points_.At(points_.Select(query)[0]), kMetric), "110.57 m");
    EXPECT_EQ(DistanceText(query, points_.At(points_.Select(query)[0]), kImperial), "362.56 ft");
}

TEST(PointEntryTest, BadFieldsAreRefusedWithWhatToType) {
    PointEntry good;
    good.name = "Home";
    good.latitude = "N 1";
    good.longitude = "E 2";
    good.proximityRange = " 120 ";
    const PointEntryResult accepted = PointFromEntry(good, GeoPoint{}, kDecimalDeg, kImperial);
    EXPECT_TRUE(accepted.accepted);
    EXPECT_EQ(accepted.point.proximityRange, 120);  // feet, as the unit system reads ranges
    EXPECT_NE(EntryFromPoint(accepted.point, kDecimalDeg, true).latitude, "");
    EXPECT_EQ(EntryFromPoint(accepted.point, kDecimalDeg, false).latitude, "");

    const auto refusal = [&](void (*spoil)(PointEntry&)) {
        PointEntry entry = good;
        spoil(entry);
        const PointEntryResult result = PointFromEntry(entry, GeoPoint{}, kDegMinSec, kImperial);
        EXPECT_FALSE(result.accepted);
        return result.refusal;
    };
    EXPECT_NE(refusal([](PointEntry& e) { e.name = "  "; }), "");
    EXPECT_NE(refusal([](PointEntry& e) {
                  e.latitude = "95";
              }).find(CoordinateExample(kDegMinSec, CoordAxis::kLatitude)),
              std::string::npos);
    EXPECT_NE(refusal([](PointEntry& e) {
                  e.longitude = "N 2";
              }).find(CoordinateExample(kDegMinSec, CoordAxis::kLongitude)),
              std::string::npos);
    EXPECT_NE(refusal([](PointEntry& e) { e.speedLimit = "1000"; }), "");
    EXPECT_NE(refusal([](PointEntry& e) { e.proximityRange = "0"; }).find("ft"), std::string::npos);
    EXPECT_NE(refusal([](PointEntry& e) { e.proximityRange = "12m"; }), "");
}

TEST(DestinationDraftTest, EditsKeepTheCurrentDestinationOnItsPoint) {
    DestinationDraft draft;
    for (const char* name : {"A", "B", "C", "D"}) {
        GeoPoint point;
        point.name = name;
        InsertDestination(draft, 99, point);  // past the end appends
    }
    EXPECT_EQ(draft.current, 0);  // the first one not reached
    draft.points[0].reached = 1;
    draft.current = 1;
    MoveDestination(draft, 1, +1);  // B moves down, still current
    MoveDestination(draft, 3, +1);  // at the end: nothing
    EXPECT_EQ(draft.current, 2);
    InsertDestination(draft, 0, GeoPoint{});
    EXPECT_EQ(draft.current, 3);
    RemoveDestination(draft, 3);  // the current one: the first not reached follows
    EXPECT_EQ(draft.current, 0);
    EXPECT_EQ(draft.points.size(), 4u);
    draft.current = 1;
    EXPECT_EQ(DestinationRowText(draft, 1), "2. A  [Current]  (Reached)");
    EXPECT_EQ(DestinationRowText(draft, 2), "3. C");

    Navigation navigation;
    draft.current = 2;
    ApplyDestinations(navigation, draft);
    EXPECT_TRUE(navigation.open);
    EXPECT_EQ(CurrentDestinationIndex(navigation), 2);
    SelectDestination(navigation, 1);  // "A", reached before, is current again
    GeoPoint current;
    ASSERT_TRUE(CopyCurrentDestination(navigation, current));
    EXPECT_EQ(current.name, "A");
    EXPECT_EQ(current.reached, 0);

    GoToPoint(navigation, current);
    EXPECT_EQ(CopyDestinations(navigation).points.size(), 1u);
    EXPECT_EQ(navigation.file, "");
}

}  // namespace
}  // namespace tolvane
