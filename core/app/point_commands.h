#pragma once

#include <string>

#include "core/data/point_collection.h"
#include "core/state/app_state.h"

namespace tolvane {

// What the point dialogs of the window do to the program.

// A new point at the current fix, named after the next free number of its
// kind ("WP001", "POI001"); haveFix says whether there was a valid fix to
// take it from.
GeoPoint NewPointAtFix(AppState& app, PointKind kind, const PointCollection& points, bool& haveFix);

// The manager's query with the current fix, when there is one.
PointQuery QueryAtFix(AppState& app);

// Makes the collection the program's waypoint and POI lists, which the map
// views draw.
void PublishPoints(AppState& app, const PointCollection& points);

// Reads the waypoint file and the POI folder of the settings into the
// collection and publishes it.
void ReloadPoints(AppState& app, PointCollection& points);

// Another waypoint file or POI folder, remembered in the settings.
void ChangePointLocations(AppState& app, const std::string& waypointFile,
                          const std::string& poiFolder);

// Go To one point: it becomes the one destination of a new list, not saved
// yet, and navigation is switched on.
void StartGoTo(AppState& app, const GeoPoint& point);

// Where a new destination list is saved unless the user says otherwise.
std::string DefaultDestinationPath(const AppState& app);

}  // namespace tolvane
