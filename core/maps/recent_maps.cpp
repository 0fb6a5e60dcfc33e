#include "core/maps/recent_maps.h"

#include <filesystem>
#include <utility>

namespace tolvane {

std::string RecentMap(const Options& options, int index) {
    return ReadWideField(options.recentMaps[index]);
}

std::string RecentMapText(const Options& options, int index) {
    const std::string path = RecentMap(options, index);
    if (path.empty()) return "Empty";
    return std::filesystem::path(path).filename().string();
}

void MoveRecentMapToFront(Options& options, int index) {
    for (int i = index; i > 0; --i) std::swap(options.recentMaps[i], options.recentMaps[i - 1]);
}

void AddRecentMap(Options& options, const std::string& path) {
    int index = kRecentMapCount - 1;
    for (int i = 0; i < kRecentMapCount; ++i) {
        if (RecentMap(options, i) == path) {
            index = i;
            break;
        }
    }
    WriteWideField(options.recentMaps[index], path);
    MoveRecentMapToFront(options, index);
}

void RemoveRecentMap(Options& options, int index) {
    for (int i = index; i + 1 < kRecentMapCount; ++i) {
        std::swap(options.recentMaps[i], options.recentMaps[i + 1]);
    }
    WriteWideField(options.recentMaps[kRecentMapCount - 1], "");
}

}  // namespace tolvane
