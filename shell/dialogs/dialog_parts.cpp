#include "shell/dialogs/dialog_parts.h"

#include <QDialog>
#include <QFileDialog>
#include <QGridLayout>
#include <QMessageBox>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>

#include "core/app/program.h"
#include "core/base/string_manager.h"
#include "core/data/point_collection.h"

namespace tolvane::shell {
namespace {

constexpr int kMarkSize = 12;
// Wider than this the dialog stops growing with its parent window.
constexpr int kMaxDialogWidth = 520;
constexpr int kNarrowWidth = 360;
constexpr int kButtonColumns = 3;
constexpr int kNarrowButtonColumns = 2;

// Qt's own file chooser is wider than a phone held upright; without its
// side bar and its history and view buttons it fits. The parts are found by
// the names Qt gives them; a part not found stays.
void HideChooserExtras(QFileDialog& chooser) {
    for (const char* name : {"sidebar", "backButton", "forwardButton", "listModeButton",
                             "fileTypeCombo", "fileTypeLabel", "lookInLabel", "detailModeButton"}) {
        if (auto* part = chooser.findChild<QWidget*>(QString::fromLatin1(name))) part->hide();
    }
}

}  // namespace

QString Text(std::uint32_t id) {
    return QString::fromStdString(LanguageText(id));
}

QString Text(std::uint32_t id, const std::string& argument) {
    return Text(id).replace(QStringLiteral("%s"), QString::fromStdString(argument));
}

void ShowWarning(QWidget* parent, Program& program, const QString& text) {
    QMessageBox::warning(parent, QString::fromStdString(program.title), text);
}

bool AskYesNo(QWidget* parent, Program& program, const QString& text) {
    return QMessageBox::question(parent, QString::fromStdString(program.title), text) ==
           QMessageBox::Yes;
}

QIcon CategoryMark(const std::string& category) {
    QPixmap mark(kMarkSize, kMarkSize);
    mark.fill(Qt::transparent);
    QPainter painter(&mark);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::black);
    painter.setBrush(QColor::fromRgb(CategoryMarkColour(category)));
    painter.drawEllipse(1, 1, kMarkSize - 2, kMarkSize - 2);
    return QIcon(mark);
}

void SizeToParent(QDialog& dialog, QWidget* parent) {
    if (parent == nullptr) return;
    const QSize room = parent->size();
    dialog.resize(std::min(room.width(), kMaxDialogWidth), room.height());
}

QString ChooseFile(QWidget* parent, FileChoice choice, const QString& title,
                   const std::string& suggestion, const QString& filter) {
    QFileDialog chooser(parent, title, QString::fromStdString(suggestion), filter);
    chooser.setOption(QFileDialog::DontUseNativeDialog);
    if (choice == FileChoice::kFolder) {
        chooser.setFileMode(QFileDialog::Directory);
        chooser.setOption(QFileDialog::ShowDirsOnly);
    } else if (choice != FileChoice::kOpen) {
        chooser.setAcceptMode(QFileDialog::AcceptSave);
        chooser.setOption(QFileDialog::DontConfirmOverwrite, choice == FileChoice::kSaveOrPick);
    } else {
        chooser.setFileMode(QFileDialog::ExistingFile);
    }
    if (IsNarrow(parent)) HideChooserExtras(chooser);
    SizeToParent(chooser, parent);
    if (chooser.exec() != QDialog::Accepted || chooser.selectedFiles().isEmpty()) return {};
    return chooser.selectedFiles().constFirst();
}

bool IsNarrow(const QWidget* parent) {
    return parent != nullptr && parent->width() < kNarrowWidth;
}

QGridLayout* ButtonGrid(std::initializer_list<QPushButton*> buttons, const QWidget* parent) {
    const int columns = IsNarrow(parent) ? kNarrowButtonColumns : kButtonColumns;
    auto* grid = new QGridLayout;
    int index = 0;
    for (QPushButton* button : buttons) {
        button->setAutoDefault(false);
        grid->addWidget(button, index / columns, index % columns);
        ++index;
    }
    return grid;
}

}  // namespace tolvane::shell
