#include "core/app/destination_commands.h"

#include <filesystem>

#include "core/app/point_commands.h"
#include "core/base/string_manager.h"
#include "core/data/geo_point_file.h"
#include "core/nav/destination_list.h"

namespace tolvane {
namespace {

struct ListState {
    bool unsavedChanges = false;
    std::string file;
};

ListState ReadListState(Navigation& navigation) {
    const std::lock_guard<std::mutex> guard(navigation.lock);
    return {navigation.open && navigation.unsavedChanges, navigation.file};
}

std::string SaveQuestion(const std::string& file) {
    if (file.empty()) return LanguageText(kTextSaveNewDestinationList);
    return FillLanguageText(kTextSaveDestinationChanges,
                            {std::filesystem::path(file).filename().string()});
}

// Saves the list to its file, or to one the user chooses when it has none.
bool SaveBeforeDropping(Program& program, std::string file) {
    if (file.empty()) file = program.host.ChooseDestinationFile(DefaultDestinationPath(program.app));
    if (file.empty()) return false;
    if (SaveDestinationList(program.app.navigation, file)) return true;
    program.host.ShowMessage(PointFileNotSavedMessage(file), program.title, MessageIcon::kStop);
    return false;
}

}  // namespace

bool MayDropDestinationList(Program& program) {
    const ListState list = ReadListState(program.app.navigation);
    if (!list.unsavedChanges) return true;
    switch (program.host.AskSaveDiscardCancel(SaveQuestion(list.file), program.title)) {
        case SaveAnswer::kSave:
            return SaveBeforeDropping(program, list.file);
        case SaveAnswer::kDiscard:
            return true;
        case SaveAnswer::kCancel:
            return false;
    }
    return false;
}

void CloseDestinations(Program& program) {
    if (!MayDropDestinationList(program)) return;
    CloseDestinationList(program.app.navigation);
    program.host.Repaint();
}

bool StartGoTo(Program& program, const GeoPoint& point) {
    if (!MayDropDestinationList(program)) return false;
    GoToPoint(program.app.navigation, point);
    program.app.options.navigation = 1;
    return true;
}

}  // namespace tolvane
