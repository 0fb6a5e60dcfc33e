#pragma once

#include <cstdint>

#include "core/app/program.h"
#include "core/geo/geo_point.h"

namespace tolvane {

// Language strings of the question before a destination list with unsaved
// changes is closed: one for a list with a file (its %s is the file's name)
// and one for a list that has none yet.
inline constexpr std::uint32_t kTextSaveDestinationChanges = 14251;
inline constexpr std::uint32_t kTextSaveNewDestinationList = 14252;

// Asked before the open destination list is closed or replaced (Close, New,
// Open, Go To, Exit). A list without unsaved changes may go at once;
// otherwise the user chooses: Save writes the list to its file (a list
// without one asks where first) and lets it go, Discard lets it go as it is,
// Cancel keeps it. A save that fails is reported and keeps the list too.
// Returns whether the list may go.
bool MayDropDestinationList(Program& program);

// The Close command of the destination list.
void CloseDestinations(Program& program);

// Go To one point: it becomes the one destination of a new list, not saved
// yet, and navigation is switched on; false when the user kept the open
// list instead.
bool StartGoTo(Program& program, const GeoPoint& point);

}  // namespace tolvane
