#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "core/data/options.h"
#include "core/gps/gps_state.h"
#include "core/gps/nmea_record.h"

namespace tolvane::tool {

struct ReplayTotals {
    int ticks = 0;
    int fixes = 0;
    NmeaParseStats parse;
};

// Plays a recorded NMEA log through the port source, the reader's framing
// and parse, the watchdog and the main timer's procedure, one tick per
// second of the recording, with a clock that follows the recording's UTC
// time. onTick, when given, sees the GPS state after each tick; messages
// receives what the program would show in message boxes.
ReplayTotals ReplayRecording(std::string_view recording, const Options& options,
                             std::ostream& messages,
                             const std::function<void(const GpsState&)>& onTick);

// The same for the recording in a file, played while it is read, so that a
// long recording is never held whole. False when the file cannot be read;
// messages is told which file and why.
bool ReplayRecordingFile(const std::string& path, const Options& options, std::ostream& messages,
                         const std::function<void(const GpsState&)>& onTick, ReplayTotals& totals);

}  // namespace tolvane::tool
