#include "core/app/main_timer.h"

#include "core/app/language_messages.h"
#include "core/nav/voice_guide.h"

namespace tolvane {
namespace {

constexpr int kIdleResetTicks = 7;

}  // namespace

void UpdateGpsState(AppState& app) {
    const SourceReading reading = app.readActiveSource ? app.readActiveSource() : SourceReading{};
    UpdateGpsState(app.gps, app.processor, app.options.dataProcessor, reading.connected,
                   reading.snapshot);
}

void MainTimerProc(AppState& app, Host& host) {
    GpsState& gps = app.gps;
    UpdateGpsState(app);
    ApplyMinimumSpeedHold(gps, app.options.unitSystem, app.options.minimumSpeed);
    if (HasLiveFix(gps)) {
        app.mapFollow = {gps.latitude, gps.longitude, true};
        // The World Map follows the position unless a pan paused it.
        if (app.mapCountdown == 0) app.worldMapCentre = {gps.latitude, gps.longitude};
    }
    AdvanceTripStatistics(gps, [&app](double latitude, double longitude, double& km) {
        return UpdateDestinationFigures(app.navigation, app.options, latitude, longitude, km);
    });
    VoiceGuide voice(host.Speech(), host.Processes(), host.Sound());
    CheckArrival(gps, app.options, app.navigation, voice, app.alarm, host.Sound());
    CheckSpeedAlarm(gps, app.options, app.alarm, host.Sound());
    AdvanceInstrumentMemory(app.instruments, gps, app.options);
    HoldSleepWhileRecording(app, host);

    gps.noFixBlink = gps.connected && !gps.fixValid ? !gps.noFixBlink : 0;
    if (IsMapView(app.currentView) && app.mapCountdown > 0) {
        --app.mapCountdown;
    }
    if (++gps.idleTicks == kIdleResetTicks) {
        gps.idleTicks = 0;
        host.ResetIdleTimer();
    }
    host.Repaint();
}

void HoldSleepWhileRecording(AppState& app, Host& host) {
    const bool recording =
        app.gpsRunning && (app.options.trackLoggerEnabled != 0 || app.options.logNmea != 0);
    if (recording == app.sleepHeld) return;
    app.sleepHeld = recording;
    host.HoldSleep(recording);
}

void TrackTimerProc(AppState& app, Host& host) {
    TrackTimerTick(app.track,
                   {app.gps, app.options, app.gpsRunning, app.folders.trackLogDir, host.Time()});
    // The map views draw the track live.
    if (IsMapView(app.currentView)) host.Repaint();
    ReportTrackFailure(app, host);
}

void ReportTrackFailure(AppState& app, Host& host) {
    // The message box waits for the user, so it is shown outside the track
    // lock, which the map drawing needs meanwhile.
    std::string path;
    {
        const std::lock_guard<std::mutex> guard(app.track.lock);
        if (app.track.failedPath.empty() || app.track.failureShown) return;
        app.track.failureShown = true;
        path = app.track.failedPath;
    }
    ShowLanguageMessage(host, kTextTrackWriteFailed, MessageIcon::kStop, path);
}

}  // namespace tolvane
