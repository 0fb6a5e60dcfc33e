// libFuzzer target of the waypoint, POI and destination file reader. What
// it reads must keep its rules and survive a save and a second read.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "core/data/geo_point_file.h"
#include "tools/fuzz/fuzz_file.h"

namespace {

using tolvane::GeoPoint;

std::vector<GeoPoint> Points(tolvane::DynamicList<GeoPoint>& list) {
    std::vector<GeoPoint> points;
    list.ForEach([&points](GeoPoint& point) { points.push_back(point); });
    return points;
}

void CheckPoint(const GeoPoint& point) {
    if (!(std::abs(point.latitude) <= 90) || !(std::abs(point.longitude) <= 180)) std::abort();
    // The longest texts are cut to their limits in UTF-16 units; a UTF-8
    // character takes at most three bytes per unit.
    if (point.name.size() > 3 * 19 || point.comment.size() > 3 * 255) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const tolvane::fuzz::InputFile file(data, size);
    tolvane::DynamicList<GeoPoint> list;
    const tolvane::CsvReadResult read = tolvane::LoadPointFile(file.Path(), list);
    if (!read.opened || read.recordsRead != list.Count()) std::abort();
    const std::vector<GeoPoint> points = Points(list);
    for (const GeoPoint& point : points) CheckPoint(point);

    // Saved and read again, every point comes back in its place.
    const tolvane::fuzz::InputFile saved(nullptr, 0);
    if (!tolvane::SavePointFile(saved.Path(), list)) std::abort();
    tolvane::DynamicList<GeoPoint> again;
    tolvane::LoadPointFile(saved.Path(), again);
    const std::vector<GeoPoint> reread = Points(again);
    if (reread.size() != points.size()) std::abort();
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (std::abs(reread[i].latitude - points[i].latitude) > 1e-6 ||
            std::abs(reread[i].longitude - points[i].longitude) > 1e-6 ||
            reread[i].proximityRange != points[i].proximityRange ||
            reread[i].category != points[i].category) {
            std::abort();
        }
    }
    return 0;
}
