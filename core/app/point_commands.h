#pragma once

#include <set>
#include <string>

#include "core/data/point_collection.h"
#include "core/nav/destination_list.h"
#include "core/state/app_state.h"

namespace tolvane {

// What the point dialogs of the window do to the program.

// The first of prefix001, prefix002, ... that is not taken, so that marking
// points one after another never asks for a name.
std::string NextFreeName(const std::string& prefix, const std::set<std::string>& taken);

// A new point at the current fix, named after the next free number of its
// kind among the waypoints and POI ("WP001", "POI001"); haveFix says whether
// there was a valid fix to take it from.
GeoPoint NewPointAtFix(AppState& app, PointKind kind, const PointCollection& points, bool& haveFix);

// A new destination at the current fix, named as a new waypoint after the
// names of the list it joins and of the program's waypoints and POI, so
// that no mark on the maps shares its name.
GeoPoint NewDestinationAtFix(AppState& app, const DestinationDraft& draft, bool& haveFix);

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

// Where a new destination list is saved unless the user says otherwise.
std::string DefaultDestinationPath(const AppState& app);

}  // namespace tolvane
