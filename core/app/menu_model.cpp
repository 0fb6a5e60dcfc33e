#include "core/app/menu_model.h"

#include "core/base/string_manager.h"

namespace tolvane {

std::string SoftKeyText(int id) {
    return CStringManager::GetInstance().GetText(static_cast<std::uint32_t>(id));
}

MenuItem BuildViewsMenu(const Program&) {
    return {};
}

MenuItem BuildCommandMenu(const Program&) {
    return {};
}

}  // namespace tolvane
