#pragma once

#include <QImage>
#include <functional>
#include <string>

#include "core/state/app_state.h"

namespace tolvane::testing {

// Paints the current view of app with its frame, as the window would at
// width x height logical pixels, through the Qt canvas in DejaVu Sans.
QImage PaintViewPicture(const AppState& app, int width, int height);

// Replays a recording through the real pipeline and hands the state after
// the given tick to use.
void ReplayToTick(const std::string& recording, int tick,
                  const std::function<void(AppState&)>& use);

}  // namespace tolvane::testing
