#include "shell/dialogs/number_fields_dialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QScrollArea>
#include <QVBoxLayout>

#include "shell/dialogs/dialog_parts.h"

namespace tolvane::shell {
namespace {

constexpr std::uint32_t kTextOk = 13702;
constexpr std::uint32_t kTextCancel = 13703;
// The digits of the largest unsigned 32-bit value.
constexpr int kMostDigits = 10;
// A field is wide enough for seven digits (a longer number scrolls in it),
// so that two columns of them fit a 240-pixel screen.
constexpr int kShownDigits = 7;
constexpr int kFieldPadding = 12;
constexpr int kFieldsInOneColumn = 4;

QLineEdit* MakeField(const std::string& value, QWidget* parent) {
    auto* field = new QLineEdit(QString::fromStdString(value), parent);
    field->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), field));
    field->setMaxLength(kMostDigits);
    field->setInputMethodHints(Qt::ImhDigitsOnly);
    field->setMaximumWidth(field->fontMetrics().horizontalAdvance(QString(kShownDigits, '0')) +
                           kFieldPadding);
    return field;
}

}  // namespace

NumberFieldsDialog::NumberFieldsDialog(const QString& title, const QString& note,
                                       const std::vector<std::string>& values, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(title);
    auto* page = new QWidget;
    auto* grid = new QGridLayout(page);
    const int rows = values.size() > kFieldsInOneColumn ? (static_cast<int>(values.size()) + 1) / 2
                                                        : static_cast<int>(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        const int row = static_cast<int>(i) % rows;
        const int column = 2 * (static_cast<int>(i) / rows);
        grid->addWidget(new QLabel(QString::number(i + 1) + '.', page), row, column);
        fields_.push_back(MakeField(values[i], page));
        grid->addWidget(fields_.back(), row, column + 1);
    }
    grid->addWidget(new QLabel(note, page), rows, 0, 1, grid->columnCount());
    auto* scroll = new QScrollArea;
    scroll->setWidget(page);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    // The fields take the keys, not the area around them.
    scroll->setFocusPolicy(Qt::NoFocus);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setText(Text(kTextOk));
    buttons->button(QDialogButtonBox::Cancel)->setText(Text(kTextCancel));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(scroll);
    layout->addWidget(buttons);
    // The first value is selected, so that typing replaces it.
    if (!fields_.empty()) {
        fields_.front()->setFocus();
        fields_.front()->selectAll();
    }
}

std::vector<std::string> NumberFieldsDialog::Values() const {
    std::vector<std::string> values;
    for (const QLineEdit* field : fields_) values.push_back(field->text().toStdString());
    return values;
}

}  // namespace tolvane::shell
