#include "core/views/font_set.h"

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
        case 17:
        case 20:
            return {8, 0};
        case 18:
        case 24:
            return {7, 400};
        case 23:
            return {9, 400};
        case 27:
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
