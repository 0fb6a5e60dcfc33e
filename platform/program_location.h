#pragma once

#include <string>

#include "core/base/program_paths.h"

namespace tolvane::platform {

// The folder of the running executable (from /proc/self/exe).
std::string ExecutableFolder();
std::string ExecutablePath();

// The program folder: home when given (--home), else $TOLVANE_HOME, else the
// executable's folder. Also describes this process to the diagnostic log.
ProgramPaths ResolveProgramPaths(const std::string& home);

// Sets the program paths and the diagnostic log's view of this process.
void InstallProgramPaths(const std::string& home);

}  // namespace tolvane::platform
