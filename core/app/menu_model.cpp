#include "core/app/menu_model.h"

#include <initializer_list>

#include "core/app/commands.h"
#include "core/base/string_manager.h"
#include "core/maps/recent_maps.h"

namespace tolvane {
namespace {

// The language ids of the pop-up headers of the command menu.
constexpr std::uint32_t kTextMapMenu = 10660;
constexpr std::uint32_t kTextRecentMapsMenu = 10661;
constexpr std::uint32_t kTextRefPointMenu = 10662;
constexpr std::uint32_t kTextGoToMenu = 10663;
constexpr std::uint32_t kTextDestinationListMenu = 10664;
constexpr std::uint32_t kTextSpeedAlarmMenu = 10665;
constexpr std::uint32_t kTextTrackMenu = 10666;
constexpr std::uint32_t kTextTrackIntervalMenu = 10667;
constexpr std::uint32_t kTextPointsMenu = 10668;
constexpr std::uint32_t kTextHelpMenu = 10669;

// A text of the language file, or the built-in English text when the file
// lacks it, so that a damaged installation still has a usable menu.
std::string Text(std::uint32_t id, const char* english) {
    const char* text = CStringManager::GetInstance().GetString(id);
    return text != nullptr ? text : english;
}

MenuItem Separator() {
    MenuItem item;
    item.separator = true;
    return item;
}

MenuItem Popup(std::uint32_t textId, const char* english, std::vector<MenuItem> children) {
    MenuItem item;
    item.text = Text(textId, english);
    item.children = std::move(children);
    return item;
}

// A command item, greyed when the command cannot run now.
MenuItem Command(Program& program, int id, const char* english) {
    MenuItem item;
    item.id = id;
    item.text = Text(static_cast<std::uint32_t>(id), english);
    item.enabled = IsCommandAvailable(program, id);
    return item;
}

MenuItem Toggle(Program& program, int id, const char* english, bool checked) {
    MenuItem item = Command(program, id, english);
    item.checkable = true;
    item.checked = checked;
    return item;
}

MenuItem Radio(Program& program, int id, const char* english, bool checked) {
    MenuItem item = Toggle(program, id, english, checked);
    item.radio = true;
    return item;
}

MenuItem ViewItem(Program& program, int id, const char* english, int view) {
    return Radio(program, id, english, program.app.currentView == view);
}

MenuItem GpsItem(Program& program) {
    if (program.app.gpsRunning) return Command(program, kCommandStopGps, "Stop GPS\t[0]");
    return Command(program, kCommandStartGps, "Start GPS\t[0]");
}

MenuItem MapMenu(Program& program) {
    const Options& options = program.app.options;
    std::vector<MenuItem> recent;
    for (int id = kCommandFirstRecentMap; id <= kCommandLastRecentMap; ++id) {
        MenuItem item = Command(program, id, "Empty");
        const std::string name = RecentMapText(options, id - kCommandFirstRecentMap);
        if (name != "Empty") item.text = name;
        recent.push_back(item);
    }
    std::vector<MenuItem> refPoints;
    for (int id = kCommandFirstRefPoint; id <= kCommandLastRefPoint; ++id) {
        const std::string english =
            "Set Ref Point " + std::to_string(id - kCommandFirstRefPoint + 1);
        refPoints.push_back(Command(program, id, english.c_str()));
    }
    return Popup(
        kTextMapMenu, "Map",
        {Command(program, kCommandLoadMap, "Load Map"),
         Popup(kTextRecentMapsMenu, "Recent Maps", std::move(recent)), Separator(),
         Toggle(program, kCommandShowMap, "Show Map", options.showMap),
         Toggle(program, kCommandShowRefPoints, "Show Ref Points", options.showRefPoints),
         Toggle(program, kCommandShowTrack, "Show Track", options.showTrack),
         Toggle(program, kCommandShowWaypoint, "Show Waypoint", options.showWaypoint),
         Toggle(program, kCommandShowPoi, "Show POI", options.showPoi),
         Toggle(program, kCommandShowDestinations, "Show Destinations", options.showDestinations),
         Toggle(program, kCommandShowDestinationInfo, "Show Destn. Info",
                options.showDestinationInfo),
         Toggle(program, kCommandShowLabel, "Show Label", options.showLabel),
         Toggle(program, kCommandShowRange, "Show Range", options.showRange), Separator(),
         Popup(kTextRefPointMenu, "Reference Points", std::move(refPoints))});
}

MenuItem GoToMenu(Program& program) {
    return Popup(
        kTextGoToMenu, "Go To",
        {Command(program, kCommandGoToDestination, "Destination"),
         Command(program, kCommandNextDestination, "Next"),
         Command(program, kCommandPreviousDestination, "Previous"),
         Command(program, kCommandResetDestinations, "Reset"), Separator(),
         Command(program, kCommandAddDestination, "Add Destination"),
         Command(program, kCommandEditDestinations, "Edit Destinations"),
         Popup(kTextDestinationListMenu, "Destn. List",
               {Command(program, kCommandNewDestinationList, "New"),
                Command(program, kCommandOpenDestinationList, "Open"),
                Command(program, kCommandCloseDestinationList, "Close")}),
         Separator(),
         Toggle(program, kCommandNavigation, "Navigation", program.app.options.navigation != 0),
         Toggle(program, kCommandVoiceGuide, "Voice Guide", program.app.options.voiceGuide != 0)});
}

// "Off", then the eight limits in the current unit ("50 km/h"), one of them
// checked.
MenuItem SpeedAlarmMenu(Program& program) {
    const Options& options = program.app.options;
    std::vector<MenuItem> items;
    items.push_back(
        Radio(program, kCommandSpeedAlarmOff, "Off", options.speedAlarmIndex == kSpeedAlarmOff));
    for (int index = 0; index <= kLastSpeedAlarm; ++index) {
        MenuItem item =
            Radio(program, SpeedAlarmCommand(index), "", options.speedAlarmIndex == index);
        item.text = SpeedAlarmMenuText(options.speedAlarmValues[index], options.unitSystem);
        items.push_back(std::move(item));
    }
    items.push_back(Separator());
    items.push_back(Command(program, kCommandCustomSpeedAlarm, "Customize..."));
    return Popup(kTextSpeedAlarmMenu, "Speed Alarm", std::move(items));
}

MenuItem TrackMenu(Program& program) {
    const Options& options = program.app.options;
    std::vector<MenuItem> intervals;
    const char* const english[] = {"Interval 10s", "Interval 20s", "Interval 30s", "Interval 60s"};
    for (int index = 0; index < kTrackIntervalCount; ++index) {
        intervals.push_back(Radio(program, kCommandFirstInterval + index, english[index],
                                  options.trackIntervalIndex == index));
    }
    intervals.push_back(Separator());
    intervals.push_back(Command(program, kCommandCustomInterval, "Customize..."));
    return Popup(
        kTextTrackMenu, "Track",
        {Toggle(program, kCommandEnableLogger, "Enable Logger", options.trackLoggerEnabled != 0),
         Popup(kTextTrackIntervalMenu, "Track Interval", std::move(intervals)), Separator(),
         Command(program, kCommandViewLogFile, "View Log File")});
}

MenuItem PointsMenu(Program& program) {
    return Popup(kTextPointsMenu, "Waypoints && POI",
                 {Command(program, kCommandAddWaypoint, "Add Waypoint"),
                  Command(program, kCommandAddPoi, "Add POI"),
                  Command(program, kCommandPointManager, "W && P Manager"), Separator(),
                  Command(program, kCommandImport, "Import")});
}

MenuItem HelpMenu(Program& program) {
    return Popup(kTextHelpMenu, "Help",
                 {Command(program, kCommandUserManual, "User Manual"),
                  Command(program, kCommandCheckForUpdates, "Check for Updates"),
                  Command(program, kCommandAbout, "About")});
}

}  // namespace

std::string SoftKeyText(int id) {
    return Text(static_cast<std::uint32_t>(id), id == kCommandLeftSoftKey ? "Views" : "Menu");
}

MenuItem BuildViewsMenu(Program& program) {
    const Options& options = program.app.options;
    MenuItem menu;
    menu.text = SoftKeyText(kCommandLeftSoftKey);
    menu.children = {
        ViewItem(program, kCommandGpsInfo, "GPS Info\t[1]", kViewGpsInfo),
        ViewItem(program, kCommandSatellites, "Satellites\t[7]", kViewSatellites),
        ViewItem(program, kCommandWorldMap, "World Map\t[2]", kViewWorldMap),
        ViewItem(program, kCommandCompass, "Compass\t[4]", kViewCompass),
        ViewItem(program, kCommandSpeed, "Speed\t[5]", kViewSpeed),
        ViewItem(program, kCommandTripStat, "Trip Stat.\t[6]", kViewTripStat),
        Separator(),
        Toggle(program, kCommandNightView, "Night View\t[#]", options.nightView != 0),
        Toggle(program, kCommandFullScreen, "Full Screen (Map)", options.fullScreen != 0)};
    return menu;
}

MenuItem BuildCommandMenu(Program& program) {
    MenuItem menu;
    menu.text = SoftKeyText(kCommandRightSoftKey);
    menu.children = {GpsItem(program),
                     Command(program, kCommandGpsSetup, "GPS Setup\t[*]"),
                     Separator(),
                     MapMenu(program),
                     GoToMenu(program),
                     SpeedAlarmMenu(program),
                     TrackMenu(program),
                     PointsMenu(program),
                     Separator(),
                     Command(program, kCommandOptions, "Options"),
                     HelpMenu(program),
                     Separator(),
                     Command(program, kCommandExit, "Exit")};
    return menu;
}

}  // namespace tolvane
