#include "core/maps/map_picture.h"

#include <algorithm>
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

RowShrinker::RowShrinker(int width, int height, LevelSize to)
    : height_(height),
      columnOf_(static_cast<std::size_t>(width)),
      count_(static_cast<std::size_t>(to.width)),
      sums_(static_cast<std::size_t>(to.width) * 3) {
    image_.width = to.width;
    image_.height = to.height;
    image_.pixels.assign(static_cast<std::size_t>(to.width) * to.height, 0);
    for (int x = 0; x < width; ++x) {
        columnOf_[x] = static_cast<int>(static_cast<long long>(x) * to.width / width);
        ++count_[columnOf_[x]];
    }
}

void RowShrinker::AddRow(const std::uint8_t* rgb) {
    if (row_ >= height_) return;
    const int target = static_cast<int>(static_cast<long long>(row_) * image_.height / height_);
    if (target != target_) FinishRow();
    target_ = target;
    for (std::size_t x = 0; x < columnOf_.size(); ++x, rgb += 3) {
        std::uint64_t* sum = &sums_[static_cast<std::size_t>(columnOf_[x]) * 3];
        sum[0] += rgb[0];
        sum[1] += rgb[1];
        sum[2] += rgb[2];
    }
    ++rowsAdded_;
    if (++row_ == height_) FinishRow();
}

void RowShrinker::FinishRow() {
    if (rowsAdded_ == 0) return;
    std::uint32_t* out = image_.pixels.data() + static_cast<std::size_t>(target_) * image_.width;
    for (int x = 0; x < image_.width; ++x) {
        const std::uint64_t cells = static_cast<std::uint64_t>(count_[x]) * rowsAdded_;
        if (cells == 0) continue;  // a result wider than the picture
        const std::uint64_t* sum = &sums_[static_cast<std::size_t>(x) * 3];
        out[x] = static_cast<std::uint32_t>((sum[0] / cells) << 16 | (sum[1] / cells) << 8 |
                                            sum[2] / cells);
    }
    std::fill(sums_.begin(), sums_.end(), 0);
    rowsAdded_ = 0;
}

}  // namespace tolvane
