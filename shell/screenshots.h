#pragma once

#include "shell/command_line.h"

namespace tolvane::shell {

// The --screenshot run: plays the recording through the GPS pipeline at
// full speed up to the asked second (or the recording's end), paints every
// view into the folder and prints the path of each picture. Returns the
// program's exit code.
int RunScreenshots(const CommandLine& line);

}  // namespace tolvane::shell
