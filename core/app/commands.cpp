#include "core/app/commands.h"

#include "core/app/destination_commands.h"
#include "core/app/gid_commands.h"
#include "core/app/gps_commands.h"
#include "core/app/language_messages.h"
#include "core/app/main_timer.h"
#include "core/app/map_commands.h"
#include "core/app/shutdown.h"
#include "core/nav/voice_guide.h"

namespace tolvane {
namespace {

bool InRange(int id, int first, int last) {
    return id >= first && id <= last;
}

// The commands that a dialog of the window carries out.
bool OpensDialog(int id) {
    if (InRange(id, kCommandFirstRecentMap, kCommandLastRecentMap)) return true;
    switch (id) {
        case kCommandGpsSetup:
        case kCommandOptions:
        case kCommandAddWaypoint:
        case kCommandAddPoi:
        case kCommandPointManager:
        case kCommandGoToDestination:
        case kCommandAddDestination:
        case kCommandEditDestinations:
        case kCommandNewDestinationList:
        case kCommandOpenDestinationList:
        case kCommandCustomSpeedAlarm:
        case kCommandCustomInterval:
        case kCommandLoadMap:
        case kCommandTileMaps:
        case kCommandPlaceRefPoint:
        case kCommandImport:
        case kCommandViewLogFile:
            return true;
        default:
            return false;
    }
}

// The voice guide can be switched on only with a working engine, but one
// that is on can always be switched off.
bool VoiceGuideSwitchable(Program& program) {
    const Options& options = program.app.options;
    const VoiceGuide voice(program.host.Speech(), program.host.Processes(), program.host.Sound());
    return options.voiceGuide != 0 || voice.IsVoiceEngineAvailable(options.voiceEngine);
}

bool DestinationListOpen(Program& program) {
    Navigation& navigation = program.app.navigation;
    const std::lock_guard<std::mutex> guard(navigation.lock);
    return navigation.open;
}

bool HasDestinations(Program& program) {
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

// "Auto turn on/off Bluetooth": a radio that is off is switched on for the
// receiver, and remembered, so that exit switches off only what the program
// switched on.
void SwitchRadioOnForGps(Program& program) {
    if (program.app.options.autoBluetooth == 0) return;
    if (program.host.BluetoothRadioMode() != kRadioOff) return;
    if (program.host.SetBluetoothRadioMode(kRadioConnectable)) program.radioSwitchedOn = true;
}

void StartGps(Program& program) {
    if (program.app.gpsRunning) return;
    AppState& app = program.app;
    const int source = app.options.gpsSource;
    bool started = false;
    if (source == kGpsSourceBluetooth) SwitchRadioOnForGps(program);
    if (IsPortSource(source)) {
        program.port.links.nmeaFolder = app.folders.nmeaDir;
        started = StartPortGps(app, program.port, program.host);
    } else {
        started = StartGidSource(program.gid, {program.host, program.deviceQueries,
                                               program.libraryLoader, nullptr, nullptr});
        if (started) RunGpsFrom(app, [&program] { return ReadGidSource(program.gid); });
    }
    if (!started) return;
    program.runningSource = source;
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
        RepeatUntilSuccess([&program] { return program.host.Sound().StopSound(); });
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

template <int kView>
void ShowViewCommand(Program& program) {
    ShowView(program, kView);
}

template <std::int32_t Options::*kFlag>
void ToggleCommand(Program& program) {
    Toggle(program, program.app.options.*kFlag);
}

template <void (*kStep)(Navigation&)>
void DestinationCommand(Program& program) {
    kStep(program.app.navigation);
    program.host.Repaint();
}

void CheckForUpdates(Program& program) {
    ShowLanguageMessage(program.host, kTextUpdatesFromPackageManager, MessageIcon::kInformation);
}

struct Route {
    int id;
    void (*run)(Program&);
};

// Every command with its owner, but for the two radio groups.
constexpr Route kRoutes[] = {
    {kCommandGpsInfo, ShowViewCommand<kViewGpsInfo>},
    {kCommandSatellites, ShowViewCommand<kViewSatellites>},
    {kCommandCompass, ShowViewCommand<kViewCompass>},
    {kCommandSpeed, ShowViewCommand<kViewSpeed>},
    {kCommandTripStat, ShowViewCommand<kViewTripStat>},
    {kCommandMap, ShowMapView},
    {kCommandShowMap, ToggleCommand<&Options::showMap>},
    {kCommandShowRefPoints, ToggleCommand<&Options::showRefPoints>},
    {kCommandWorldMap, ShowViewCommand<kViewWorldMap>},
    {kCommandShowTrack, ToggleCommand<&Options::showTrack>},
    {kCommandShowWaypoint, ToggleCommand<&Options::showWaypoint>},
    {kCommandShowPoi, ToggleCommand<&Options::showPoi>},
    {kCommandShowDestinations, ToggleCommand<&Options::showDestinations>},
    {kCommandShowDestinationInfo, ToggleCommand<&Options::showDestinationInfo>},
    {kCommandShowLabel, ToggleCommand<&Options::showLabel>},
    {kCommandShowRange, ToggleCommand<&Options::showRange>},
    {kCommandNightView, ToggleCommand<&Options::nightView>},
    {kCommandFullScreen, ToggleCommand<&Options::fullScreen>},
    {kCommandStartGps, StartGps},
    {kCommandStopGps, StopGps},
    {kCommandEnableLogger, ToggleCommand<&Options::trackLoggerEnabled>},
    {kCommandNavigation, ToggleCommand<&Options::navigation>},
    {kCommandVoiceGuide, ToggleCommand<&Options::voiceGuide>},
    {kCommandNextDestination, DestinationCommand<NextDestination>},
    {kCommandPreviousDestination, DestinationCommand<PreviousDestination>},
    {kCommandResetDestinations, DestinationCommand<ResetDestinations>},
    {kCommandCloseDestinationList, CloseDestinations},
    {kCommandUserManual, OpenUserManual},
    {kCommandAbout, ShowAbout},
    {kCommandCheckForUpdates, CheckForUpdates},
    {kCommandExit, Exit},
};

// The speed alarm ("Off" and the eight limits) and the track interval
// presets, each a radio group whose command carries the index.
bool RunRadioCommand(Program& program, int id) {
    Options& options = program.app.options;
    int alarmIndex = 0;
    if (SpeedAlarmIndexFromCommand(id, alarmIndex)) {
        options.speedAlarmIndex = alarmIndex;
    } else if (InRange(id, kCommandFirstInterval, kCommandLastInterval)) {
        options.trackIntervalIndex = id - kCommandFirstInterval;
    } else {
        return false;
    }
    program.host.Repaint();
    return true;
}

}  // namespace

bool IsCommandAvailable(Program& program, int id) {
    if (IsMapCommand(id)) return IsMapCommandAvailable(program.app, id);
    switch (id) {
        case kCommandGoToDestination:
        case kCommandNextDestination:
        case kCommandPreviousDestination:
        case kCommandResetDestinations:
            // The round runs only with navigation on, through an open list
            // that has at least one destination to go to.
            return program.app.options.navigation != 0 && HasDestinations(program);
        case kCommandPointManager:
            return !program.app.runtime.waypointFile.empty();
        case kCommandCloseDestinationList:
        case kCommandEditDestinations:
            return DestinationListOpen(program);
        case kCommandVoiceGuide:
            return VoiceGuideSwitchable(program);
        default:
            return true;
    }
}

CommandResult OnCommand(Program& program, int id) {
    if (!IsCommandAvailable(program, id)) return CommandResult::kUnavailable;
    if (OpensDialog(id)) {
        program.host.OpenDialog(id);
        return CommandResult::kDone;
    }
    for (const Route& route : kRoutes) {
        if (route.id != id) continue;
        route.run(program);
        return CommandResult::kDone;
    }
    if (InRange(id, kCommandFirstRefPoint, kCommandLastRefPoint)) {
        StartRefPoint(program, id - kCommandFirstRefPoint);
        return CommandResult::kDone;
    }
    return RunRadioCommand(program, id) ? CommandResult::kDone : CommandResult::kUnknown;
}

}  // namespace tolvane
