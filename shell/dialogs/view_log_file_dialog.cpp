#include "shell/dialogs/view_log_file_dialog.h"

#include "core/app/commands.h"
#include "core/app/file_import.h"
#include "core/base/string_manager.h"
#include "formats/point_file_reader.h"
#include "shell/dialogs/dialog_parts.h"

namespace tolvane::shell {

void RunViewLogFile(Program& program, QWidget* parent) {
    const std::string path = ChooseFile(parent, FileChoice::kOpen, Text(kCommandViewLogFile),
                                        program.app.folders.trackLogDir, Text(kTextTrackFileFilter),
                                        DialogFit::kCoverWindow)
                                 .toStdString();
    if (path.empty()) return;
    const ImportRead read = ReadWithProgress(
        parent, Text(kCommandViewLogFile),
        [&path](const ImportProgress& progress) { return ReadTrackFile(path, progress); });
    if (read.problem == ImportProblem::kCancelled) return;
    const std::string message = ViewTrackFile(program.app, path, read);
    program.host.Repaint();
    if (!message.empty())
        program.host.ShowMessage(message, program.title, MessageIcon::kInformation);
}

}  // namespace tolvane::shell
