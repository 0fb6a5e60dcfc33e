#pragma once

class QWidget;

namespace tolvane {
struct Program;
}

namespace tolvane::shell {

// The "W & P Manager": the waypoints and POI in one list to filter, search,
// sort, edit, delete, go to and export. Every change is saved at once.
void ManagePoints(Program& program, QWidget* parent);

// "Add Waypoint" and "Add POI": the editor with a new point at the current
// fix; on OK the point is saved to its file and shown on the maps.
void AddPointAtFix(Program& program, QWidget* parent, bool poi);

}  // namespace tolvane::shell
