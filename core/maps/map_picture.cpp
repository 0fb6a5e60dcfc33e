#include "core/maps/map_picture.h"

#include <cmath>

namespace tolvane {

LevelSize LargestLevelSize(int width, int height) {
    const double pixels = static_cast<double>(width) * height;
    if (pixels <= static_cast<double>(kMaxLevelPixels)) return {width, height};
    const double shrink = std::sqrt(kMaxLevelPixels / pixels);
    return {std::max(1, static_cast<int>(width * shrink)),
            std::max(1, static_cast<int>(height * shrink))};
}

int PickLevel(const MapPicture& picture, double screenPerPixel) {
    int chosen = 0;
    for (int i = 1; i < static_cast<int>(picture.levels.size()); ++i) {
        const double levelPerPixel = static_cast<double>(picture.levels[i].width) / picture.width;
        if (levelPerPixel < screenPerPixel) break;
        chosen = i;
    }
    return chosen;
}

}  // namespace tolvane
