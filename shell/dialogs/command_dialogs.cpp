#include "shell/dialogs/command_dialogs.h"

#include "core/app/commands.h"
#include "core/app/map_commands.h"
#include "shell/dialogs/destination_list_dialog.h"
#include "shell/dialogs/gps_setup_dialog.h"
#include "shell/dialogs/gpx_import_dialog.h"
#include "shell/dialogs/map_dialogs.h"
#include "shell/dialogs/options_dialog.h"
#include "shell/dialogs/point_manager_dialog.h"
#include "shell/dialogs/speed_alarms_dialog.h"
#include "shell/dialogs/tile_maps_dialog.h"
#include "shell/dialogs/track_interval_dialog.h"
#include "shell/dialogs/view_log_file_dialog.h"

namespace tolvane::shell {

bool OpenCommandDialog(Program& program, QWidget* parent, int commandId) {
    if (commandId >= kCommandFirstRecentMap && commandId <= kCommandLastRecentMap) {
        LoadRecentMap(program, parent, commandId - kCommandFirstRecentMap);
        return true;
    }
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
        case kCommandAddWaypoint:
        case kCommandAddPoi:
            AddPointAtFix(program, parent, commandId == kCommandAddPoi);
            return true;
        case kCommandPointManager:
            ManagePoints(program, parent);
            return true;
        case kCommandGoToDestination:
            ChooseDestination(program, parent);
            return true;
        case kCommandAddDestination:
            AddDestination(program, parent);
            return true;
        case kCommandEditDestinations:
            EditDestinations(program, parent);
            return true;
        case kCommandNewDestinationList:
            NewDestinations(program, parent);
            return true;
        case kCommandOpenDestinationList:
            OpenDestinations(program, parent);
            return true;
        case kCommandCustomInterval:
            RunTrackIntervalDialog(program, parent);
            return true;
        case kCommandCustomSpeedAlarm:
            RunSpeedAlarmsDialog(program, parent);
            return true;
        case kCommandLoadMap:
            ChooseMapFile(program, parent);
            return true;
        case kCommandTileMaps:
            RunTileMapsDialog(program, parent);
            return true;
        case kCommandPlaceRefPoint:
            AskRefPointPosition(program, parent);
            return true;
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
