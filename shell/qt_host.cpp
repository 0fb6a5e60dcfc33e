#include "shell/qt_host.h"

#include <QMessageBox>
#include <QMetaObject>
#include <QTimer>
#include <QWidget>

namespace tolvane::shell {
namespace {

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

QtHost::QtHost(QObject* parent) : QObject(parent) {}

QtHost::~QtHost() = default;

int QtHost::StartTimer(int intervalMilliseconds, std::function<void()> callback) {
    auto timer = std::make_unique<QTimer>();
    timer->setInterval(intervalMilliseconds);
    QObject::connect(timer.get(), &QTimer::timeout, this, std::move(callback));
    timer->start();
    const int id = nextTimerId_++;
    timers_[id] = std::move(timer);
    return id;
}

void QtHost::KillTimer(int timerId) {
    timers_.erase(timerId);
}

bool QtHost::PlaySoundFile(const std::string& path, SoundMode mode) {
    return sound_.Play(QString::fromStdString(path), mode == SoundMode::kLoop);
}

bool QtHost::StopSound() {
    sound_.Stop();
    return true;
}

bool QtHost::PlayLimitBeep() {
    sound_.PlayLimitBeep();
    return true;
}

void QtHost::ShowMessage(const std::string& text, const std::string& caption, MessageIcon icon) {
    QMessageBox box(ToQtIcon(icon), QString::fromStdString(caption), QString::fromStdString(text),
                    QMessageBox::Ok, window_);
    box.exec();
}

bool QtHost::AskYesNo(const std::string& text, const std::string& caption) {
    QMessageBox box(QMessageBox::Question, QString::fromStdString(caption),
                    QString::fromStdString(text), QMessageBox::Yes | QMessageBox::No, window_);
    return box.exec() == QMessageBox::Yes;
}

void QtHost::Repaint() {
    if (window_ != nullptr) window_->repaint();
}

void QtHost::NotifyRmcParsed() {
    // Runs on the port reader's thread: the handler runs later, on the
    // thread of this object's event loop.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (rmcHandler_) rmcHandler_();
        },
        Qt::QueuedConnection);
}

}  // namespace tolvane::shell
