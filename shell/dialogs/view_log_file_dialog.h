#pragma once

#include <QWidget>

#include "core/app/program.h"

namespace tolvane::shell {

// "View Log File": chooses a track file in the track log folder, shows its
// track on the map and says what of it could not be read.
void RunViewLogFile(Program& program, QWidget* parent);

}  // namespace tolvane::shell
