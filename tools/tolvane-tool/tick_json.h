#pragma once

#include <string>

#include "core/gps/gps_state.h"
#include "core/state/app_state.h"

namespace tolvane::tool {

// One tick as a one-line JSON object: the GPS state, the position of the
// current destination in the list (-1 for none) and whether the speed
// alarm sounds.
std::string TickJson(AppState& app);

}  // namespace tolvane::tool
