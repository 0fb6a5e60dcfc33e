#pragma once

#include <cstdint>

#include "core/app/program.h"
#include "core/nav/navigation.h"
#include "core/nav/speed_alarm.h"

namespace tolvane {

// The command ids of the menu, the soft keys and the keys. The speed-alarm
// and Go-To step commands are declared beside their owners.
inline constexpr int kCommandAbout = 40004;
inline constexpr int kCommandRightSoftKey = 40007;  // opens the command menu
inline constexpr int kCommandLeftSoftKey = 40008;   // opens the views
inline constexpr int kCommandStartGps = 40009;
inline constexpr int kCommandStopGps = 40010;
inline constexpr int kCommandExit = 40011;
inline constexpr int kCommandSatellites = 40012;
inline constexpr int kCommandSpeed = 40014;
inline constexpr int kCommandCompass = 40015;
inline constexpr int kCommandLoadMap = 40019;
inline constexpr int kCommandWorldMap = 40020;
inline constexpr int kCommandMap = 40021;
inline constexpr int kCommandShowMap = 40022;
inline constexpr int kCommandShowTrack = 40023;
inline constexpr int kCommandShowPoi = 40024;
inline constexpr int kCommandFirstRefPoint = 40025;
inline constexpr int kCommandLastRefPoint = 40029;
inline constexpr int kCommandEnableLogger = 40030;
inline constexpr int kCommandViewLogFile = 40031;
inline constexpr int kCommandGpsSetup = 40033;
inline constexpr int kCommandShowRefPoints = 40043;
inline constexpr int kCommandFirstInterval = 40044;
inline constexpr int kCommandLastInterval = 40047;
inline constexpr int kCommandGpsInfo = 40048;
inline constexpr int kCommandOptions = 40200;
inline constexpr int kCommandUserManual = 40201;
inline constexpr int kCommandFirstRecentMap = 40202;
inline constexpr int kCommandLastRecentMap = 40206;
inline constexpr int kCommandCustomSpeedAlarm = 40207;
inline constexpr int kCommandCustomInterval = 40208;
inline constexpr int kCommandAddWaypoint = 40227;
inline constexpr int kCommandAddPoi = 40228;
inline constexpr int kCommandPointManager = 40233;
inline constexpr int kCommandNavigation = 40235;
inline constexpr int kCommandVoiceGuide = 40236;
inline constexpr int kCommandGoToDestination = 40240;
inline constexpr int kCommandAddDestination = 40242;
inline constexpr int kCommandEditDestinations = 40243;
inline constexpr int kCommandNewDestinationList = 40244;
inline constexpr int kCommandOpenDestinationList = 40245;
inline constexpr int kCommandCloseDestinationList = 40246;
inline constexpr int kCommandShowWaypoint = 40254;
inline constexpr int kCommandShowDestinations = 40255;
inline constexpr int kCommandShowDestinationInfo = 40256;
inline constexpr int kCommandShowLabel = 40257;
inline constexpr int kCommandShowRange = 40258;
inline constexpr int kCommandNightView = 40259;
inline constexpr int kCommandFullScreen = 40260;
inline constexpr int kCommandTripStat = 40262;
inline constexpr int kCommandImport = 40263;
inline constexpr int kCommandCheckForUpdates = 40266;
inline constexpr int kCommandTileMaps = 40267;

// Language strings of the commands.
inline constexpr std::uint32_t kTextManualNotOpened = 10717;
inline constexpr std::uint32_t kTextUpdatesFromPackageManager = 13004;

// The licence and the credits the About box shows.
inline constexpr char kProgramLicence[] = "GNU General Public License, version 3 or later";
inline constexpr char kProgramCredits[] =
    "Qt 6 (LGPL-3.0), The Qt Company and contributors\n"
    "Demo recording from the GPSD project (BSD-2-Clause)";

enum class CommandResult {
    kDone,
    kUnavailable,  // a command of the menu that cannot run now; it is greyed
    kUnknown,      // no command of this program
};

// Whether a command of the menu can run now (it looks at the destination
// list under its lock). Commands whose dialogs and map
// views this program does not have yet are never available.
bool IsCommandAvailable(Program& program, int id);

// Runs a command. Every id of the menu has its owner here; an unavailable
// one does nothing and says so in its result. Commands that change what the
// window shows (the views, night view, full screen) end in Host::Repaint;
// the shell reads the current view and the night and full-screen settings
// when it paints. Exit ends in Host::CloseWindow when the user confirms.
CommandResult OnCommand(Program& program, int id);

}  // namespace tolvane
