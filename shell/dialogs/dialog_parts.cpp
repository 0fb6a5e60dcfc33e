#include "shell/dialogs/dialog_parts.h"

#include <QDialog>
#include <QEventLoop>
#include <QFileDialog>
#include <QGridLayout>
#include <QMessageBox>
#include <QPainter>
#include <QPixmap>
#include <QProgressDialog>
#include <QPushButton>
#include <QScreen>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <atomic>

#include "core/app/program.h"
#include "core/base/string_manager.h"
#include "core/data/point_collection.h"

namespace tolvane::shell {
namespace {

constexpr int kMarkSize = 12;
// Wider than this a kWindowHeight dialog stops growing with its window.
constexpr int kMaxDialogWidth = 520;
// GPS Setup's size where there is room; a screen that cannot hold it is a
// handheld's.
constexpr QSize kComfortableSize{360, 440};
// A screen narrower than this is a phone's held upright, even where it is
// tall enough for GPS Setup.
constexpr int kPhoneWidth = 480;
constexpr int kNarrowWidth = 360;
// Qt's own file chooser needs about this width for its side bar, its
// history buttons and a readable folder box.
constexpr int kChooserExtrasWidth = 480;
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

int ClampStart(int start, int length, int areaStart, int areaLength) {
    return std::clamp(start, areaStart, std::max(areaStart, areaStart + areaLength - length));
}

bool Fits(const QSize& wanted, const QSize& room) {
    return wanted.width() <= room.width() && wanted.height() <= room.height();
}

// The part of the screen of the parent's window that dialogs may take.
QRect ScreenArea(const QWidget* parent, const QWidget& dialog) {
    const QWidget* window = parent != nullptr ? parent->window() : nullptr;
    return (window != nullptr ? window->screen() : dialog.screen())->availableGeometry();
}

bool IsHandheldScreen(const QRect& area) {
    return !Fits(kComfortableSize, area.size()) || area.width() < kPhoneWidth;
}

// The size a fit asks for on a screen with room; over is the window's frame.
QSize WantedSize(DialogFit fit, const QDialog& dialog, const QWidget* window, const QRect& over) {
    switch (fit) {
        case DialogFit::kWindowHeight:
            if (window == nullptr) return dialog.size();
            return {std::min(window->width(), kMaxDialogWidth), window->height()};
        case DialogFit::kComfortable:
            return kComfortableSize;
        case DialogFit::kOwnSize:
            return dialog.sizeHint();
        case DialogFit::kCoverWindow:
            break;
    }
    return window != nullptr ? window->size() : over.size();
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

void FitDialog(QDialog& dialog, QWidget* parent, DialogFit fit) {
    const QWidget* window = parent != nullptr ? parent->window() : nullptr;
    const QRect area = ScreenArea(parent, dialog);
    const QRect over = window != nullptr ? window->frameGeometry() : area;
    // The desktop frames the dialog as it frames the window: the sizes are
    // the dialog's inside, and the frame around it must fit on the screen
    // too, or the buttons at its foot would fall off it.
    const QSize frame = window != nullptr ? over.size() - window->size() : QSize(0, 0);
    const DialogFit used = IsHandheldScreen(area) ? DialogFit::kCoverWindow : fit;
    const QSize wanted = WantedSize(used, dialog, window, over);
    // A dialog of its own size that fits is left where Qt puts it.
    if (used == DialogFit::kOwnSize && Fits(wanted + frame, area.size())) return;
    const QSize size = wanted.boundedTo(area.size() - frame);
    dialog.resize(size);
    QRect placed(QPoint(), size + frame);
    placed.moveCenter(used == DialogFit::kComfortable ? area.center() : over.center());
    dialog.move(ClampStart(placed.left(), placed.width(), area.left(), area.width()),
                ClampStart(placed.top(), placed.height(), area.top(), area.height()));
}

ImportRead ReadWithProgress(QWidget* parent, const QString& title,
                            const std::function<ImportRead(const ImportProgress&)>& read) {
    constexpr int kSteps = 1000;
    std::atomic<int> done{0};
    std::atomic<bool> cancelled{false};
    ImportRead result;
    QThread* worker = QThread::create([&] {
        result = read([&](double share) {
            done = static_cast<int>(share * kSteps);
            return !cancelled;
        });
    });
    // The dialog shows itself only when the read takes longer than a moment.
    QProgressDialog progress(parent);
    progress.setWindowTitle(title);
    progress.setLabelText(title);
    progress.setWindowModality(Qt::WindowModal);
    progress.setRange(0, kSteps);
    progress.setMinimumDuration(300);
    QObject::connect(&progress, &QProgressDialog::canceled, [&cancelled] { cancelled = true; });
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, [&] { progress.setValue(done); });
    QEventLoop loop;
    QObject::connect(worker, &QThread::finished, &loop, &QEventLoop::quit);
    tick.start(100);
    worker->start();
    loop.exec();
    worker->wait();
    delete worker;
    return result;
}

QString ChooseFile(QWidget* parent, FileChoice choice, const QString& title,
                   const std::string& suggestion, const QString& filter, DialogFit fit) {
    QFileDialog chooser(parent, title, QString::fromStdString(suggestion), filter);
    // Qt's own chooser can be fitted to a small screen; a desktop's cannot.
    const bool desktopChooser =
        fit == DialogFit::kOwnSize && !IsHandheldScreen(ScreenArea(parent, chooser));
    chooser.setOption(QFileDialog::DontUseNativeDialog, !desktopChooser);
    if (choice == FileChoice::kFolder) {
        chooser.setFileMode(QFileDialog::Directory);
        chooser.setOption(QFileDialog::ShowDirsOnly);
    } else if (choice != FileChoice::kOpen) {
        chooser.setAcceptMode(QFileDialog::AcceptSave);
        chooser.setOption(QFileDialog::DontConfirmOverwrite, choice == FileChoice::kSaveOrPick);
    } else {
        chooser.setFileMode(QFileDialog::ExistingFile);
    }
    if (parent != nullptr && parent->width() < kChooserExtrasWidth) HideChooserExtras(chooser);
    FitDialog(chooser, parent, fit);
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
