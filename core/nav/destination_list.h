#pragma once

#include <string>
#include <vector>

#include "core/base/csv_text.h"
#include "core/geo/geo_point.h"
#include "core/nav/navigation.h"

namespace tolvane {

// The destination list as its editor works on it, away from the navigation
// lock: the points in order and which of them is current.
struct DestinationDraft {
    std::vector<GeoPoint> points;
    int current = kNoDestination;
    bool edited = false;  // a step below changed the points
};

DestinationDraft CopyDestinations(Navigation& navigation);

// A destination as the list shows it: its number and name, and whether it
// is the current one or was reached ("2. Harbour  [Current]").
std::string DestinationRowText(const DestinationDraft& draft, int index);

// Puts an edited list in place of the navigation's: the draft's current
// destination stays current (the first not reached one when it has none),
// and the previous destination is the last reached one in list order. An
// edited draft leaves the list with unsaved changes until it is saved.
void ApplyDestinations(Navigation& navigation, const DestinationDraft& draft);

// The editor's steps, each marking the draft edited when it changes a
// point; the current destination follows its point.
// Moves the point at index one place up (-1) or down (+1); at an end nothing
// changes.
void MoveDestination(DestinationDraft& draft, int index, int step);
// Inserts before index; an index past the end appends.
void InsertDestination(DestinationDraft& draft, int index, const GeoPoint& point);
// Removes the point at index; when it was current, the next one not reached
// becomes current.
void RemoveDestination(DestinationDraft& draft, int index);
// Puts point in the place of the one at index.
void ReplaceDestination(DestinationDraft& draft, int index, const GeoPoint& point);

// Makes the destination at index the current one and not reached; the
// others keep their flags.
void SelectDestination(Navigation& navigation, int index);

// Go To a single point: a new list, not saved anywhere yet, of that point
// alone, which becomes current.
void GoToPoint(Navigation& navigation, const GeoPoint& point);

// A new, empty list that will be saved to path.
void NewDestinationList(Navigation& navigation, const std::string& path);

// Reads a destination file into the navigation as its open list; on a file
// that cannot be opened the list stays as it was.
CsvReadResult OpenDestinationFile(Navigation& navigation, const std::string& path);

// Saves the open list to path, which becomes its file and then holds every
// change; false when the file cannot be written (PointFileNotSavedMessage
// says so).
bool SaveDestinationList(Navigation& navigation, const std::string& path);

}  // namespace tolvane
