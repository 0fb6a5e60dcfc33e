#include "core/app/file_import.h"

#include <cstdio>
#include <filesystem>
#include <set>

#include "core/base/string_manager.h"
#include "core/data/geo_point_file.h"

namespace fs = std::filesystem;

namespace tolvane {
namespace {

// A point file the import writes: its place and every point it will hold.
struct PendingFile {
    std::string path;
    std::vector<GeoPoint> points;
};

std::string PartPath(const std::string& path) {
    return path + ".part";
}

bool Exists(const std::string& path) {
    std::error_code error;
    return fs::exists(path, error);
}

bool Free(const std::string& path, const std::set<std::string>& taken) {
    return !Exists(path) && taken.count(path) == 0;
}

// "folder/stem.csv", or "folder/stem 2.csv" and on when the name is taken
// on the disk or by another file of this import. A route without a name
// is the first free "Route 1.csv", "Route 2.csv", ...
std::string FreeCsvPath(const std::string& folder, const std::string& stem,
                        const std::set<std::string>& taken) {
    const auto name = [&](int number) {
        if (stem.empty()) return FillLanguageText(kTextUnnamedRoute, {std::to_string(number)});
        return number == 1 ? stem : stem + " " + std::to_string(number);
    };
    std::string path = folder + "/" + name(1) + ".csv";
    for (int number = 2; !Free(path, taken); ++number) {
        path = folder + "/" + name(number) + ".csv";
    }
    return path;
}

std::vector<GeoPoint> ToGeoPoints(const std::vector<ImportPoint>& points) {
    std::vector<GeoPoint> geoPoints;
    for (std::size_t i = 0; i < points.size(); ++i) {
        geoPoints.push_back(ToGeoPoint(points[i], static_cast<int>(i) + 1));
    }
    return geoPoints;
}

std::vector<GeoPoint> ListToVector(DynamicList<GeoPoint>& list) {
    std::vector<GeoPoint> points;
    list.ForEach([&](const GeoPoint& point) { points.push_back(point); });
    return points;
}

// The file the waypoints go to, holding what it held before and them. A
// POI file that exists but can't be read is never replaced: its points
// would be lost.
bool AddWaypointFile(AppState& app, std::vector<GeoPoint> waypoints, int poiCategory,
                     std::vector<PendingFile>& files) {
    PendingFile file;
    if (poiCategory == kImportToWaypointList) {
        file.path = app.runtime.waypointFile;
        file.points = ListToVector(app.points.waypoints);
    } else {
        const std::string category = CategoryName(poiCategory);
        for (GeoPoint& point : waypoints) point.category = category;
        file.path = app.runtime.poiFolder + "/" + category + ".csv";
        DynamicList<GeoPoint> existing;
        std::error_code error;
        const bool unreadable = Exists(file.path) && (!fs::is_regular_file(file.path, error) ||
                                                      !LoadPointFile(file.path, existing).opened);
        if (unreadable) {
            files.push_back(std::move(file));
            return false;
        }
        file.points = ListToVector(existing);
    }
    file.points.insert(file.points.end(), waypoints.begin(), waypoints.end());
    files.push_back(std::move(file));
    return true;
}

void AddRouteFiles(const std::string& folder, const std::vector<ImportRoute>& routes,
                   std::vector<PendingFile>& files) {
    std::set<std::string> taken;
    for (const ImportRoute& route : routes) {
        PendingFile file{FreeCsvPath(folder, RouteFileStem(route.name), taken),
                         ToGeoPoints(route.points)};
        taken.insert(file.path);
        files.push_back(std::move(file));
    }
}

bool WritePart(const PendingFile& file) {
    DynamicList<GeoPoint> list;
    for (const GeoPoint& point : file.points) list.Append(point);
    return SavePointFile(PartPath(file.path), list);
}

void RemoveParts(const std::vector<PendingFile>& files) {
    for (const PendingFile& file : files) std::remove(PartPath(file.path).c_str());
}

// Writes every file beside its place, then puts them all in place; the
// first file that can't be written is returned and none is put in place.
// Renaming within a folder needs no room, so once every part is written
// the files go in place together; should one still fail, it is returned
// as well, and the lists in memory stay as they were.
std::string WriteAll(const std::vector<PendingFile>& files) {
    for (const PendingFile& file : files) {
        if (!WritePart(file)) {
            RemoveParts(files);
            return file.path;
        }
    }
    std::string failed;
    for (const PendingFile& file : files) {
        if (std::rename(PartPath(file.path).c_str(), file.path.c_str()) != 0 && failed.empty()) {
            failed = file.path;
        }
    }
    RemoveParts(files);
    return failed;
}

void AddToLists(AppState& app, const std::vector<GeoPoint>& waypoints, int poiCategory) {
    if (poiCategory == kImportToWaypointList) {
        for (const GeoPoint& point : waypoints) app.points.waypoints.Append(point);
        return;
    }
    // The POI list holds the POI only when they were loaded at start-up.
    if (!app.options.loadPoiAtStartup) return;
    for (GeoPoint point : waypoints) {
        point.category = CategoryName(poiCategory);
        app.points.pois.Append(point);
    }
}

}  // namespace

ImportOutcome ImportIntoProgram(AppState& app, const ImportContents& contents, int poiCategory) {
    ImportOutcome outcome;
    const std::vector<GeoPoint> waypoints = ToGeoPoints(contents.waypoints);
    std::vector<PendingFile> files;
    const std::lock_guard<std::mutex> guard(app.points.lock);
    if (!waypoints.empty() && !AddWaypointFile(app, waypoints, poiCategory, files)) {
        outcome.failedPath = files.back().path;
        return outcome;
    }
    if (!contents.routes.empty()) {
        std::error_code error;
        fs::create_directories(app.folders.destinationDir, error);
        AddRouteFiles(app.folders.destinationDir, contents.routes, files);
    }
    outcome.failedPath = WriteAll(files);
    if (!outcome.failedPath.empty()) return outcome;
    for (std::size_t i = waypoints.empty() ? 0 : 1; i < files.size(); ++i) {
        outcome.routeFiles.push_back(files[i].path);
    }
    AddToLists(app, waypoints, poiCategory);
    if (!contents.tracks.empty()) ShowTracksOnMap(app, contents.tracks);
    return outcome;
}

std::string ImportDoneMessage(const ImportContents& contents, const ImportOutcome& outcome) {
    std::string message = FillLanguageText(kTextImportDone, {ImportSummary(contents)});
    if (!outcome.routeFiles.empty()) {
        const std::string folder = fs::path(outcome.routeFiles.front()).parent_path().string();
        message += "\n\n" + FillLanguageText(kTextRoutesSaved, {folder});
    }
    return message;
}

void ShowTracksOnMap(AppState& app, const std::vector<ImportTrack>& tracks) {
    ViewTracks(app.track, app.options, tracks);
    // The user's own map shows a track in more detail, when one is loaded.
    app.currentView = app.map.Loaded() ? kViewMap : kViewWorldMap;
}

std::string ViewTrackFile(AppState& app, const std::string& path, const ImportRead& read) {
    std::size_t points = 0;
    for (const ImportTrack& track : read.contents.tracks) points += track.points.size();
    const std::string problem = ImportProblemText(read);
    const std::string more = problem.empty() ? "" : "\n\n" + problem;
    if (points == 0) return FillLanguageText(kTextTrackEmpty, {path}) + more;
    ShowTracksOnMap(app, read.contents.tracks);
    if (read.pointsSkipped == 0 && problem.empty()) return {};
    return FillLanguageText(kTextTrackPartlyRead,
                            {path, GroupedCount(points), GroupedCount(read.pointsSkipped)}) +
           more;
}

}  // namespace tolvane
