#include "core/app/commands.h"

#include <array>

#include "core/app/gid_commands.h"
#include "core/app/gps_commands.h"
#include "core/app/language_messages.h"
#include "core/app/main_timer.h"
#include "core/app/shutdown.h"
#include "core/nav/voice_guide.h"

namespace tolvane {
namespace {

// The commands of the menu whose dialogs, map views and file choosers this
// program does not have yet. They stay in the menu, greyed, so that nothing
// the user can choose does nothing.
constexpr std::array kCommandsWithoutOwner = {
    kCommandWorldMap,
    kCommandMap,
    kCommandShowMap,
    kCommandShowTrack,
    kCommandShowPoi,
    kCommandShowRefPoints,
    kCommandShowWaypoint,
    kCommandShowDestinations,
    kCommandShowDestinationInfo,
    kCommandShowLabel,
    kCommandShowRange,
    kCommandLoadMap,
    kCommandGpsSetup,
    kCommandViewLogFile,
    kCommandOptions,
    kCommandCustomSpeedAlarm,
    kCommandCustomInterval,
    kCommandAddWaypoint,
    kCommandAddPoi,
    kCommandPointManager,
    kCommandGoToDestination,
    kCommandAddDestination,
    kCommandEditDestinations,
    kCommandNewDestinationList,
    kCommandOpenDestinationList,
    kCommandImport,
};

bool InRange(int id, int first, int last) {
    return id >= first && id <= last;
}

bool HasNoOwnerYet(int id) {
    for (const int command : kCommandsWithoutOwner) {
        if (command == id) return true;
    }
    return InRange(id, kCommandFirstRecentMap, kCommandLastRecentMap) ||
           InRange(id, kCommandFirstRefPoint, kCommandLastRefPoint);
}

// The voice guide can be switched on only with a working engine, but one
// that is on can always be switched off.
bool VoiceGuideSwitchable(Program& program) {
    const Options& options = program.app.options;
    const VoiceGuide voice(program.host, program.host, program.host);
    return options.voiceGuide != 0 || voice.IsVoiceEngineAvailable(options.voiceEngine);
}

bool DestinationListOpen(Program& program) {
    Navigation& navigation = program.app.navigation;
    const std::lock_guard<std::mutex> guard(navigation.lock);
    return navigation.destinations.Count() > 0;
}

void ShowView(Program& program, int view) {
    program.app.currentView = view;
    program.host.Repaint();
}

void Toggle(Program& program, std::int32_t& flag) {
    flag = flag ? 0 : 1;
    program.host.Repaint();
}

bool IsPortSource(int source) {
    return source == kGpsSourcePort || source == kGpsSourceBluetooth;
}

void StartGps(Program& program) {
    if (program.app.gpsRunning) return;
    AppState& app = program.app;
    const int source = app.options.gpsSource;
    bool started = false;
    if (IsPortSource(source)) {
        program.port.links.nmeaFolder = app.folders.nmeaDir;
        started = StartPortGps(program.port, app.options, app.runtime, program.host);
        if (started) app.readActiveSource = [&program] { return ReadPortSource(program.port); };
    } else {
        started = StartGidSource(program.gid, {program.host, program.deviceQueries,
                                               program.libraryLoader, nullptr, nullptr});
        if (started) app.readActiveSource = [&program] { return ReadGidSource(program.gid); };
    }
    if (!started) return;
    program.runningSource = source;
    UpdateGpsState(app);
    app.gpsRunning = true;
    program.host.Repaint();
}

// The stop command, which the port source's watchdog also sends when the
// receiver went away or fell silent.
void StopGps(Program& program) {
    AppState& app = program.app;
    if (IsPortSource(program.runningSource)) {
        StopLostPortGps(program.port, program.host);
    } else {
        StopGidSource(program.gid);
    }
    app.readActiveSource = nullptr;
    app.gpsRunning = false;
    if (app.alarm.sounding) {
        RepeatUntilSuccess([&program] { return program.host.StopSound(); });
        app.alarm.sounding = false;
    }
    program.host.Repaint();
}

void OpenUserManual(Program& program) {
    const std::string& manual = program.files.manualPath;
    if (!manual.empty() && program.host.OpenDocument(manual)) return;
    ShowLanguageMessage(program.host, kTextManualNotOpened, MessageIcon::kInformation);
}

void ShowAbout(Program& program) {
    program.host.ShowAbout({program.title, kProgramVersion, kProgramLicence, kProgramCredits});
}

void Exit(Program& program) {
    if (RunExit(program)) program.host.CloseWindow();
}

// The commands that change a view or a setting and repaint.
bool RunViewCommand(Program& program, int id) {
    Options& options = program.app.options;
    switch (id) {
        case kCommandGpsInfo:
            ShowView(program, kViewGpsInfo);
            return true;
        case kCommandSatellites:
            ShowView(program, kViewSatellites);
            return true;
        case kCommandCompass:
            ShowView(program, kViewCompass);
            return true;
        case kCommandSpeed:
            ShowView(program, kViewSpeed);
            return true;
        case kCommandTripStat:
            ShowView(program, kViewTripStat);
            return true;
        case kCommandNightView:
            Toggle(program, options.nightView);
            return true;
        case kCommandFullScreen:
            Toggle(program, options.fullScreen);
            return true;
        default:
            return false;
    }
}

// The commands of the GPS, the track logger and the alarms.
bool RunSettingCommand(Program& program, int id) {
    Options& options = program.app.options;
    int alarmIndex = 0;
    if (SpeedAlarmIndexFromCommand(id, alarmIndex)) {
        options.speedAlarmIndex = alarmIndex;
        program.host.Repaint();
        return true;
    }
    if (InRange(id, kCommandFirstInterval, kCommandLastInterval)) {
        options.trackIntervalIndex = id - kCommandFirstInterval;
        program.host.Repaint();
        return true;
    }
    switch (id) {
        case kCommandStartGps:
            StartGps(program);
            return true;
        case kCommandStopGps:
            StopGps(program);
            return true;
        case kCommandEnableLogger:
            Toggle(program, options.trackLoggerEnabled);
            return true;
        case kCommandNavigation:
            Toggle(program, options.navigation);
            return true;
        case kCommandVoiceGuide:
            Toggle(program, options.voiceGuide);
            return true;
        default:
            return false;
    }
}

// The Go-To steps through the destination list.
bool RunDestinationCommand(Program& program, int id) {
    Navigation& navigation = program.app.navigation;
    switch (id) {
        case kCommandNextDestination:
            NextDestination(navigation);
            break;
        case kCommandPreviousDestination:
            PreviousDestination(navigation);
            break;
        case kCommandResetDestinations:
            ResetDestinations(navigation);
            break;
        case kCommandCloseDestinationList:
            CloseDestinationList(navigation);
            break;
        default:
            return false;
    }
    program.host.Repaint();
    return true;
}

bool RunProgramCommand(Program& program, int id) {
    switch (id) {
        case kCommandUserManual:
            OpenUserManual(program);
            return true;
        case kCommandAbout:
            ShowAbout(program);
            return true;
        case kCommandCheckForUpdates:
            ShowLanguageMessage(program.host, kTextUpdatesFromPackageManager,
                                MessageIcon::kInformation);
            return true;
        case kCommandExit:
            Exit(program);
            return true;
        default:
            return false;
    }
}

}  // namespace

bool IsCommandAvailable(Program& program, int id) {
    if (HasNoOwnerYet(id)) return false;
    switch (id) {
        case kCommandNextDestination:
        case kCommandPreviousDestination:
        case kCommandResetDestinations:
            return program.app.options.navigation != 0 && DestinationListOpen(program);
        case kCommandCloseDestinationList:
            return DestinationListOpen(program);
        case kCommandVoiceGuide:
            return VoiceGuideSwitchable(program);
        default:
            return true;
    }
}

CommandResult OnCommand(Program& program, int id) {
    if (!IsCommandAvailable(program, id)) return CommandResult::kUnavailable;
    if (RunViewCommand(program, id) || RunSettingCommand(program, id) ||
        RunDestinationCommand(program, id) || RunProgramCommand(program, id)) {
        return CommandResult::kDone;
    }
    return CommandResult::kUnknown;
}

}  // namespace tolvane
