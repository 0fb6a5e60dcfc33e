#include "core/data/point_collection.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "core/data/geo_point_file.h"
#include "core/data/point_entry.h"
#include "core/geo/distance.h"
#include "core/geo/formatting.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;

constexpr unsigned kWaypointMarkColour = 0x606060;
// The POI of the user's own categories go into this file of the folder.
constexpr char kOwnPoiFile[] = "My POI.csv";

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) {
        return static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    });
    return text;
}

bool IsCsvFile(const fs::directory_entry& entry) {
    std::error_code error;
    return Lower(entry.path().extension().string()) == ".csv" && entry.is_regular_file(error);
}

bool Matches(const PointQuery& query, const GeoPoint& point, bool isWaypoint) {
    if (query.kinds == KindFilter::kWaypoints && !isWaypoint) return false;
    if (query.kinds == KindFilter::kPoi && isWaypoint) return false;
    if (!query.category.empty() && StoredCategory(query.category) != point.category) return false;
    if (query.search.empty()) return true;
    const std::string search = Lower(query.search);
    return Lower(point.name).find(search) != std::string::npos ||
           Lower(point.comment).find(search) != std::string::npos;
}

double DistanceFrom(const PointQuery& query, const GeoPoint& point) {
    return DistanceKm(query.latitude, query.longitude, point.latitude, point.longitude);
}

// A file name of the category text: characters that cannot stand in a file
// name become blanks.
std::string CategoryFileName(const std::string& category) {
    std::string name = category;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '/' || c == '\\'; }, ' ');
    return name.empty() || name[0] == '.' ? kOwnPoiFile : name + ".csv";
}

}  // namespace

std::vector<std::string> CsvFilesOf(const std::string& folder) {
    std::vector<std::string> files;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
        if (IsCsvFile(entry)) files.push_back(entry.path().string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

void PointCollection::Load(const std::string& waypointFile, const std::string& poiFolder) {
    files_.clear();
    poiFolder_ = poiFolder;
    std::vector<std::string> paths = CsvFilesOf(poiFolder);
    paths.insert(paths.begin(), waypointFile);
    for (const std::string& path : paths) {
        DynamicList<GeoPoint> loaded;
        LoadPointFile(path, loaded);
        File& file = files_.emplace_back(File{path, {}});
        loaded.ForEach([&](const GeoPoint& point) { file.points.push_back(point); });
    }
}

std::vector<PointRow> PointCollection::Select(const PointQuery& query) const {
    std::vector<PointRow> rows;
    for (int file = 0; file < static_cast<int>(files_.size()); ++file) {
        const std::vector<GeoPoint>& points = files_[file].points;
        for (int index = 0; index < static_cast<int>(points.size()); ++index) {
            if (Matches(query, points[index], file == 0)) rows.push_back({file, index});
        }
    }
    const auto byName = [this](PointRow a, PointRow b) {
        return Lower(At(a).name) < Lower(At(b).name);
    };
    std::stable_sort(rows.begin(), rows.end(), byName);
    if (query.sort == PointSort::kByDistance && query.haveFix) {
        std::stable_sort(rows.begin(), rows.end(), [&](PointRow a, PointRow b) {
            return DistanceFrom(query, At(a)) < DistanceFrom(query, At(b));
        });
    }
    return rows;
}

const GeoPoint& PointCollection::At(PointRow row) const {
    return files_[row.file].points[row.index];
}

PointKind PointCollection::KindOf(PointRow row) const {
    return row.file == 0 ? PointKind::kWaypoint : PointKind::kPoi;
}

bool PointCollection::Replace(PointRow row, const GeoPoint& point) {
    files_[row.file].points[row.index] = point;
    return Save(row.file);
}

bool PointCollection::Remove(PointRow row) {
    std::vector<GeoPoint>& points = files_[row.file].points;
    points.erase(points.begin() + row.index);
    return Save(row.file);
}

bool PointCollection::Add(PointKind kind, const GeoPoint& point) {
    const int file = kind == PointKind::kWaypoint ? 0 : PoiFileFor(point.category);
    files_[file].points.push_back(point);
    return Save(file);
}

int PointCollection::PoiFileFor(const std::string& category) {
    const std::string path = (fs::path(poiFolder_) / CategoryFileName(category)).string();
    for (int file = 1; file < static_cast<int>(files_.size()); ++file) {
        if (files_[file].path == path) return file;
    }
    files_.push_back({path, {}});
    return static_cast<int>(files_.size()) - 1;
}

bool PointCollection::Save(int file) {
    DynamicList<GeoPoint> list;
    for (const GeoPoint& point : files_[file].points) list.Append(point);
    failedPath_.clear();
    if (SavePointFile(files_[file].path, list)) return true;
    failedPath_ = files_[file].path;
    return false;
}

void PointCollection::CopyTo(DynamicList<GeoPoint>& waypoints, DynamicList<GeoPoint>& pois) const {
    waypoints.Clear();
    pois.Clear();
    for (std::size_t file = 0; file < files_.size(); ++file) {
        for (const GeoPoint& point : files_[file].points) {
            (file == 0 ? waypoints : pois).Append(point);
        }
    }
}

std::string DistanceText(const PointQuery& query, const GeoPoint& point, int unitSystem) {
    std::string text;
    if (query.haveFix) FormatDistance(unitSystem, DistanceFrom(query, point), &text);
    return text;
}

unsigned CategoryMarkColour(const std::string& category) {
    // Thirty hues around the colour wheel, every seventh so that
    // neighbouring categories differ clearly.
    const int index = CategoryIndex(category);
    if (index == 0 || index == CategoryIndex("Waypoint")) return kWaypointMarkColour;
    const int hue = (index * 7 % 30) * 12;
    const auto channel = [hue](int offset) {
        const int h = (hue + offset) % 360;
        const int level = h < 60    ? 255
                          : h < 180 ? 255 - (h - 60) * 2
                          : h < 240 ? 15
                                    : 15 + (h - 240) * 2;
        return static_cast<unsigned>(std::clamp(level, 15, 255));
    };
    return channel(0) << 16 | channel(240) << 8 | channel(120);
}

PointKind KindToAdd(KindFilter kinds) {
    return kinds == KindFilter::kPoi ? PointKind::kPoi : PointKind::kWaypoint;
}

}  // namespace tolvane
