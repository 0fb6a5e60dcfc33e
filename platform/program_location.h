#pragma once

#include <string>

#include "core/base/program_paths.h"

namespace tolvane::platform {

// The folder of the running executable (from /proc/self/exe).
std::string ExecutableFolder();
std::string ExecutablePath();

// The program folder: home when given (--home), else $TOLVANE_HOME, else the
// executable's folder. An installed program, <prefix>/bin/tolvane beside
// <prefix>/share/tolvane, reads its files from the latter, loads its
// companion library from the install's library folder (<prefix>/lib/tolvane,
// or /usr/lib/<architecture triplet>/tolvane) and keeps what it writes in
// $XDG_CONFIG_HOME/tolvane (else ~/.config/tolvane), created when missing.
ProgramPaths ResolveProgramPaths(const std::string& home);

// Sets the program paths and the diagnostic log's view of this process.
void InstallProgramPaths(const std::string& home);

}  // namespace tolvane::platform
