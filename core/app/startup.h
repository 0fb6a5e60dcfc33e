#pragma once

#include <string>

#include "core/app/host.h"
#include "core/app/program.h"
#include "core/app/single_instance_rule.h"
#include "core/views/font_set.h"

namespace tolvane {

// The message of a language file that could not be loaded. Its caption is
// the product name itself, because no language text is available then.
inline constexpr char kLanguageLoadFailedText[] =
    "Load language file failed!\n\nYour Tolvane GPS Utilities installation may have been damaged.";
inline constexpr char kFixedProductName[] = "Tolvane GPS Utilities";
inline constexpr char kMainTimerFailedText[] =
    "Critical Error: 0x08200a12\n\nThe program will now exit.";
inline constexpr char kTrackTimerFailedText[] =
    "Create Track Timer failed: 0x08200a13\n\nPress OK to continue...";

// The screen size that is taken to be a square handheld, whose reported dots
// per inch are not trusted.
inline constexpr int kSquareScreenSide = 320;
inline constexpr int kSquareScreenDpi = 110;

// The order of start-up, as the shell runs it:
//   1. StartBeforeWindow: the settings file beside the record (it may
//      choose the language), the language file, the title, the
//      single-instance check and the settings record. False ends the start
//      silently.
//   2. The shell reads the screen, calls PrepareWindow and creates its
//      window with the soft keys, fonts and layout it returns.
//   3. StartAfterWindow: the replays of night view and full screen, the
//      screen kept on, both timers, the data folders, the point lists and
//      the GPS start. False ends the program (the main timer failed).

// The language the program speaks: the Options dialog's choice (setting, a
// code or empty), else the code in TOLVANE_LANGUAGE, else the language of
// the desktop's locale (LC_ALL, LC_MESSAGES, LANG).
std::string ChosenLanguage(const std::string& setting);

// The code of the language file to read: the chosen language's, or ENU when
// that language has no file beside the program.
std::string LanguageToLoad(const std::string& setting);

// The first step of start-up: loads the language file of the chosen
// language beside the program, the English one when that language has
// none, and when even that fails says so once and carries on with an empty
// table (the texts built in then stand in). Returns whether a file loaded.
bool LoadLanguageStrings(Host& host, const std::string& setting);

// Speaks the language of the Options dialog's choice from now on: the
// language file is read again and the window relabelled.
void SwitchLanguage(Program& program);

bool StartBeforeWindow(Program& program, InstanceLock& lock);

// What the window is made with.
struct WindowSetup {
    explicit WindowSetup(int baseFontHeight) : fonts(baseFontHeight) {}
    std::string leftSoftKey;   // text 40008, opens the views
    std::string rightSoftKey;  // text 40007, opens the command menu
    FontSet fonts;
    bool largeLayout = false;
};

// A square 320 x 320 screen counts as 110 dots per inch both ways, whatever
// it reports.
ScreenMetrics ApplySquareScreenRule(ScreenMetrics reported);

// Keeps the screen's metrics in the program and derives the window's soft
// keys, fonts and layout: the large layout when the base font height is not
// 15 and the screen is not the square one.
WindowSetup PrepareWindow(Program& program, const ScreenMetrics& reported);

bool StartAfterWindow(Program& program);

// The steps of StartAfterWindow that tests and the shell may run alone.

// Builds the data folder tree under the storage location, or under the
// documents folder when that is unset or cannot be made (the setting then
// names the documents folder). A file named "My GPS" blocks every folder
// without an error.
void PrepareDataFolders(AppState& app, const std::string& documentsFolder);

// Points the POI folder and the waypoint file at the data tree when they
// are unset or gone.
void DefaultPointLocations(AppState& app);

// Loads the waypoint file and, when asked for at start-up, every "*.csv" of
// the POI folder, in place of the lists held before; the Options dialog calls
// it again when the waypoint file, the POI folder or "Load POI at startup"
// change, so that the maps show the change at once.
void LoadPointLists(AppState& app);

}  // namespace tolvane
