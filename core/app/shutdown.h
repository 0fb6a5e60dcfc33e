#pragma once

#include "core/app/program.h"

namespace tolvane {

// Language string of the question before the program ends.
inline constexpr std::uint32_t kTextConfirmExit = 10706;

// Saving the settings is tried this many times.
inline constexpr int kSaveAttempts = 5;

// Saves Options.dat with the live copies of the settings' texts put back
// into the record first, so that what is saved is what the program used,
// and with the configured GPS source, never one that only this run reads.
// A file that did not load at start-up is first kept as Options.dat.bak,
// with a line in the diagnostic log, and is not saved over when it cannot
// be kept.
void SaveProgramSettings(Program& program);

// The Exit command, also run when the window is asked to close: saves the
// settings first, then asks; a No keeps the program running with the
// settings already saved. On yes a destination list with unsaved changes
// is saved or dropped as the user says, and Cancel there keeps the program
// running too. Then it stops the timers, the track logger, the
// GPS and the sound, frees the lists and lets the screen go. Returns whether
// the window must close: the Exit command then calls Host::CloseWindow, and
// a close of the window is let through.
bool RunExit(Program& program);

}  // namespace tolvane
