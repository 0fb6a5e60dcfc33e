#include "shell/program_window.h"

namespace tolvane::shell {

int RunProgram(const CommandLine&) {
    return 0;
}

}  // namespace tolvane::shell
