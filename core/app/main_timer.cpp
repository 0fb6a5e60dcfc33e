#include "core/app/main_timer.h"

namespace tolvane {
namespace {

constexpr int kIdleResetTicks = 7;

bool HasFix(const GpsState& gps) {
    return gps.connected && gps.fixValid;
}

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
    if (HasFix(gps)) app.mapFollow = {gps.latitude, gps.longitude, true};
    AdvanceTripStatistics(gps, {});

    gps.noFixBlink = gps.connected && !gps.fixValid ? !gps.noFixBlink : 0;
    if ((app.currentView == kViewWorldMap || app.currentView == kViewMap) && app.mapCountdown > 0) {
        --app.mapCountdown;
    }
    if (++gps.idleTicks == kIdleResetTicks) {
        gps.idleTicks = 0;
        host.ResetIdleTimer();
    }
    host.Repaint();
}

}  // namespace tolvane
