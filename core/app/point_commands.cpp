#include "core/app/point_commands.h"

#include <set>

#include "core/base/csv_text.h"
#include "core/nav/destination_list.h"

namespace tolvane {
namespace {

bool HaveFix(const AppState& app) {
    return app.gpsRunning && app.gps.fixValid != 0;
}

// Names numbered from 1 past the ones already taken, so that marking points
// one after another never asks for a name.
std::string NextFreeName(const char* prefix, const PointCollection& points) {
    std::set<std::string> taken;
    for (const PointRow row : points.Select({})) taken.insert(points.At(row).name);
    for (int number = 1;; ++number) {
        std::string name = FormatText("%s%03d", prefix, number);
        if (taken.count(name) == 0) return name;
    }
}

}  // namespace

GeoPoint NewPointAtFix(AppState& app, PointKind kind, const PointCollection& points,
                       bool& haveFix) {
    GeoPoint point;
    haveFix = HaveFix(app);
    if (haveFix) {
        point.latitude = app.gps.latitude;
        point.longitude = app.gps.longitude;
    }
    const bool waypoint = kind == PointKind::kWaypoint;
    point.name = NextFreeName(waypoint ? "WP" : "POI", points);
    if (waypoint) point.category = "Waypoint";
    return point;
}

PointQuery QueryAtFix(AppState& app) {
    PointQuery query;
    query.haveFix = HaveFix(app);
    query.latitude = app.gps.latitude;
    query.longitude = app.gps.longitude;
    return query;
}

void PublishPoints(AppState& app, const PointCollection& points) {
    const std::lock_guard<std::mutex> guard(app.points.lock);
    points.CopyTo(app.points.waypoints, app.points.pois);
}

void ReloadPoints(AppState& app, PointCollection& points) {
    points.Load(app.runtime.waypointFile, app.runtime.poiFolder);
    PublishPoints(app, points);
}

void ChangePointLocations(AppState& app, const std::string& waypointFile,
                          const std::string& poiFolder) {
    app.runtime.waypointFile = waypointFile;
    app.runtime.poiFolder = poiFolder;
    WriteWideField(app.options.waypointFile, waypointFile);
    WriteWideField(app.options.poiFolder, poiFolder);
}

void StartGoTo(AppState& app, const GeoPoint& point) {
    GoToPoint(app.navigation, point);
    app.options.navigation = 1;
}

std::string DefaultDestinationPath(const AppState& app) {
    return app.folders.destinationDir + "/Destinations.csv";
}

}  // namespace tolvane
