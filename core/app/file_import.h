#pragma once

#include <string>
#include <vector>

#include "core/data/point_import.h"
#include "core/state/app_state.h"

namespace tolvane {

// Where the waypoints of an imported file go: the waypoint list, or the POI
// of one category of the table.
inline constexpr int kImportToWaypointList = 0;

// What an import did.
struct ImportOutcome {
    // Empty when everything was imported; else the file that could not be
    // written, and nothing at all was imported.
    std::string failedPath;
    std::vector<std::string> routeFiles;  // the destination lists made of the routes
};

// Imports a file's contents that were read whole, all or nothing:
// - the waypoints join the waypoint list and its file, or, with a category
//   1..30, the POI file of that category in the POI folder
//   ("<folder>/<category>.csv", created or added to), each with that
//   category;
// - each route becomes a new destination list in the destination folder,
//   named after the route ("Lakeside.csv", "Lakeside 2.csv" when taken);
// - the tracks are shown on the map as "View Log File" shows a track.
// Every file is first written beside its place and only put in place when
// all were written, so a full disk leaves the old files and the lists as
// they were.
ImportOutcome ImportIntoProgram(AppState& app, const ImportContents& contents, int poiCategory);

// The message that tells the user an import was done: what came in and
// where the routes went.
std::string ImportDoneMessage(const ImportContents& contents, const ImportOutcome& outcome);

// "View Log File" after the file was read: the points that could be read
// become the viewed track, "Show Track" goes on and the World Map shows
// them. Returns what the user must be told, empty when the file read
// whole: how many points were skipped and where the file is damaged, or
// that it held no point (the track shown before is then kept).
std::string ViewTrackFile(AppState& app, const std::string& path, const ImportRead& read);

// Shows imported tracks as "View Log File" does.
void ShowTracksOnMap(AppState& app, const std::vector<ImportTrack>& tracks);

}  // namespace tolvane
