#pragma once

#include <QDialog>
#include <QLineEdit>
#include <QString>
#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tolvane::shell {

// A dialog of numbered fields ("1.", "2.", ...) that take digits only,
// with a note under them and OK and Cancel: Enter presses OK, Escape
// Cancel. Eight fields stand in two columns so that the dialog fits a
// 240 x 320 screen; the fields scroll when even that is too small.
class NumberFieldsDialog : public QDialog {
  public:
    NumberFieldsDialog(const QString& title, const QString& note,
                       const std::vector<std::string>& values, QWidget* parent);

    // The fields' texts, in their order.
    std::vector<std::string> Values() const;

  private:
    std::vector<QLineEdit*> fields_;
};

// Runs the dialog modally over the fields' texts; true, with the fields
// holding what the user left in them, when OK closed it.
template <std::size_t Count>
bool EditNumberFields(const QString& title, const QString& note,
                      std::array<std::string, Count>& fields, QWidget* parent) {
    NumberFieldsDialog dialog(title, note, {fields.begin(), fields.end()}, parent);
    if (dialog.exec() != QDialog::Accepted) return false;
    const std::vector<std::string> values = dialog.Values();
    std::copy(values.begin(), values.end(), fields.begin());
    return true;
}

}  // namespace tolvane::shell
