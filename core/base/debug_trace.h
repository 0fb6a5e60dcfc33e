#pragma once

#include <string_view>

namespace tolvane {

// Developer traces on standard error, silent unless TOLVANE_DEBUG is set.
void DebugTrace(std::string_view text);

}  // namespace tolvane
