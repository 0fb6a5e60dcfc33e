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

MenuItem Separator() {
    MenuItem item;
    item.separator = true;
    return item;
}

// Every text is the language file's, or the built-in English one when the
// file lacks it, so that a damaged installation still has a usable menu.
MenuItem Popup(std::uint32_t textId, std::vector<MenuItem> children) {
    MenuItem item;
    item.text = LanguageText(textId);
    item.children = std::move(children);
    return item;
}

// A command item, greyed when the command cannot run now.
MenuItem Command(Program& program, int id) {
    MenuItem item;
    item.id = id;
    item.text = LanguageText(static_cast<std::uint32_t>(id));
    item.enabled = IsCommandAvailable(program, id);
    return item;
}

MenuItem Toggle(Program& program, int id, bool checked) {
    MenuItem item = Command(program, id);
    item.checkable = true;
    item.checked = checked;
    return item;
}

MenuItem Radio(Program& program, int id, bool checked) {
    MenuItem item = Toggle(program, id, checked);
    item.radio = true;
    return item;
}

MenuItem ViewItem(Program& program, int id, int view) {
    return Radio(program, id, program.app.currentView == view);
}

MenuItem GpsItem(Program& program) {
    if (program.app.gpsRunning) return Command(program, kCommandStopGps);
    return Command(program, kCommandStartGps);
}

MenuItem MapMenu(Program& program) {
    const Options& options = program.app.options;
    std::vector<MenuItem> recent;
    for (int id = kCommandFirstRecentMap; id <= kCommandLastRecentMap; ++id) {
        MenuItem item = Command(program, id);
        const std::string name = RecentMapText(options, id - kCommandFirstRecentMap);
        if (name != "Empty") item.text = name;
        recent.push_back(item);
    }
    std::vector<MenuItem> refPoints;
    for (int id = kCommandFirstRefPoint; id <= kCommandLastRefPoint; ++id) {
        refPoints.push_back(Command(program, id));
    }
    return Popup(kTextMapMenu,
                 {Command(program, kCommandLoadMap), Popup(kTextRecentMapsMenu, std::move(recent)),
                  Command(program, kCommandTileMaps), Separator(), Toggle(program, kCommandShowMap, options.showMap),
                  Toggle(program, kCommandShowRefPoints, options.showRefPoints),
                  Toggle(program, kCommandShowTrack, options.showTrack),
                  Toggle(program, kCommandShowWaypoint, options.showWaypoint),
                  Toggle(program, kCommandShowPoi, options.showPoi),
                  Toggle(program, kCommandShowDestinations, options.showDestinations),
                  Toggle(program, kCommandShowDestinationInfo, options.showDestinationInfo),
                  Toggle(program, kCommandShowLabel, options.showLabel),
                  Toggle(program, kCommandShowRange, options.showRange), Separator(),
                  Popup(kTextRefPointMenu, std::move(refPoints))});
}

MenuItem GoToMenu(Program& program) {
    return Popup(
        kTextGoToMenu,
        {Command(program, kCommandGoToDestination), Command(program, kCommandNextDestination),
         Command(program, kCommandPreviousDestination), Command(program, kCommandResetDestinations),
         Separator(), Command(program, kCommandAddDestination),
         Command(program, kCommandEditDestinations),
         Popup(kTextDestinationListMenu, {Command(program, kCommandNewDestinationList),
                                          Command(program, kCommandOpenDestinationList),
                                          Command(program, kCommandCloseDestinationList)}),
         Separator(), Toggle(program, kCommandNavigation, program.app.options.navigation != 0),
         Toggle(program, kCommandVoiceGuide, program.app.options.voiceGuide != 0)});
}

// "Off" and a separator, then the eight limits in the current unit
// ("50 km/h"), one of them checked: the limits sit at positions 2 to 9.
MenuItem SpeedAlarmMenu(Program& program) {
    const Options& options = program.app.options;
    std::vector<MenuItem> items;
    items.push_back(
        Radio(program, kCommandSpeedAlarmOff, options.speedAlarmIndex == kSpeedAlarmOff));
    items.push_back(Separator());
    for (int index = 0; index <= kLastSpeedAlarm; ++index) {
        MenuItem item = Radio(program, SpeedAlarmCommand(index), options.speedAlarmIndex == index);
        item.text = SpeedAlarmMenuText(options.speedAlarmValues[index], options.unitSystem);
        items.push_back(std::move(item));
    }
    items.push_back(Separator());
    items.push_back(Command(program, kCommandCustomSpeedAlarm));
    return Popup(kTextSpeedAlarmMenu, std::move(items));
}

MenuItem TrackMenu(Program& program) {
    const Options& options = program.app.options;
    std::vector<MenuItem> intervals;
    for (int index = 0; index < kTrackIntervalCount; ++index) {
        intervals.push_back(
            Radio(program, kCommandFirstInterval + index, options.trackIntervalIndex == index));
    }
    intervals.push_back(Separator());
    intervals.push_back(Command(program, kCommandCustomInterval));
    return Popup(kTextTrackMenu,
                 {Toggle(program, kCommandEnableLogger, options.trackLoggerEnabled != 0),
                  Popup(kTextTrackIntervalMenu, std::move(intervals)), Separator(),
                  Command(program, kCommandViewLogFile)});
}

MenuItem PointsMenu(Program& program) {
    return Popup(
        kTextPointsMenu,
        {Command(program, kCommandAddWaypoint), Command(program, kCommandAddPoi),
         Command(program, kCommandPointManager), Separator(), Command(program, kCommandImport)});
}

MenuItem HelpMenu(Program& program) {
    return Popup(kTextHelpMenu,
                 {Command(program, kCommandUserManual), Command(program, kCommandCheckForUpdates),
                  Command(program, kCommandAbout)});
}

}  // namespace

std::string SoftKeyText(int id) {
    return LanguageText(static_cast<std::uint32_t>(id));
}

MenuItem BuildViewsMenu(Program& program) {
    const Options& options = program.app.options;
    MenuItem menu;
    menu.text = SoftKeyText(kCommandLeftSoftKey);
    menu.children = {ViewItem(program, kCommandGpsInfo, kViewGpsInfo),
                     ViewItem(program, kCommandSatellites, kViewSatellites),
                     ViewItem(program, kCommandWorldMap, kViewWorldMap),
                     ViewItem(program, kCommandCompass, kViewCompass),
                     ViewItem(program, kCommandSpeed, kViewSpeed),
                     ViewItem(program, kCommandTripStat, kViewTripStat),
                     Separator(),
                     Toggle(program, kCommandNightView, options.nightView != 0),
                     Toggle(program, kCommandFullScreen, options.fullScreen != 0)};
    return menu;
}

MenuItem BuildCommandMenu(Program& program) {
    MenuItem menu;
    menu.text = SoftKeyText(kCommandRightSoftKey);
    menu.children = {GpsItem(program),
                     Command(program, kCommandGpsSetup),
                     Separator(),
                     MapMenu(program),
                     GoToMenu(program),
                     SpeedAlarmMenu(program),
                     TrackMenu(program),
                     PointsMenu(program),
                     Separator(),
                     Command(program, kCommandOptions),
                     HelpMenu(program),
                     Separator(),
                     Command(program, kCommandExit)};
    return menu;
}

}  // namespace tolvane
