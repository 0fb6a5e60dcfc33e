#include "shell/qt_host.h"

#include <QDesktopServices>
#include <QMessageBox>
#include <QMetaObject>
#include <QUrl>

#include "core/app/program.h"
#include "shell/dialogs/destination_list_dialog.h"
#include "shell/dialogs/dialog_parts.h"

namespace tolvane::shell {
namespace {

constexpr std::uint32_t kTextVersion = 10001;

QMessageBox::Icon ToQtIcon(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::kStop:
            return QMessageBox::Critical;
        case MessageIcon::kInformation:
            return QMessageBox::Information;
        case MessageIcon::kQuestion:
            return QMessageBox::Question;
    }
    return QMessageBox::NoIcon;
}

}  // namespace

QtHost::QtHost(QObject* parent)
    : QObject(parent), Host({clock_, timers_, sound_, processes_, speech_}) {}

QtHost::~QtHost() = default;

void QtHost::ShowMessage(const std::string& text, const std::string& caption, MessageIcon icon) {
    QMessageBox box(ToQtIcon(icon), QString::fromStdString(caption), QString::fromStdString(text),
                    QMessageBox::Ok, Parent());
    box.exec();
}

void QtHost::ShowNotice(const std::string& text) {
    // Shown without waiting: the window goes on while the note is read.
    auto* box = new QMessageBox(QMessageBox::Information, QString::fromStdString(ProductTitle()),
                                QString::fromStdString(text), QMessageBox::Ok, Parent());
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::NonModal);
    box->show();
}

bool QtHost::AskYesNo(const std::string& text, const std::string& caption) {
    QMessageBox box(QMessageBox::Question, QString::fromStdString(caption),
                    QString::fromStdString(text), QMessageBox::Yes | QMessageBox::No, Parent());
    return box.exec() == QMessageBox::Yes;
}

SaveAnswer QtHost::AskSaveDiscardCancel(const std::string& text, const std::string& caption) {
    QMessageBox box(QMessageBox::Question, QString::fromStdString(caption),
                    QString::fromStdString(text),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, Parent());
    box.setDefaultButton(QMessageBox::Save);
    switch (box.exec()) {
        case QMessageBox::Save:
            return SaveAnswer::kSave;
        case QMessageBox::Discard:
            return SaveAnswer::kDiscard;
        default:
            return SaveAnswer::kCancel;
    }
}

std::string QtHost::ChooseDestinationFile(const std::string& suggestion) {
    return AskDestinationFile(Parent(), suggestion).toStdString();
}

QWidget* QtHost::Parent() const {
    return window_ != nullptr ? window_->Widget() : nullptr;
}

void QtHost::Repaint() {
    if (window_ != nullptr) window_->RepaintNow();
}

void QtHost::Relabel() {
    if (window_ != nullptr) window_->Relabel();
}

void QtHost::NotifyRmcParsed() {
    // Runs on the port reader's thread. The once-a-second timer already
    // reads every parsed fix, so the notice only wakes the user-interface
    // thread's loop, queued, never painting from the reader.
    QMetaObject::invokeMethod(
        this, [] {}, Qt::QueuedConnection);
}

bool QtHost::OpenDocument(const std::string& path) {
    return QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(path)));
}

void QtHost::ShowAbout(const AboutInfo& about) {
    const QString name = QString::fromStdString(about.name);
    const QString text =
        QStringLiteral("%1\n%2\n\n%3\n\n%4")
            .arg(name, Text(kTextVersion, about.version), QString::fromStdString(about.licence),
                 QString::fromStdString(about.credits));
    QMessageBox box(QMessageBox::Information, name, text, QMessageBox::Ok, Parent());
    box.exec();
}

void QtHost::CloseWindow() {
    if (window_ != nullptr) window_->CloseForGood();
}

}  // namespace tolvane::shell
