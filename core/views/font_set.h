#pragma once

#include <array>

#include "core/views/canvas.h"

namespace tolvane {

// The program's fonts: 50 slots, of which 0..45, 47 and 48 are made when
// the window is laid out, each a height derived from the base height and a
// weight. Painters name a slot; the size of a slot changes only with the
// window's size, whatever a painter would like.
inline constexpr int kFontSlotCount = 50;

// The base font height for the screen's dots per inch down:
// round(15 x dpi / 96), so 15 at 96 dpi and 30 at 192 dpi.
int BaseFontHeight(int dpiY);

// The base height for a window of width x height logical pixels: the
// screen's base height at 480 x 640 (or 640 x 480), scaled with the room the
// window gives, between three quarters and twice. The window makes its
// fonts again from it whenever its size changes, as it lays the views out
// again, so that the texts of a view fit a small window and fill a large one.
int WindowBaseHeight(int baseHeight, int width, int height);

class FontSet {
  public:
    explicit FontSet(int baseHeight);

    int BaseHeight() const { return baseHeight_; }
    // Whether the slot is one of the 48 that are made.
    static bool IsMade(int slot);
    // The slot's font; a slot that is not made gives the base font.
    const Font& Slot(int slot) const;

  private:
    int baseHeight_;
    std::array<Font, kFontSlotCount> slots_{};
};

}  // namespace tolvane
