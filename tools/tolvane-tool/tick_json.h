#pragma once

#include <string>

#include "core/app/app_state.h"
#include "core/gps/gps_state.h"
#include "tools/tolvane-tool/json_writer.h"

namespace tolvane::tool {

// Writes every field of the GPS state, keyed by its field name, into an open
// JSON object; callers add their own keys around it.
void WriteGpsStateFields(JsonWriter& json, const GpsState& state);

// One tick as a one-line JSON object: the GPS state, the position of the
// current destination in the list (-1 for none) and whether the speed
// alarm sounds.
std::string TickJson(AppState& app);

}  // namespace tolvane::tool
