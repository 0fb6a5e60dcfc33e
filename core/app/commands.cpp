#include "core/app/commands.h"

#include "core/app/shutdown.h"

namespace tolvane {

bool IsCommandAvailable(const Program&, int) {
    return true;
}

CommandResult OnCommand(Program& program, int id) {
    if (id == kCommandExit) {
        if (RunExit(program)) program.host.CloseWindow();
        return CommandResult::kDone;
    }
    return CommandResult::kUnknown;
}

}  // namespace tolvane
