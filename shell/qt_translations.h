#pragma once

#include <string>

namespace tolvane::shell {

// Lets Qt label its own parts (the standard buttons, the file dialog) in the
// language the program speaks, "DEU" for German, from the Qt translations
// installed on the system. English, or a language whose Qt translation is
// not installed, leaves Qt's own English words.
void SpeakQtLanguage(const std::string& languageCode);

}  // namespace tolvane::shell
