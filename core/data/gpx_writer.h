#pragma once

#include <string>
#include <vector>

#include "core/geo/geo_point.h"

namespace tolvane {

// GPX 1.1 documents for taking points to other GPS software. A point keeps
// its position, name, comment, voice text (as the description) and category
// (as the type); the speed limit and the proximity range have no place in
// GPX and are left out.

// Waypoints and POI as <wpt> elements.
std::string WaypointsGpx(const std::vector<GeoPoint>& points);

// A destination list as one route of <rtept> elements, in list order.
std::string RouteGpx(const std::string& name, const std::vector<GeoPoint>& points);

// Writes a document to path, replacing the file; false when it cannot be
// written completely.
bool SaveGpxFile(const std::string& path, const std::string& document);

}  // namespace tolvane
