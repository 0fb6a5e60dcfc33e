#include "core/app/startup.h"

#include "core/base/string_manager.h"

namespace tolvane {

bool LoadLanguageStrings(Host& host) {
    if (CStringManager::GetInstance().Load(kLanguageEnglish, kSubLanguageEnglishUs)) return true;
    host.ShowMessage(kLanguageLoadFailedText, kFixedProductName, MessageIcon::kStop);
    return false;
}

bool StartBeforeWindow(Program& program, InstanceLock& lock) {
    LoadLanguageStrings(program.host);
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
    program.screen = ApplySquareScreenRule(reported);
    WindowSetup setup(BaseFontHeight(program.screen.dpiY));
    return setup;
}

bool StartAfterWindow(Program& program) {
    PrepareDataFolders(program.app, program.files.documentsFolder);
    return true;
}

void PrepareDataFolders(AppState& app, const std::string& documentsFolder) {
    app.folders = MakeDataFolders(documentsFolder);
}

void DefaultPointLocations(AppState&) {}

void LoadPointLists(AppState&) {}

}  // namespace tolvane
