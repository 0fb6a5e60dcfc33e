#include "shell/dialogs/speed_alarms_dialog.h"

#include "core/app/value_dialogs.h"
#include "core/nav/speed_alarm.h"
#include "shell/dialogs/dialog_parts.h"
#include "shell/dialogs/number_fields_dialog.h"

namespace tolvane::shell {
namespace {

constexpr std::uint32_t kTextSpeedAlarms = 13700;

}  // namespace

bool RunSpeedAlarmsDialog(Program& program, QWidget* parent) {
    Options& options = program.app.options;
    SpeedAlarmFields fields = SpeedAlarmFieldsOf(options);
    const QString unit = QString::fromStdString(SpeedAlarmUnitLabel(options.unitSystem));
    if (!EditNumberFields(Text(kTextSpeedAlarms), unit, fields, parent)) return false;
    StoreSpeedAlarmFields(options, fields);
    return true;
}

}  // namespace tolvane::shell
