#include "core/app/language_messages.h"

#include "core/base/string_manager.h"

namespace tolvane {
namespace {

// The texts take their one argument, an error code, as "%s".
std::string FillArgument(std::string text, const std::string& argument) {
    const std::size_t place = text.find("%s");
    if (place != std::string::npos) text.replace(place, 2, argument);
    return text;
}

}  // namespace

void ShowLanguageMessage(Host& host, std::uint32_t id, MessageIcon icon,
                         const std::string& argument) {
    host.ShowMessage(FillArgument(LanguageText(id), argument), LanguageText(kTextProductName),
                     icon);
}

}  // namespace tolvane
