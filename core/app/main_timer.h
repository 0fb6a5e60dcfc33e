#pragma once

#include "core/app/host.h"
#include "core/state/app_state.h"

namespace tolvane {

// The update step: reads the active source and publishes it into the GPS
// state. Also called once by the GPS start command, so that the first view
// shows data without waiting for the tick.
void UpdateGpsState(AppState& app);

// The procedure of the one-second timer.
void MainTimerProc(AppState& app, Host& host);

// A phone suspends when its screen locks, and a track would lose its end:
// while the GPS runs with the track logger or the NMEA log on, the host
// keeps the computer from suspending, and lets it again when they stop.
void HoldSleepWhileRecording(AppState& app, Host& host);

// The procedure of the one-second track timer; repaints the views that draw
// the track live.
void TrackTimerProc(AppState& app, Host& host);

// Tells the user, once per GPS run, of the first track file that could not
// be created or written.
void ReportTrackFailure(AppState& app, Host& host);

}  // namespace tolvane
