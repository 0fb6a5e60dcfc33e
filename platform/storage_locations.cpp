#include "platform/storage_locations.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace tolvane::platform {
namespace {

namespace fs = std::filesystem;

std::string UserName() {
    for (const char* variable : {"USER", "LOGNAME"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value != '\0') return value;
    }
    return {};
}

// The folders in parent, in name order; a parent that is missing or cannot
// be read has none.
std::vector<std::string> SubFolders(const std::string& parent) {
    std::vector<std::string> folders;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(parent, error)) {
        if (entry.is_directory(error)) folders.push_back(entry.path().string());
    }
    std::sort(folders.begin(), folders.end());
    return folders;
}

}  // namespace

std::vector<std::string> RemovableVolumeParents() {
    const std::string user = UserName();
    if (user.empty()) return {};
    return {"/media/" + user, "/run/media/" + user};
}

std::vector<std::string> StorageLocations(const std::string& documentsFolder,
                                          const std::vector<std::string>& volumeParents) {
    std::vector<std::string> locations = {documentsFolder};
    for (const std::string& parent : volumeParents) {
        const std::vector<std::string> volumes = SubFolders(parent);
        locations.insert(locations.end(), volumes.begin(), volumes.end());
    }
    return locations;
}

std::vector<std::string> StorageLocations(const std::string& documentsFolder) {
    return StorageLocations(documentsFolder, RemovableVolumeParents());
}

}  // namespace tolvane::platform
