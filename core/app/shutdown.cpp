#include "core/app/shutdown.h"

#include "core/app/destination_commands.h"
#include "core/app/gid_commands.h"
#include "core/app/gps_commands.h"
#include "core/app/main_timer.h"
#include "core/base/diagnostic_log.h"
#include "core/base/string_manager.h"

namespace tolvane {
namespace {

void StopTimers(Program& program) {
    for (int* timer : {&program.trackTimerId, &program.mainTimerId}) {
        if (*timer != 0) program.host.Timers().KillTimer(*timer);
        *timer = 0;
    }
}

void StopTrackLogger(TrackLogger& track) {
    const std::lock_guard<std::mutex> guard(track.lock);
    track.countdown = -1;
    track.currentPath.clear();
}

// Closes the running source without the messages of a lost receiver: the
// user asked for the end.
void StopRunningGps(Program& program) {
    AppState& app = program.app;
    if (!app.gpsRunning) return;
    if (program.runningSource == kGpsSourcePort || program.runningSource == kGpsSourceBluetooth) {
        StopPortSource(program.port);
        const std::lock_guard<std::mutex> guard(program.port.lock);
        ClearNmeaRecord(program.port.record);
    } else {
        StopGidSource(program.gid);
    }
    app.readActiveSource = nullptr;
    app.gpsRunning = false;
}

void StopAlarm(Program& program) {
    if (!program.app.alarm.sounding) return;
    RepeatUntilSuccess([&program] { return program.host.Sound().StopSound(); });
    program.app.alarm.sounding = false;
}

void FreeLists(AppState& app) {
    {
        const std::lock_guard<std::mutex> guard(app.points.lock);
        app.points.waypoints.Clear();
        app.points.pois.Clear();
    }
    CloseDestinationList(app.navigation);
    const std::lock_guard<std::mutex> guard(app.track.lock);
    app.track.liveTrack.Clear();
    app.track.viewedTrack.Clear();
}

void SwitchRadioOffIfOurs(Program& program) {
    if (!program.radioSwitchedOn) return;
    if (program.host.BluetoothRadioMode() == kRadioConnectable) {
        program.host.SetBluetoothRadioMode(kRadioOff);
    }
    program.radioSwitchedOn = false;
}

// Keeps the bytes of the settings file that did not load before the first
// save replaces them, and says so in the diagnostic log; false when they
// cannot be kept, and then the file is not saved over.
bool KeepUnloadedFile(const std::string& path) {
    std::string failure;
    const bool kept = KeepUnloadedOptions(path, failure);
    const std::string copy = path + kUnloadedOptionsSuffix;
    DiagnosticLog::SetPendingSource(__FILE__, __LINE__);
    if (!failure.empty()) {
        DiagnosticLog::Instance().Report(
            "%s did not load and cannot be copied to %s (%s): the settings are not saved over it",
            path.c_str(), copy.c_str(), failure.c_str());
        return false;
    }
    if (kept) {
        DiagnosticLog::Instance().Report("%s did not load: its bytes are kept in %s",
                                         path.c_str(), copy.c_str());
    }
    return true;
}

}  // namespace

void SaveProgramSettings(Program& program) {
    Options& options = program.app.options;
    OptionsRuntime& runtime = program.app.runtime;
    WriteWideField(options.storageLocation, runtime.storageLocation);
    WriteWideField(options.poiFolder, runtime.poiFolder);
    WriteWideField(options.waypointFile, runtime.waypointFile);
    if (runtime.unloadedFile && !KeepUnloadedFile(program.files.optionsPath)) return;
    runtime.unloadedFile = false;
    Options saved = options;
    saved.gpsSource = ConfiguredGpsSource(program.app);
    SaveOptions(program.files.optionsPath, saved, kSaveAttempts);
}

bool RunExit(Program& program) {
    SaveProgramSettings(program);
    if (!program.host.AskYesNo(LanguageText(kTextConfirmExit), program.title) ||
        !MayDropDestinationList(program)) {
        return false;
    }
    StopTimers(program);
    StopTrackLogger(program.app.track);
    StopRunningGps(program);
    HoldSleepWhileRecording(program.app, program.host);
    StopAlarm(program);
    FreeLists(program.app);
    SwitchRadioOffIfOurs(program);
    if (program.screenHeld) {
        program.host.ReleaseScreenOn();
        program.screenHeld = false;
    }
    return true;
}

}  // namespace tolvane
