#pragma once

#include <QApplication>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <functional>

namespace tolvane::shell {

using DialogKind = std::function<bool(QWidget&)>;
using DialogAct = std::function<void(QWidget&)>;

// The object name of the timers that wait for dialogs.
inline constexpr char kDialogPollName[] = "dialogPoll";

// Runs act on the next modal dialog of the kind that opens over the one
// open now, once it is shown. Each call polls on a timer of its own, so a
// dialog that opens inside another's act is answered too.
inline void WhenOpens(DialogKind kind, DialogAct act) {
    const QPointer<QWidget> under = QApplication::activeModalWidget();
    auto* poll = new QTimer(qApp);
    poll->setObjectName(kDialogPollName);
    poll->setInterval(20);
    QObject::connect(poll, &QTimer::timeout, [poll, under, kind, act] {
        QWidget* dialog = QApplication::activeModalWidget();
        if (dialog == nullptr || dialog == under || !dialog->isVisible() || !kind(*dialog)) return;
        poll->stop();
        poll->deleteLater();
        act(*dialog);
    });
    poll->start();
}

// Stops every wait for a dialog: a case that failed may have left one
// unanswered, which must not answer the next case's dialogs.
inline void ForgetDialogWaits() {
    qDeleteAll(qApp->findChildren<QTimer*>(kDialogPollName, Qt::FindDirectChildrenOnly));
}

}  // namespace tolvane::shell
