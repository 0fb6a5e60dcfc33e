#include "shell/dialogs/command_dialogs.h"

#include "core/app/commands.h"
#include "shell/dialogs/gps_setup_dialog.h"
#include "shell/dialogs/options_dialog.h"

namespace tolvane::shell {

bool OpenCommandDialog([[maybe_unused]] Program& program, [[maybe_unused]] QWidget* parent,
                       int commandId) {
    switch (commandId) {
        case kCommandGpsSetup: {
            GpsSetupDialog dialog(program, parent);
            dialog.exec();
            return true;
        }
        case kCommandOptions: {
            OptionsDialog dialog(program, parent);
            dialog.exec();
            return true;
        }
        default:
            return false;
    }
}

}  // namespace tolvane::shell
