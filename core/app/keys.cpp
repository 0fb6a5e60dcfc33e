#include "core/app/keys.h"

#include "core/app/commands.h"

namespace tolvane {

void OnKeyDown(Program&, Key) {}

void OnKeyUp(Program&, Key) {}

void ClearTripCounters(AppState& app) {
    app.gps.tripDistanceKm = 0;
}

}  // namespace tolvane
