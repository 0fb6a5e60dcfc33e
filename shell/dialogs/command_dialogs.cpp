#include "shell/dialogs/command_dialogs.h"

#include "core/app/commands.h"
#include "shell/dialogs/gpx_import_dialog.h"
#include "shell/dialogs/view_log_file_dialog.h"

namespace tolvane::shell {

bool OpenCommandDialog([[maybe_unused]] Program& program, [[maybe_unused]] QWidget* parent,
                       int commandId) {
    switch (commandId) {
        case kCommandImport:
            RunGpxImport(program, parent);
            return true;
        case kCommandViewLogFile:
            RunViewLogFile(program, parent);
            return true;
        default:
            return false;
    }
}

}  // namespace tolvane::shell
