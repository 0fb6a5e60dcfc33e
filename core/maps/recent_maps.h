#pragma once

#include <string>

#include "core/data/options.h"

namespace tolvane {

// The five "Recent Maps" entries of Options: entry 0 is the latest map.

std::string RecentMap(const Options& options, int index);

// The entry's menu text: the picture's file name, or "Empty".
std::string RecentMapText(const Options& options, int index);

// Moves an entry to the front; the entries before it shift down one place.
void MoveRecentMapToFront(Options& options, int index);

// Puts a path at the front: an entry that names it already moves there,
// else every entry shifts down and the last one falls off.
void AddRecentMap(Options& options, const std::string& path);

// Takes an entry out; the ones after it shift up and the last is emptied.
void RemoveRecentMap(Options& options, int index);

}  // namespace tolvane
