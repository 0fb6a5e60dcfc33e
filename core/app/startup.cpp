#include "core/app/startup.h"

#include "core/base/string_manager.h"

namespace tolvane {

bool LoadLanguageStrings(Host& host) {
    if (CStringManager::GetInstance().Load(kLanguageEnglish, kSubLanguageEnglishUs)) return true;
    host.ShowMessage(kLanguageLoadFailedText, kFixedProductName, MessageIcon::kStop);
    return false;
}

}  // namespace tolvane
