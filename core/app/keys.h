#pragma once

#include <cstdint>

#include "core/app/program.h"
#include "core/base/pixels.h"

namespace tolvane {

// The keys the program answers; the shell maps its key events onto them
// (F8 and "*" to kStar, F9 and "#" to kHash, Enter and Return to kEnter).
enum class Key {
    kDigit0,
    kDigit1,
    kDigit2,
    kDigit3,
    kDigit4,
    kDigit5,
    kDigit6,
    kDigit7,
    kDigit8,
    kDigit9,
    kStar,
    kHash,
    kLeft,
    kUp,
    kRight,
    kDown,
    kEnter,
};

// Language string of the question before the trip counters are cleared.
inline constexpr std::uint32_t kTextClearTrip = 10750;

// The shortest time between two accepted presses of a held arrow key in
// the map views.
inline constexpr FileTime kArrowKeyInterval = kFileTimeTicksPerSecond / 10;

// A pan step stops the map views following the position for this many ticks.
inline constexpr int kPanFollowPauseTicks = 10;

void OnKeyDown(Program& program, Key key);
void OnKeyUp(Program& program, Key key);

// Zooms the shown map by whole key steps, in (positive) or out; where the
// zoom ends the limit beep sounds. The wheel and the pinch zoom with it.
void ZoomShownMap(Program& program, int steps);

// Moves the shown map under a dragging finger or mouse, which moved by dx,
// dy pixels over the map's body. The World Map moves by exactly that; the
// Map view by whole pan steps, keeping the rest for the next move.
void DragShownMap(Program& program, int dx, int dy, const Rect& body);

}  // namespace tolvane
