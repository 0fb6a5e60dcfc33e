#pragma once

#include <QDialog>

namespace tolvane::shell {

// Gives a dialog the size of the window it belongs to, as on a handheld,
// but never more than the screen can show, and places it over the window
// with every edge on the screen.
void CoverWindowOnScreen(QDialog& dialog, QWidget* parent);

}  // namespace tolvane::shell
