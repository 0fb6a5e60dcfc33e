#include "shell/dialogs/command_dialogs.h"

#include "core/app/commands.h"

namespace tolvane::shell {

bool OpenCommandDialog([[maybe_unused]] Program& program, [[maybe_unused]] QWidget* parent,
                       int commandId) {
    switch (commandId) {
        default:
            return false;
    }
}

}  // namespace tolvane::shell
