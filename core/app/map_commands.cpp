#include "core/app/map_commands.h"

#include <algorithm>
#include <filesystem>

#include "core/app/commands.h"
#include "core/app/language_messages.h"
#include "core/base/csv_text.h"
#include "core/geo/formatting.h"
#include "core/maps/map_files.h"
#include "core/maps/recent_maps.h"
#include "core/placement/picture_map_placement.h"

namespace tolvane {
namespace {

bool InRange(int id, int first, int last) {
    return id >= first && id <= last;
}

void Refit(MapState& map) {
    map.fit = FitCalibration(map.calibration);
}

void SaveRefPoints(Program& program) {
    const MapState& map = program.app.map;
    const std::string path = RefPointPath(program.app.folders.refPointDir, map.path);
    std::error_code error;
    std::filesystem::create_directories(program.app.folders.refPointDir, error);
    if (!WriteRefPoints(path, map.calibration, map.picture->width, map.picture->height)) {
        ShowLanguageMessage(program.host, kTextRefPointsNotSaved, MessageIcon::kStop, path);
    }
}

void ForgetRecentMap(Program& program, const std::string& path, std::uint32_t textId) {
    Options& options = program.app.options;
    for (int i = 0; i < kRecentMapCount; ++i) {
        if (RecentMap(options, i) != path) continue;
        RemoveRecentMap(options, i);
        break;
    }
    ShowLanguageMessage(program.host, textId, MessageIcon::kStop, path);
}

}  // namespace

bool IsMapCommand(int id) {
    return id == kCommandMap || id == kCommandPlaceRefPoint ||
           InRange(id, kCommandFirstRecentMap, kCommandLastRecentMap) ||
           InRange(id, kCommandFirstRefPoint, kCommandLastRefPoint);
}

bool IsMapCommandAvailable(const AppState& app, int id) {
    const MapState& map = app.map;
    if (id == kCommandMap) return map.Loaded();
    if (id == kCommandPlaceRefPoint) return map.Loaded() && map.placing >= 0;
    if (InRange(id, kCommandFirstRecentMap, kCommandLastRecentMap)) {
        return !RecentMap(app.options, id - kCommandFirstRecentMap).empty();
    }
    return map.Loaded() && CanSetRefPoint(map.calibration, id - kCommandFirstRefPoint);
}

void ShowMapView(Program& program) {
    program.app.currentView = kViewMap;
    program.host.Repaint();
}

void StartRefPoint(Program& program, int index) {
    MapState& map = program.app.map;
    const RefPoint& point = map.calibration.points[index];
    const MapProjection::Point centre =
        point.set ? MapProjection::Point{point.x, point.y} : MapCentre(program.app);
    map.crossX = centre.x;
    map.crossY = centre.y;
    map.placing = index;
    ShowMapView(program);
}

std::string TakeRecentMap(Program& program, int index) {
    Options& options = program.app.options;
    const std::string path = RecentMap(options, index);
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) {
        ForgetRecentMap(program, path, kTextMapMissing);
        return {};
    }
    MoveRecentMapToFront(options, index);
    return path;
}

void SetLoadedMap(AppState& app, const std::string& path,
                  std::shared_ptr<const MapPicture> picture) {
    MapState& map = app.map;
    map = MapState{};
    map.path = path;
    map.calibration =
        FindCalibration(path, app.folders.refPointDir, picture->width, picture->height);
    map.picture = std::move(picture);
    Refit(map);
    app.mapKeys.mapZoom = 0;
    app.mapKeys.panColumns = 0;
    app.mapKeys.panRows = 0;
}

void OnMapLoaded(Program& program, const std::string& path,
                 std::shared_ptr<const MapPicture> picture) {
    SetLoadedMap(program.app, path, std::move(picture));
    ShowMapView(program);
}

void OpenMapFile(Program& program, const std::string& path) {
    AddRecentMap(program.app.options, path);
    OnCommand(program, kCommandFirstRecentMap);
}

void OnMapUnreadable(Program& program, const std::string& path) {
    ForgetRecentMap(program, path, kTextMapUnreadable);
}

bool OfferedRefPosition(const AppState& app, double& latitude, double& longitude) {
    const MapState& map = app.map;
    if (map.placing >= 0 && map.calibration.points[map.placing].set) {
        latitude = map.calibration.points[map.placing].latitude;
        longitude = map.calibration.points[map.placing].longitude;
        return true;
    }
    if (app.gps.connected && app.gps.fixValid) {
        latitude = app.gps.latitude;
        longitude = app.gps.longitude;
        return true;
    }
    latitude = app.mapFollow.latitude;
    longitude = app.mapFollow.longitude;
    return app.mapFollow.havePosition;
}

bool OfferedRefPositionText(const AppState& app, std::string& latitude, std::string& longitude) {
    double lat = 0;
    double lon = 0;
    if (!OfferedRefPosition(app, lat, lon)) return false;
    const int format = app.options.coordinateFormat;
    FormatLatitude(format, HemisphereStyle::kHemisphereLast, lat, &latitude);
    FormatLongitude(format, HemisphereStyle::kHemisphereLast, lon, &longitude);
    return true;
}

std::string RefPointResidualsText(const MapState& map) {
    if (!map.fit.valid || map.calibration.Count() < 3) return {};
    std::string text;
    for (int i = 0; i < kRefPointCount; ++i) {
        if (!map.calibration.points[i].set) continue;
        text += FormatText("%d: %.1f m   ", i + 1, map.fit.residualMetres[i]);
    }
    return text + FormatText("RMS %.1f m", map.fit.rmsMetres);
}

bool TapRefPoint(Program& program, const Rect& body, int x, int y) {
    MapState& map = program.app.map;
    if (map.placing < 0 || program.app.currentView != kViewMap) return false;
    if (x < body.left || x >= body.right || y < body.top || y >= body.bottom) return false;
    const MapProjection::Point at =
        ComputeMapGeometry(program.app, body).screenToPicture.Apply(x, y);
    map.crossX = std::clamp(at.x, 0.0, 1.0 * map.picture->width);
    map.crossY = std::clamp(at.y, 0.0, 1.0 * map.picture->height);
    program.host.Repaint();
    OnCommand(program, kCommandPlaceRefPoint);
    return true;
}

void MoveCrossHair(Program& program, int columns, int rows) {
    MapState& map = program.app.map;
    const double step = MapStepPixels(program.app) / 4;
    map.crossX = std::clamp(map.crossX + columns * step, 0.0, 1.0 * map.picture->width);
    map.crossY = std::clamp(map.crossY + rows * step, 0.0, 1.0 * map.picture->height);
    program.host.Repaint();
}

void PlaceRefPoint(Program& program, double latitude, double longitude) {
    MapState& map = program.app.map;
    if (map.placing < 0) return;
    map.calibration.points[map.placing] = {true, map.crossX, map.crossY, latitude, longitude};
    map.placing = -1;
    Refit(map);
    SaveRefPoints(program);
    program.host.Repaint();
}

void DropRefPoint(Program& program, int index) {
    MapState& map = program.app.map;
    map.calibration.points[index] = RefPoint{};
    map.placing = -1;
    Refit(map);
    SaveRefPoints(program);
    program.host.Repaint();
}

void CancelRefPoint(Program& program) {
    program.app.map.placing = -1;
    program.host.Repaint();
}

}  // namespace tolvane
