#include "core/app/startup.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

#include "core/app/commands.h"
#include "core/app/local_settings.h"
#include "core/app/main_timer.h"
#include "core/app/menu_model.h"
#include "core/base/language_choice.h"
#include "core/base/string_manager.h"
#include "core/data/geo_point_file.h"
#include "core/data/point_collection.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;

constexpr int kTimerMilliseconds = 1000;
constexpr int kSmallLayoutFontHeight = 15;

// An environment variable's value; empty when it is not set.
std::string_view Environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string_view() : std::string_view(value);
}

bool Exists(const std::string& path) {
    std::error_code error;
    return !path.empty() && fs::exists(path, error);
}

// Creates one folder; one that is there already, or cannot be made, is
// passed over without a word, as every data folder is.
void CreateFolder(const std::string& path) {
    std::error_code error;
    fs::create_directory(path, error);
}

std::string WithoutTrailingSeparator(std::string path) {
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

// The storage location when it is set and is, or can be made, a folder;
// otherwise the documents folder, which then becomes the setting.
std::string ChooseDataRoot(OptionsRuntime& runtime, const std::string& documents) {
    const std::string& location = runtime.storageLocation;
    if (!location.empty()) {
        std::error_code error;
        if (fs::exists(location, error) || fs::create_directory(location, error)) return location;
    }
    runtime.storageLocation = documents;
    return documents;
}

// Replays a display setting through its toggle, which sets it again and
// repaints in its look.
void ReplayToggle(Program& program, std::int32_t& flag, int command) {
    if (!flag) return;
    flag = 0;
    OnCommand(program, command);
}

// Starts a one-second timer in place of the one before; false when none
// could be made.
bool RestartTimer(Program& program, int& timerId, std::function<void()> procedure) {
    if (timerId != 0) program.host.Timers().KillTimer(timerId);
    timerId = program.host.Timers().StartTimer(kTimerMilliseconds, std::move(procedure));
    return timerId != 0;
}

bool StartTimers(Program& program) {
    AppState& app = program.app;
    Host& host = program.host;
    if (!RestartTimer(program, program.mainTimerId, [&app, &host] { MainTimerProc(app, host); })) {
        host.ShowMessage(kMainTimerFailedText, program.title, MessageIcon::kStop);
        return false;
    }
    if (!RestartTimer(program, program.trackTimerId,
                      [&app, &host] { TrackTimerProc(app, host); })) {
        host.ShowMessage(kTrackTimerFailedText, program.title, MessageIcon::kStop);
    }
    return true;
}

}  // namespace

std::string ChosenLanguage(const std::string& setting) {
    const std::string_view locale =
        MessagesLocale(Environment("LC_ALL"), Environment("LC_MESSAGES"), Environment("LANG"));
    return ChooseLanguageCode(setting, Environment("TOLVANE_LANGUAGE"), locale);
}

std::string LanguageToLoad(const std::string& setting) {
    // A language without a file of its own reads English, without a word:
    // a locale of a language the program does not speak is no fault.
    const std::string code = ChosenLanguage(setting);
    return Exists(LanguageFilePath(code)) ? code : kEnglishLanguageCode;
}

bool LoadLanguageStrings(Host& host, const std::string& setting) {
    if (CStringManager::GetInstance().Load(LanguageToLoad(setting))) return true;
    host.ShowMessage(kLanguageLoadFailedText, kFixedProductName, MessageIcon::kStop);
    return false;
}

void SwitchLanguage(Program& program) {
    LoadLanguageStrings(program.host, program.app.runtime.language);
    program.title = ProductTitle();
    program.host.Relabel();
}

bool StartBeforeWindow(Program& program, InstanceLock& lock) {
    // The settings of the file beside the record are none of the record's,
    // so reading them first changes nothing but the language they choose.
    LoadLocalSettings(program);
    LoadLanguageStrings(program.host, program.app.runtime.language);
    program.title = ProductTitle();
    if (!ActivatePreviousInstance(lock, kInstanceName, program.title).MayStart()) return false;
    LoadOptionsAtStartup(program.files.optionsPath, program.app.options, program.app.runtime);
    return true;
}

ScreenMetrics ApplySquareScreenRule(ScreenMetrics reported) {
    if (reported.width == kSquareScreenSide && reported.height == kSquareScreenSide) {
        reported.dpiX = kSquareScreenDpi;
        reported.dpiY = kSquareScreenDpi;
    }
    return reported;
}

WindowSetup PrepareWindow(Program& program, const ScreenMetrics& reported) {
    const ScreenMetrics& screen = program.screen = ApplySquareScreenRule(reported);
    WindowSetup setup(BaseFontHeight(screen.dpiY));
    setup.leftSoftKey = SoftKeyText(kCommandLeftSoftKey);
    setup.rightSoftKey = SoftKeyText(kCommandRightSoftKey);
    const bool square = screen.width == kSquareScreenSide && screen.height == kSquareScreenSide;
    setup.largeLayout = setup.fonts.BaseHeight() != kSmallLayoutFontHeight && !square;
    return setup;
}

bool StartAfterWindow(Program& program) {
    AppState& app = program.app;
    ReplayToggle(program, app.options.nightView, kCommandNightView);
    ReplayToggle(program, app.options.fullScreen, kCommandFullScreen);
    if (app.options.keepBacklightOn) {
        program.host.HoldScreenOn();
        program.screenHeld = true;
    }
    if (!StartTimers(program)) return false;
    program.host.Repaint();
    PrepareDataFolders(app, program.files.documentsFolder);
    DefaultPointLocations(app);
    LoadPointLists(app);
    if (app.options.startGpsAtStartup) OnCommand(program, kCommandStartGps);
    return true;
}

void PrepareDataFolders(AppState& app, const std::string& documentsFolder) {
    const std::string documents = WithoutTrailingSeparator(documentsFolder);
    std::error_code error;
    fs::create_directories(documents, error);
    DataFolders& folders = app.folders = MakeDataFolders(ChooseDataRoot(app.runtime, documents));
    const std::string myGps = folders.root + "/My GPS";
    // A file of that name leaves every path as built, and the POI folder
    // without its "My POI" ending.
    if (fs::exists(myGps, error) && !fs::is_directory(myGps, error)) return;
    CreateFolder(myGps);
    for (const std::string* folder :
         {&folders.refPointDir, &folders.trackLogDir, &folders.nmeaDir, &folders.poiDir}) {
        CreateFolder(*folder);
    }
    folders.poiDir += "/My POI";
    CreateFolder(folders.poiDir);
    CreateFolder(folders.destinationDir);
}

void DefaultPointLocations(AppState& app) {
    OptionsRuntime& runtime = app.runtime;
    if (!Exists(runtime.poiFolder)) runtime.poiFolder = app.folders.poiDir;
    if (!Exists(runtime.waypointFile)) {
        runtime.waypointFile = app.folders.root + "/My GPS/Waypoint.csv";
    }
}

void LoadPointLists(AppState& app) {
    PointLists& points = app.points;
    const std::lock_guard<std::mutex> guard(points.lock);
    points.waypoints.Clear();
    points.pois.Clear();
    LoadPointFile(app.runtime.waypointFile, points.waypoints);
    if (!app.options.loadPoiAtStartup) return;
    for (const std::string& file : CsvFilesOf(app.runtime.poiFolder)) {
        LoadPointFile(file, points.pois);
    }
}

}  // namespace tolvane
