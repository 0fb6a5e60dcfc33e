#pragma once

#include <QLineEdit>

namespace tolvane::shell {

// Line edits for the dialogs' number fields, which refuse any other key.

// Digits only, for a whole number that cannot be negative.
QLineEdit* NewDigitsEdit(int maxLength, QWidget* parent);

// A decimal number with an optional minus sign; a negative one is typed as
// the user means it and the dialog's rule decides what is stored.
QLineEdit* NewDecimalEdit(int maxLength, QWidget* parent);

}  // namespace tolvane::shell
