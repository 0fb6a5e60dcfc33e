#include "shell/dialogs/command_dialogs.h"

#include "core/app/commands.h"
#include "core/app/map_commands.h"
#include "shell/dialogs/map_dialogs.h"

namespace tolvane::shell {

bool OpenCommandDialog([[maybe_unused]] Program& program, [[maybe_unused]] QWidget* parent,
                       int commandId) {
    if (commandId >= kCommandFirstRecentMap && commandId <= kCommandLastRecentMap) {
        LoadRecentMap(program, parent, commandId - kCommandFirstRecentMap);
        return true;
    }
    switch (commandId) {
        case kCommandLoadMap:
            ChooseMapFile(program, parent);
            return true;
        case kCommandPlaceRefPoint:
            AskRefPointPosition(program, parent);
            return true;
        default:
            return false;
    }
}

}  // namespace tolvane::shell
