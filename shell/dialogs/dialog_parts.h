#pragma once

#include <QIcon>
#include <QPushButton>
#include <QString>
#include <cstdint>
#include <initializer_list>
#include <string>

class QDialog;
class QGridLayout;
class QWidget;

namespace tolvane {
struct Program;
}

namespace tolvane::shell {

// A text of the language file.
QString Text(std::uint32_t id);
// A text of the language file with its %s filled in.
QString Text(std::uint32_t id, const std::string& argument);

// A message box over the dialog with the program's caption.
void ShowWarning(QWidget* parent, Program& program, const QString& text);
bool AskYesNo(QWidget* parent, Program& program, const QString& text);

// The small square of a category's colour that marks a point.
QIcon CategoryMark(const std::string& category);

// The point dialogs fill a phone's screen and take a comfortable part of a
// desktop's; their contents scroll where the screen is too small.
void SizeToParent(QDialog& dialog, QWidget* parent);

// What a file chooser asks for.
enum class FileChoice { kOpen, kSave, kSaveOrPick, kFolder };

// A file or folder the user chooses, starting at suggestion; empty when the
// user cancels. The chooser is sized like the point dialogs, so that it fits
// a phone's screen. kSaveOrPick takes an existing file without asking to
// overwrite it (a file the program goes on using).
QString ChooseFile(QWidget* parent, FileChoice choice, const QString& title,
                   const std::string& suggestion, const QString& filter);

// Buttons in rows, three to a row or two where the parent is narrow, so
// that a phone's screen still shows them all.
QGridLayout* ButtonGrid(std::initializer_list<QPushButton*> buttons, const QWidget* parent);

// A button with a text of the language file that runs a member of dialog.
template <typename Dialog>
QPushButton* CommandButton(Dialog* dialog, std::uint32_t text, void (Dialog::*run)()) {
    auto* button = new QPushButton(Text(text));
    QObject::connect(button, &QPushButton::clicked, dialog, run);
    return button;
}

// Whether the parent is as narrow as a phone held upright.
bool IsNarrow(const QWidget* parent);

}  // namespace tolvane::shell
