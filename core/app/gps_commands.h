#pragma once

#include <cstdint>
#include <string>

#include "core/app/host.h"
#include "core/app/language_messages.h"
#include "core/gps/port_source.h"
#include "core/state/app_state.h"

namespace tolvane {

inline constexpr int kGpsSourcePort = 1;
inline constexpr int kGpsSourceBluetooth = 2;

// Links the port source to the host's timers and clock and to its
// notification after each RMC sentence.
void LinkPortSourceToHost(PortSource& port, Host& host);

// The port source's reading for the per-second update: connected while the
// port is open, and the NMEA record read under the source's lock.
SourceReading ReadPortSource(PortSource& port);

// The port steps of the "Start GPS" command for the serial or GPD port
// (source 1) and the Bluetooth receiver (source 2): port and baud rate from
// the tables, OpenPort and StartReader, each failure shown with its error
// code. True when the source runs; the command then updates the GPS state,
// marks GPS as running and repaints.
bool StartPortGps(PortSource& port, const Options& options, const OptionsRuntime& runtime,
                  Host& host);

// The lost-GPS command (40010) for the port sources: stops the source,
// shows why it stopped (10704 disconnected, 10705 silent for 30 seconds)
// and clears the NMEA record. Returns the language id shown, 0 for none.
// The command then stops a playing sound and repaints.
std::uint32_t StopLostPortGps(PortSource& port, Host& host);

}  // namespace tolvane
