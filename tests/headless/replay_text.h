#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "headless/port_run.h"
#include "headless/replay.h"

namespace tolvane::testing {

// Replays a recording's text through the real pipeline with the settings,
// as the tool does, handing each tick to onTick until it says stop; a replay
// that cannot start or breaks off fails the test.
inline bool ReplayText(const std::string& recording, const headless::RunSettings& settings,
                       const headless::TickObserver& onTick) {
    Options options;
    std::string error;
    EXPECT_TRUE(headless::MakeRunOptions(settings, options, error)) << error;
    std::ostringstream messages;
    headless::ReplayTotals totals;
    const bool done =
        headless::ReplayRecording(recording, settings, options, messages, onTick, totals, error);
    EXPECT_TRUE(done) << error << messages.str();
    return done;
}

}  // namespace tolvane::testing
