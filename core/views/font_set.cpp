#include "core/views/font_set.h"

#include <algorithm>

namespace tolvane {
namespace {

constexpr int kUnmadeSlotA = 46;
constexpr int kUnmadeSlotB = 49;

// Each slot's height as a fraction of the base height (numerator over 8)
// and its weight.
struct SlotShape {
    int eighths;
    int weight;
};

SlotShape ShapeOf(int slot) {
    switch (slot) {
        case 0:  // the title bar's status marks
            return {6, 600};
        case 2:  // GPS Info: altitude and speed, the date and time
            return {9, 400};
        case 4:  // the title bar's view name
            return {9, 700};
        case 17:  // GPS Info: the dilutions
            return {8, 0};
        case 20:  // GPS Info: the fix type
            return {9, 0};
        case 18:  // Satellites: elevation labels
        case 24:  // Satellites: the legend and the satellite numbers
            return {7, 400};
        case 23:  // Satellites: directions and the title
            return {9, 400};
        case 27:  // GPS Info: the coordinates, the largest text of the view
            return {16, 700};
        default:
            break;
    }
    // The remaining slots rise in steps of a quarter of the base height,
    // in three weights.
    static constexpr int kWeights[] = {400, 600, 700};
    return {6 + 2 * (slot / 3 % 8), kWeights[slot % 3]};
}

}  // namespace

int BaseFontHeight(int dpiY) {
    return (15 * dpiY + 48) / 96;
}

int WindowBaseHeight(int baseHeight, int width, int height) {
    // The reference window is 480 x 640 upright or 640 x 480 lying; the
    // shorter side against 480 and the longer against 640 say how much
    // room there is, and the smaller ratio wins so the texts always fit.
    const int shorter = std::min(width, height);
    const int longer = std::max(width, height);
    const int percent = std::clamp(std::min(shorter * 100 / 480, longer * 100 / 640), 75, 200);
    return (baseHeight * percent + 50) / 100;
}

bool FontSet::IsMade(int slot) {
    return slot >= 0 && slot < kFontSlotCount && slot != kUnmadeSlotA && slot != kUnmadeSlotB;
}

FontSet::FontSet(int baseHeight) : baseHeight_(baseHeight) {
    for (int slot = 0; slot < kFontSlotCount; ++slot) {
        const SlotShape shape = IsMade(slot) ? ShapeOf(slot) : SlotShape{8, 400};
        slots_[slot] = {(baseHeight * shape.eighths + 4) / 8, shape.weight};
    }
}

const Font& FontSet::Slot(int slot) const {
    return slots_[IsMade(slot) ? slot : 0];
}

}  // namespace tolvane
