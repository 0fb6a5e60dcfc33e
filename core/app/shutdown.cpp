#include "core/app/shutdown.h"

#include "core/base/string_manager.h"

namespace tolvane {

bool RunExit(Program& program) {
    SaveOptions(program.files.optionsPath, program.app.options, 1);
    return program.host.AskYesNo(CStringManager::GetInstance().GetText(kTextConfirmExit),
                                 program.title);
}

}  // namespace tolvane
