// The Options dialog in the running window on Qt's offscreen platform,
// filled with keys as a user fills it and closed with Enter or Escape;
// what it left is read back from Options.dat.
#include "shell/dialogs/options_dialog.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>

#include "core/app/commands.h"
#include "core/data/options.h"
#include "shell/program_window.h"
#include "tests/shell/program_home.h"

namespace tolvane::shell {
namespace {

// Runs fill on the Options dialog once it is shown modally.
void WhenTheDialogOpens(std::function<void(OptionsDialog&)> fill) {
    auto* poll = new QTimer;
    poll->setInterval(20);
    QObject::connect(poll, &QTimer::timeout, [poll, fill] {
        auto* dialog = qobject_cast<OptionsDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr) return;
        poll->stop();
        poll->deleteLater();
        fill(*dialog);
    });
    poll->start();
}

template <typename Control>
Control& Find(QWidget& dialog, const char* name) {
    auto* control = dialog.findChild<Control*>(QLatin1String(name));
    if (control == nullptr) qFatal("no control %s", name);
    return *control;
}

void Retype(QWidget& dialog, const char* name, const QString& text) {
    auto& edit = Find<QLineEdit>(dialog, name);
    edit.selectAll();
    QTest::keyClick(&edit, Qt::Key_Backspace);
    QTest::keyClicks(&edit, text);
}

}  // namespace

class OptionsDialogTest : public QObject {
    Q_OBJECT

  private slots:
    void init();
    void cleanup();
    void EnterStoresWhatWasTypedAndEscapeNothing();
    void EveryControlFitsASmallScreen();

  private:
    QString OptionsPath() const { return home_->filePath(QStringLiteral("Options.dat")); }

    std::unique_ptr<QTemporaryDir> home_;
    std::unique_ptr<ProgramWindow> program_;
};

void OptionsDialogTest::init() {
    home_ = NewProgramHome();
    program_ = std::make_unique<ProgramWindow>(CommandLine{});
    if (!program_->Start({96, 96, 240, 320})) qFatal("the program did not start");
}

void OptionsDialogTest::cleanup() {
    program_.reset();
    home_.reset();
}

void OptionsDialogTest::EnterStoresWhatWasTypedAndEscapeNothing() {
    WhenTheDialogOpens([](OptionsDialog& dialog) {
        Find<QCheckBox>(dialog, "startGpsAtStartup").setChecked(true);
        Find<QComboBox>(dialog, "unitSystem").setCurrentIndex(1);
        QCOMPARE(Find<QLabel>(dialog, "minimumSpeedUnit").text(), QStringLiteral("MPH"));
        QCOMPARE(Find<QLabel>(dialog, "proximityRangeUnit").text(), QStringLiteral("ft"));
        Retype(dialog, "proximityRange", QStringLiteral("x35-0"));  // the edit takes the digits
        // The sentence box takes at most 100 characters.
        Retype(dialog, "testSentence", QString(150, QLatin1Char('a')));
        QCOMPARE(Find<QLineEdit>(dialog, "testSentence").text(), QString(100, QLatin1Char('a')));
        Retype(dialog, "testSentence", QString());
        QVERIFY(!Find<QPushButton>(dialog, "test").isEnabled());
        Retype(dialog, "minimumSpeed", QStringLiteral("-5"));
        QTest::keyClick(&Find<QLineEdit>(dialog, "minimumSpeed"), Qt::Key_Return);
    });
    program_->RunCommand(kCommandOptions);
    Options saved{};
    QVERIFY(LoadOptions(OptionsPath().toStdString(), saved, 1));
    QCOMPARE(saved.startGpsAtStartup, 1);
    QCOMPARE(saved.unitSystem, 1);
    QCOMPARE(saved.defaultProximityRange, 350);
    QCOMPARE(saved.minimumSpeed, 0.0);

    WhenTheDialogOpens([](OptionsDialog& dialog) {
        QCOMPARE(Find<QLineEdit>(dialog, "proximityRange").text(), QStringLiteral("350"));
        Find<QCheckBox>(dialog, "logNmea").setChecked(true);
        Find<QComboBox>(dialog, "trackLogFormat").setCurrentIndex(2);
        Retype(dialog, "minimumSpeed", QStringLiteral("12.5"));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    program_->RunCommand(kCommandOptions);
    Options afterCancel{};
    QVERIFY(LoadOptions(OptionsPath().toStdString(), afterCancel, 1));
    QCOMPARE(QByteArray(reinterpret_cast<const char*>(&afterCancel), sizeof afterCancel),
             QByteArray(reinterpret_cast<const char*>(&saved), sizeof saved));
    QCOMPARE(program_->Core().app.options.logNmea, 0);
    QCOMPARE(program_->Core().app.options.minimumSpeed, 0.0);
}

void OptionsDialogTest::EveryControlFitsASmallScreen() {
    WhenTheDialogOpens([](OptionsDialog& dialog) {
        const QSize hint = dialog.minimumSizeHint();
        QVERIFY2(hint.width() <= 240 && hint.height() <= 320,
                 qPrintable(QStringLiteral("%1 x %2").arg(hint.width()).arg(hint.height())));
        dialog.resize(240, 320);
        // No page is wider than its view: nothing needs a sideways scroll.
        for (QWidget* control : dialog.findChildren<QWidget*>()) {
            if (!control->isVisibleTo(&dialog) || control->objectName().isEmpty()) continue;
            const QRect onDialog(control->mapTo(&dialog, QPoint()), control->size());
            QVERIFY2(onDialog.right() < 240, qPrintable(control->objectName()));
        }
        dialog.reject();
    });
    program_->RunCommand(kCommandOptions);
}

}  // namespace tolvane::shell

int main(int argc, char** argv) {
    return tolvane::shell::RunOffscreenTests<tolvane::shell::OptionsDialogTest>(argc, argv);
}

#include "options_dialog_test.moc"
