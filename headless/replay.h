#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "core/data/options.h"
#include "core/gps/gps_state.h"
#include "core/gps/nmea_record.h"
#include "core/state/app_state.h"
#include "headless/port_run.h"

namespace tolvane::headless {

// Sees the application state after each tick, with the tick's UTC time;
// returns false to end the replay there.
using TickObserver = std::function<bool(AppState&, FileTime utc)>;

struct ReplayTotals {
    int ticks = 0;
    int fixes = 0;
    NmeaParseStats parse;
    bool trackWritten = true;  // false when a track file could not be written
};

// Plays a recorded NMEA log through the port source, the reader's framing
// and parse, the watchdog, the main timer's procedure and the track timer,
// one tick per second of the recording, with a clock that follows the
// recording's UTC time. The track logger, when on, starts its file at the
// first second with a real date, which names it, and writes through a
// buffer. onTick, when given, sees the application state after each tick
// and may end the replay; messages receives what the program would show in
// message boxes. False with error set when the run cannot be prepared (a
// destination list that cannot be read).
bool ReplayRecording(std::string_view recording, const RunSettings& settings,
                     const Options& options, std::ostream& messages, const TickObserver& onTick,
                     ReplayTotals& totals, std::string& error);

// The same for the recording in a file, played while it is read, so that a
// long recording is never held whole. False when the file cannot be read,
// with messages told which file and why and error left empty, or with error
// set when the run cannot be prepared.
bool ReplayRecordingFile(const std::string& path, const RunSettings& settings,
                         const Options& options, std::ostream& messages, const TickObserver& onTick,
                         ReplayTotals& totals, std::string& error);

}  // namespace tolvane::headless
