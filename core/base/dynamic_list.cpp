#include "core/base/dynamic_list.h"

#include <cstdlib>

#include "core/base/diagnostic_log.h"

namespace tolvane {

void DynamicListCriticalError(int line) {
    DiagnosticLog::SetPendingSource("dynamiclist", line);
    DiagnosticLog::Instance().Report("Critical Error: LinkedList");
    std::exit(1);
}

}  // namespace tolvane
