#pragma once

#include <QIcon>
#include <QPushButton>
#include <QString>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>

#include "core/data/point_import.h"

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

// How a dialog sits on a screen with room to spare. On a handheld's screen
// (one that cannot hold GPS Setup's comfortable size, or a phone's held
// upright, narrower than 480 pixels) every dialog covers
// the window it belongs to instead; on any screen it is no larger than the
// screen and has every edge on it, so that it fits a 240 x 320 screen.
enum class DialogFit {
    // As large as the window, over it: Options and the import choosers.
    kCoverWindow,
    // The window's height and at most a comfortable width, over it: the
    // point dialogs and their choosers, whose contents scroll.
    kWindowHeight,
    // A comfortable size in the middle of the screen: GPS Setup.
    kComfortable,
    // The size the dialog gives itself; for a file chooser, the desktop's
    // own chooser where there is one: Load Map.
    kOwnSize,
};
void FitDialog(QDialog& dialog, QWidget* parent, DialogFit fit);

// What a file chooser asks for.
enum class FileChoice { kOpen, kSave, kSaveOrPick, kFolder };

// A file or folder the user chooses, starting at suggestion; empty when the
// user cancels. The chooser is Qt's own, fitted to the screen as fit says
// and without its side bar where the parent is narrower than 480 pixels,
// except that kOwnSize takes the desktop's chooser on a screen with room.
// kSaveOrPick takes an existing file without asking to overwrite it (a
// file the program goes on using).
QString ChooseFile(QWidget* parent, FileChoice choice, const QString& title,
                   const std::string& suggestion, const QString& filter,
                   DialogFit fit = DialogFit::kWindowHeight);

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

// Reads a point or track file on a thread of its own behind a progress
// dialog with Cancel, so that the window keeps painting while a large file
// is read; Cancel makes the read end as cancelled.
ImportRead ReadWithProgress(QWidget* parent, const QString& title,
                            const std::function<ImportRead(const ImportProgress&)>& read);

// Whether the parent is as narrow as a phone held upright.
bool IsNarrow(const QWidget* parent);

}  // namespace tolvane::shell
