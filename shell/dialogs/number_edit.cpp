#include "shell/dialogs/number_edit.h"

#include <QRegularExpression>
#include <QRegularExpressionValidator>

namespace tolvane::shell {
namespace {

QLineEdit* NewPatternEdit(const QString& pattern, int maxLength, QWidget* parent) {
    auto* edit = new QLineEdit(parent);
    edit->setMaxLength(maxLength);
    edit->setValidator(new QRegularExpressionValidator(QRegularExpression(pattern), edit));
    edit->setInputMethodHints(Qt::ImhFormattedNumbersOnly);
    return edit;
}

}  // namespace

QLineEdit* NewDigitsEdit(int maxLength, QWidget* parent) {
    QLineEdit* edit = NewPatternEdit(QStringLiteral("[0-9]*"), maxLength, parent);
    edit->setInputMethodHints(Qt::ImhDigitsOnly);
    return edit;
}

QLineEdit* NewDecimalEdit(int maxLength, QWidget* parent) {
    return NewPatternEdit(QStringLiteral("-?[0-9]*\\.?[0-9]*"), maxLength, parent);
}

}  // namespace tolvane::shell
