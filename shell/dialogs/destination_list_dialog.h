#pragma once

#include <QString>
#include <string>

class QWidget;

namespace tolvane {
struct Program;
}

namespace tolvane::shell {

// "Edit Destinations": the "Destn. List" dialog, which reorders, adds (from
// the waypoints and POI, or the current fix), edits and removes the
// destinations and shows which are reached. On OK the list takes its place
// in the navigation and is saved to its file.
void EditDestinations(Program& program, QWidget* parent);

// "Add Destination": a new point at the current fix, edited, appended to
// the open list (a new unsaved one when none is open) and saved.
void AddDestination(Program& program, QWidget* parent);

// "Destination": choose which destination of the list to go to.
void ChooseDestination(Program& program, QWidget* parent);

// "New" and "Open" of the destination list: a file chosen under
// "My GPS/Destinations"; a new list opens in the editor. A list with
// unsaved changes is first saved or dropped as the user says, or kept.
void NewDestinations(Program& program, QWidget* parent);
void OpenDestinations(Program& program, QWidget* parent);

// The file chooser for saving a destination list, starting at suggestion;
// empty when the user cancels.
QString AskDestinationFile(QWidget* parent, const std::string& suggestion);

}  // namespace tolvane::shell
