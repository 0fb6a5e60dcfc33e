#pragma once

#include <cstdint>
#include <functional>
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

// Where a start of the port source stopped.
enum class PortStart { kStarted, kOpenFailed, kReaderFailed };

// The end of every start of the GPS: read becomes the active source, the
// GPS state is brought up to date from it once, the wait for the first fix
// begins and the GPS is marked as running.
void RunGpsFrom(AppState& app, std::function<SourceReading()> read);

// Starts the GPS from the port source whose portName and baudRate are set:
// OpenPort, then StartReader for the talkers of the multi-GNSS setting,
// driven by its own thread or, in a replay, by the caller; then RunGpsFrom
// the port. The window's "Start GPS" command and the headless runs both
// start the port source here. On failure port.lastErrorCode says why.
PortStart StartGpsFromPort(AppState& app, PortSource& port, ReaderDrive drive);

// The port steps of the "Start GPS" command for the serial or GPD port
// (source 1) and the Bluetooth receiver (source 2): port and baud rate from
// the tables, then StartGpsFromPort on the reader's own thread, each
// failure shown with its error code. True when the GPS runs; the command
// then repaints.
bool StartPortGps(AppState& app, PortSource& port, Host& host);

// The lost-GPS command (40010) for the port sources: stops the source,
// shows why it stopped (10704 disconnected, 10705 silent for 30 seconds)
// and clears the NMEA record. Returns the language id shown, 0 for none.
// The command then stops a playing sound and repaints.
std::uint32_t StopLostPortGps(PortSource& port, Host& host);

}  // namespace tolvane
