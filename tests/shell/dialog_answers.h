#pragma once

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
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

template <typename Widget>
bool Is(QWidget& widget) {
    return qobject_cast<Widget*>(&widget) != nullptr;
}

// Answers the next message box with button, once look has seen it.
inline void AnswerNextBox(QMessageBox::StandardButton button,
                          std::function<void(QMessageBox&)> look = nullptr) {
    WhenOpens(Is<QMessageBox>, [button, look](QWidget& widget) {
        auto& box = static_cast<QMessageBox&>(widget);
        if (look) look(box);
        QVERIFY(box.button(button) != nullptr);
        box.button(button)->click();
    });
}

template <typename Control>
Control& Find(QWidget& dialog, const char* name) {
    auto* control = dialog.findChild<Control*>(QLatin1String(name));
    if (control == nullptr) qFatal("no control %s", name);
    return *control;
}

inline QPushButton& Button(QWidget& dialog, const QString& text) {
    for (QPushButton* button : dialog.findChildren<QPushButton*>()) {
        if (button->text() == text) return *button;
    }
    qFatal("no button %s", qPrintable(text));
}

// Replaces the text of a line edit by typing, as a user does.
inline void Retype(QWidget& dialog, const char* name, const QString& text) {
    auto& edit = Find<QLineEdit>(dialog, name);
    edit.selectAll();
    QTest::keyClick(&edit, Qt::Key_Backspace);
    QTest::keyClicks(&edit, text);
}

// Chooses path in the file chooser, as typing it and pressing its button
// do (selectFile leaves alone the name field that has the focus).
inline DialogAct ChooseFileAct(const QString& path) {
    return [path](QWidget& chooser) {
        Find<QLineEdit>(chooser, "fileNameEdit").setText(path);
        QMetaObject::invokeMethod(&chooser, "accept");
    };
}

}  // namespace tolvane::shell
