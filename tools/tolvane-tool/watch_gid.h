#pragma once

#include <iosfwd>
#include <string>

#include "core/data/options.h"
#include "headless/port_run.h"

namespace tolvane::tool {

// What "watch --source gid" takes from its command line.
struct GidWatch {
    Options options{};               // the fields that shape the published state
    headless::RunSettings settings;  // --json, the track, the destinations, the voice
    long long seconds = -1;          // ticks to run; below 0 runs until stopped
    std::string home;                // --home, empty for the executable's folder
};

// Watches the shared GPS service through GID.QX.so from the program folder,
// as the program does with GPS source 0: the GPS start, then one run of the
// main timer's procedure per real second, printing each tick's GPS state
// with --json and a summary at the end without it. Messages the program
// would show go to err; a start that fails exits with kExitFailure.
int RunGidWatch(const GidWatch& watch, std::ostream& out, std::ostream& err);

}  // namespace tolvane::tool
