#pragma once

#include <QWidget>

#include "core/app/program.h"

namespace tolvane::shell {

// "Speed Alarms": the eight limits, in the speed unit of the present unit
// system. True when OK stored them.
bool RunSpeedAlarmsDialog(Program& program, QWidget* parent);

}  // namespace tolvane::shell
