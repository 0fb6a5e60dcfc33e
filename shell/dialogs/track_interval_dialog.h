#pragma once

#include <QWidget>

#include "core/app/program.h"

namespace tolvane::shell {

// "Track Interval": the four interval slots, 1-3600 seconds each. True when
// OK stored them.
bool RunTrackIntervalDialog(Program& program, QWidget* parent);

}  // namespace tolvane::shell
