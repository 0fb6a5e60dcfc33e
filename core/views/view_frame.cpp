#include "core/views/view_frame.h"

namespace tolvane {

ViewLayout LayOutViews(int width, int height, bool largeLayout, bool fullScreen,
                       const FontSet& fonts) {
    ViewLayout layout;
    layout.large = largeLayout;
    layout.barHeight = fonts.BaseHeight() * 3 / 2;
    layout.client = {0, 0, width, height};
    const int titleHeight = fullScreen ? 0 : layout.barHeight;
    layout.titleBar = {0, 0, width, titleHeight};
    layout.strip = {0, height - layout.barHeight, width, height};
    layout.view = {0, titleHeight, width, layout.strip.top};
    return layout;
}

const Palette& PaletteFor(bool night) {
    static constexpr Palette kDay{0xFFFFFF, 0x000000, 0x808080, 0x000000, 0xE8E8E8, 0x202020};
    static constexpr Palette kNight{0x000000, 0xFFFFFF, 0x707070, 0xFFFFFF, 0x181818, 0xC0C0C0};
    return night ? kNight : kDay;
}

}  // namespace tolvane
