#pragma once

#include <QWidget>
#include <string>

namespace tolvane::shell {

// Asks for an existing file to open, starting in folder, with the file
// chooser filling the window (so it fits the smallest screens). Empty when
// the user cancelled.
std::string ChooseFileToOpen(QWidget* parent, const std::string& caption, const std::string& folder,
                             const std::string& filter);

}  // namespace tolvane::shell
