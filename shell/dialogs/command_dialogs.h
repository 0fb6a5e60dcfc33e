#pragma once

#include <QWidget>

#include "core/app/program.h"

namespace tolvane::shell {

// Opens the dialog that carries out a command, modal over the window, and
// returns when it closes. False when the command has no dialog.
bool OpenCommandDialog(Program& program, QWidget* parent, int commandId);

}  // namespace tolvane::shell
