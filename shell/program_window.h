#pragma once

#include "shell/command_line.h"

namespace tolvane::shell {

// The program with its window: start-up, the event loop and shutdown.
// Returns the program's exit code.
int RunProgram(const CommandLine& line);

}  // namespace tolvane::shell
