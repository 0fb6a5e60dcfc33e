#include "core/app/point_commands.h"

#include "core/base/csv_text.h"

namespace tolvane {
namespace {

bool HaveFix(const AppState& app) {
    return app.gpsRunning && app.gps.fixValid != 0;
}

GeoPoint PointAtFix(AppState& app, PointKind kind, const std::set<std::string>& taken,
                    bool& haveFix) {
    GeoPoint point;
    haveFix = HaveFix(app);
    if (haveFix) {
        point.latitude = app.gps.latitude;
        point.longitude = app.gps.longitude;
    }
    const bool waypoint = kind == PointKind::kWaypoint;
    point.name = NextFreeName(waypoint ? "WP" : "POI", taken);
    if (waypoint) point.category = "Waypoint";
    return point;
}

}  // namespace

std::string NextFreeName(const std::string& prefix, const std::set<std::string>& taken) {
    for (int number = 1;; ++number) {
        std::string name = FormatText("%s%03d", prefix.c_str(), number);
        if (taken.count(name) == 0) return name;
    }
}

GeoPoint NewPointAtFix(AppState& app, PointKind kind, const PointCollection& points,
                       bool& haveFix) {
    std::set<std::string> taken;
    for (const PointRow row : points.Select({})) taken.insert(points.At(row).name);
    return PointAtFix(app, kind, taken, haveFix);
}

GeoPoint NewDestinationAtFix(AppState& app, const DestinationDraft& draft, bool& haveFix) {
    std::set<std::string> taken;
    for (const GeoPoint& point : draft.points) taken.insert(point.name);
    {
        const std::lock_guard<std::mutex> guard(app.points.lock);
        const auto take = [&taken](const GeoPoint& point) { taken.insert(point.name); };
        app.points.waypoints.ForEach(take);
        app.points.pois.ForEach(take);
    }
    return PointAtFix(app, PointKind::kWaypoint, taken, haveFix);
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

std::string DefaultDestinationPath(const AppState& app) {
    return app.folders.destinationDir + "/Destinations.csv";
}

}  // namespace tolvane
