#pragma once

#include "core/app/host.h"

namespace tolvane {

// The message of a language file that could not be loaded. Its caption is
// the product name itself, because no language text is available then.
inline constexpr char kLanguageLoadFailedText[] =
    "Load language file failed!\n\nYour Tolvane GPS Utilities installation may have been damaged.";
inline constexpr char kFixedProductName[] = "Tolvane GPS Utilities";

// The first step of start-up: loads the English language file beside the
// program and, when that fails, says so once and carries on with an empty
// table. Returns whether the file loaded.
bool LoadLanguageStrings(Host& host);

}  // namespace tolvane
