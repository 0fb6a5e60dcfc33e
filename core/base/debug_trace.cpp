#include "core/base/debug_trace.h"

#include <cstdio>
#include <cstdlib>

namespace tolvane {

void DebugTrace(std::string_view text) {
    static const bool enabled = std::getenv("TOLVANE_DEBUG") != nullptr;
    if (!enabled) return;
    std::fwrite(text.data(), 1, text.size(), stderr);
}

}  // namespace tolvane
