#pragma once

#include <string>
#include <vector>

#include "core/base/dynamic_list.h"
#include "core/geo/geo_point.h"

namespace tolvane {

enum class PointKind { kWaypoint, kPoi };
enum class KindFilter { kAll, kWaypoints, kPoi };
enum class PointSort { kByName, kByDistance };

// A point of the collection: its file (0 is the waypoint file, the others
// the POI folder's files) and its place in that file.
struct PointRow {
    int file = 0;
    int index = 0;
};

// What the manager's list shows.
struct PointQuery {
    KindFilter kinds = KindFilter::kAll;
    std::string category;  // empty: every category
    std::string search;    // a part of the name or comment, any case
    PointSort sort = PointSort::kByName;
    bool haveFix = false;  // without a fix the distance sort keeps the name order
    double latitude = 0;
    double longitude = 0;
};

// The waypoints of the waypoint file and the POI of the POI folder's "*.csv"
// files, each point remembering the file it belongs to. Every change is
// written at once to that file alone, so that nothing is lost when the
// program is killed and the other files stay as they were.
class PointCollection {
  public:
    // Reads the waypoint file (missing: no waypoints yet) and the POI
    // folder's files in name order.
    void Load(const std::string& waypointFile, const std::string& poiFolder);

    std::vector<PointRow> Select(const PointQuery& query) const;
    const GeoPoint& At(PointRow row) const;
    PointKind KindOf(PointRow row) const;

    // Each saves the point's file and returns false when it cannot be
    // written (FailedPath says which; the collection keeps the change so the
    // user can retry by editing again). A new POI goes into the folder's file
    // of its category, "<category>.csv", which is made when missing.
    bool Replace(PointRow row, const GeoPoint& point);
    bool Remove(PointRow row);
    bool Add(PointKind kind, const GeoPoint& point);
    const std::string& FailedPath() const { return failedPath_; }

    // Copies the points into the program's waypoint and POI lists (the
    // caller holds their lock).
    void CopyTo(DynamicList<GeoPoint>& waypoints, DynamicList<GeoPoint>& pois) const;

  private:
    struct File {
        std::string path;
        std::vector<GeoPoint> points;
    };
    bool Save(int file);
    int PoiFileFor(const std::string& category);

    std::vector<File> files_;  // the waypoint file first
    std::string poiFolder_;
    std::string failedPath_;
};

// The distance from the query's fix to a point in the unit system, "" when
// the query has no fix.
std::string DistanceText(const PointQuery& query, const GeoPoint& point, int unitSystem);

// The kind of a point added while the list shows kinds: a POI while it
// shows only POI, else a waypoint.
PointKind KindToAdd(KindFilter kinds);

// The "*.csv" files of a folder in name order.
std::vector<std::string> CsvFilesOf(const std::string& folder);

// A colour of the map marks and the manager's list for each category of the
// table, 0xRRGGBB; one grey for waypoints and the user's own categories.
unsigned CategoryMarkColour(const std::string& category);

}  // namespace tolvane
