#pragma once

#include <string>
#include <vector>

namespace tolvane::platform {

// The folders that hold the user's mounted removable volumes:
// /media/$USER and /run/media/$USER (empty when the user is unknown).
std::vector<std::string> RemovableVolumeParents();

// Where the "My GPS" tree can be kept: the documents folder first, then
// every volume mounted in one of the parents, each parent's in name order.
std::vector<std::string> StorageLocations(const std::string& documentsFolder,
                                          const std::vector<std::string>& volumeParents);

// The same for this machine's removable volumes.
std::vector<std::string> StorageLocations(const std::string& documentsFolder);

}  // namespace tolvane::platform
