#include "shell/dialogs/command_dialogs.h"

#include "core/app/commands.h"
#include "shell/dialogs/speed_alarms_dialog.h"
#include "shell/dialogs/track_interval_dialog.h"

namespace tolvane::shell {

bool OpenCommandDialog([[maybe_unused]] Program& program, [[maybe_unused]] QWidget* parent,
                       int commandId) {
    switch (commandId) {
        case kCommandCustomInterval:
            RunTrackIntervalDialog(program, parent);
            return true;
        case kCommandCustomSpeedAlarm:
            RunSpeedAlarmsDialog(program, parent);
            return true;
        default:
            return false;
    }
}

}  // namespace tolvane::shell
