#include "shell/dialogs/view_log_file_dialog.h"

#include "core/app/commands.h"
#include "core/app/file_import.h"
#include "core/base/string_manager.h"
#include "formats/point_file_reader.h"
#include "shell/dialogs/file_chooser.h"

namespace tolvane::shell {

void RunViewLogFile(Program& program, QWidget* parent) {
    const std::string path =
        ChooseFileToOpen(parent, LanguageText(kCommandViewLogFile), program.app.folders.trackLogDir,
                         LanguageText(kTextTrackFileFilter));
    if (path.empty()) return;
    const std::string message = ViewTrackFile(program.app, path, ReadTrackFile(path));
    program.host.Repaint();
    if (!message.empty())
        program.host.ShowMessage(message, program.title, MessageIcon::kInformation);
}

}  // namespace tolvane::shell
