// The window on Qt's offscreen platform, driven as a user drives it: keys,
// soft-key menus, closing, a second start and the screen rules. Message
// boxes are real and are answered by a timer, as a user would.
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QToolTip>
#include <algorithm>
#include <cstdlib>
#include <functional>
#include <memory>

#include "core/app/commands.h"
#include "core/app/map_commands.h"
#include "core/app/options_form.h"
#include "core/base/string_manager.h"
#include "core/data/options.h"
#include "platform/program_location.h"
#include "shell/dialogs/map_loader.h"
#include "shell/dialogs/touch.h"
#include "shell/program_window.h"
#include "shell/soft_key_bar.h"
#include "tests/core/nmea_sentence.h"
#include "tests/platform/pseudo_terminal.h"
#include "tests/shell/dialog_answers.h"
#include "tests/shell/program_home.h"

namespace tolvane::shell {
namespace {

QAction* FindAction(QMenu& menu, int id) {
    for (QAction* action : menu.actions()) {
        if (action->menu() != nullptr) {
            if (QAction* found = FindAction(*action->menu(), id)) return found;
        } else if (action->data().toInt() == id) {
            return action;
        }
    }
    return nullptr;
}

// Accepts the dialog that the command opens, as OK does.
void AcceptTheDialogOf(ProgramWindow& program, int command) {
    QTimer::singleShot(0, [] {
        QWidget* dialog = QApplication::activeModalWidget();
        QVERIFY(dialog != nullptr);
        QMetaObject::invokeMethod(dialog, "accept");
    });
    program.RunCommand(command);
}

}  // namespace

class WindowTest : public QObject {
    Q_OBJECT

  private slots:
    void init();
    void cleanup();
    void MenusShowTheStateAndKeysAndSoftKeysSwitchViews();
    void GpsSetupFindsAReceiverThatZeroThenStartsAndStops();
    void ExitAndClosingAskAfterSavingTheSettings();
    void TheDemoReceiverRunsWithoutReachingTheSettings();
    void ASettingsFileThatDidNotLoadIsKeptAtTheFirstSave();
    void ASecondStartBringsTheFirstForwardAndEnds();
    void AStartWithoutTheLanguageFileShowsNoEmptyText();
    void AGermanLocaleSpeaksGermanAndEveryLanguagesMenusFitAHandheld();
    void ASquareScreenUses110DpiAndTheSmallLayout();
    void ScreenshotsPaintEveryViewOfARecordingDayAndNight();
    void TheAlarmLoopsWithoutAJump();
    void TheValueDialogsFitTakeDigitsAndAnswerEnterAndEscape();
    void FingersPinchAndPanBothMapsAndAHeldFingerOpensTheMenu();

  private:
    // Starts the program on a screen of the given metrics.
    ProgramWindow& Start(ScreenMetrics screen = {96, 96, 1280, 800}, CommandLine line = {});
    void WriteOptions(const std::function<void(Options&)>& change);
    QString OptionsPath() const { return home_->filePath(QStringLiteral("Options.dat")); }

    std::unique_ptr<QTemporaryDir> home_;
    std::unique_ptr<ProgramWindow> program_;
};

void WindowTest::init() {
    home_ = NewProgramHome();
}

void WindowTest::cleanup() {
    ForgetDialogWaits();
    program_.reset();
    home_.reset();
}

ProgramWindow& WindowTest::Start(ScreenMetrics screen, CommandLine line) {
    program_ = std::make_unique<ProgramWindow>(line);
    if (!program_->Start(screen)) qFatal("the program did not start");
    return *program_;
}

void WindowTest::WriteOptions(const std::function<void(Options&)>& change) {
    Options options;
    ResetOptions(options);
    change(options);
    QVERIFY(SaveOptions(OptionsPath().toStdString(), options, 1));
}

// The menus grey and check their entries as the state says; the number
// keys and the left soft key's menu switch the views.
void WindowTest::MenusShowTheStateAndKeysAndSoftKeysSwitchViews() {
    ProgramWindow& program = Start();
    Program& core = program.Core();
    for (const int night : {1, 0}) {
        core.app.options.nightView = night;
        core.app.options.speedAlarmIndex = night ? 2 : -1;
        QMenu views;
        FillMenu(views, BuildViewsMenu(core));
        QCOMPARE(FindAction(views, kCommandNightView)->isChecked(), night == 1);
        QVERIFY(FindAction(views, kCommandGpsInfo)->isChecked());
        QVERIFY(!FindAction(views, kCommandSpeed)->isChecked());

        QMenu commands;
        FillMenu(commands, BuildCommandMenu(core));
        QVERIFY(FindAction(commands, kCommandGpsSetup)->isEnabled());
        QVERIFY(FindAction(commands, kCommandExit)->isEnabled());
        QAction* alarm80 = FindAction(commands, kCommandFirstSpeedAlarm + 2);
        QAction* alarmOff = FindAction(commands, kCommandSpeedAlarmOff);
        QCOMPARE(alarm80->isChecked(), night == 1);
        QCOMPARE(alarmOff->isChecked(), night == 0);
        // The alarm entries are one radio group: one checked at a time.
        QVERIFY(alarm80->actionGroup() != nullptr);
        QCOMPARE(alarm80->actionGroup(), alarmOff->actionGroup());
        // "Off", a separator, then the limits at positions 2 to 9.
        const QList<QAction*> alarms = qobject_cast<QMenu*>(alarmOff->parent())->actions();
        QCOMPARE(alarms.indexOf(alarmOff), 0);
        QVERIFY(alarms[1]->isSeparator());
        QCOMPARE(alarms.indexOf(alarm80), 4);
        // Navigation is off: the round's items are grey; the start set the
        // waypoint file, so the manager runs.
        QVERIFY(!FindAction(commands, kCommandGoToDestination)->isEnabled());
        QVERIFY(FindAction(commands, kCommandPointManager)->isEnabled());
    }

    const std::pair<int, int> keys[] = {{Qt::Key_5, kViewSpeed},
                                        {Qt::Key_4, kViewCompass},
                                        {Qt::Key_6, kViewTripStat},
                                        {Qt::Key_7, kViewSatellites},
                                        {Qt::Key_1, kViewGpsInfo}};
    for (const auto& [key, view] : keys) {
        QTest::keyClick(&program.Window(), static_cast<Qt::Key>(key));
        QCOMPARE(program.Core().app.currentView, view);
    }
    // The left soft key's menu, chosen with the mouse as a user would.
    SoftKeyBar& softKeys = program.Window().SoftKeys();
    QTimer::singleShot(100, [&softKeys] {
        QMenu* menu = softKeys.OpenMenu();
        QVERIFY(menu != nullptr);
        QAction* compass = FindAction(*menu, kCommandCompass);
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(compass).center());
    });
    softKeys.OpenLeft();
    QCOMPARE(program.Core().app.currentView, kViewCompass);
}

// From a fresh start: GPS Setup is given a receiver's device, its live line
// shows the sentences that "Auto" finds at 4800 baud, and OK writes the
// port's link and the choice, so that 0 starts the GPS, which reaches a fix,
// and 0 again stops it.
void WindowTest::GpsSetupFindsAReceiverThatZeroThenStartsAndStops() {
    testing::PseudoTerminal receiver;
    QVERIFY(receiver.IsOpen());
    ProgramWindow& program = Start();
    const AppState& app = program.Core().app;
    const std::string second =
        testing::NmeaSentence("GPRMC,101500.000,A,5956.000,N,01043.000,E,10.0,90.0,231126,,") +
        testing::NmeaSentence("GPGGA,101500.000,5956.000,N,01043.000,E,1,08,0.9,120.0,M,,,,");
    QString liveLine;
    QTimer::singleShot(0, [&] {
        QWidget* dialog = QApplication::activeModalWidget();
        QVERIFY(dialog != nullptr);
        dialog->findChild<QComboBox*>(QStringLiteral("source"))->setCurrentIndex(1);
        auto* device = dialog->findChild<QComboBox*>(QStringLiteral("device"));
        device->setEditText(QString::fromStdString(receiver.SlaveName()));
        emit device->lineEdit()->editingFinished();
        auto* line = dialog->findChild<QLabel*>(QStringLiteral("liveLine"));
        for (int wait = 0;
             wait < 100 && !line->text().contains(QStringLiteral("4800 baud, last $GP")); ++wait) {
            receiver.Send(second);
            QTest::qWait(100);
        }
        liveLine = line->text();
        QMetaObject::invokeMethod(dialog, "accept");
    });
    program.RunCommand(kCommandGpsSetup);
    QVERIFY2(liveLine.contains(QStringLiteral("4800 baud, last $GP")), qPrintable(liveLine));
    QCOMPARE(QFile::symLinkTarget(home_->filePath(QStringLiteral("ports/COM0"))),
             QString::fromStdString(receiver.SlaveName()));
    Options saved;
    QVERIFY(LoadOptions(OptionsPath().toStdString(), saved, 1));
    QCOMPARE(saved.gpsSource, 1);
    QCOMPARE(saved.baudIndex, 0);

    QTest::keyClick(&program.Window(), Qt::Key_0);
    QVERIFY(app.gpsRunning);
    QTRY_VERIFY_WITH_TIMEOUT((receiver.Send(second), app.gps.connected && app.gps.fixValid), 10000);
    QTest::keyClick(&program.Window(), Qt::Key_0);
    QVERIFY(!app.gpsRunning);
}

void WindowTest::ExitAndClosingAskAfterSavingTheSettings() {
    ProgramWindow& program = Start();
    QFile::remove(OptionsPath());
    QString asked;
    bool savedBeforeTheAnswer = false;
    const auto look = [&](QMessageBox& box) {
        asked = box.text();
        savedBeforeTheAnswer = QFile::exists(OptionsPath());
        QFile::remove(OptionsPath());
    };

    AnswerNextBox(QMessageBox::No, look);
    program.RunCommand(kCommandExit);
    QVERIFY(savedBeforeTheAnswer);
    QVERIFY(!asked.isEmpty());
    QTest::qWait(50);
    QVERIFY(program.Window().isVisible());

    const QString exitQuestion = asked;
    asked.clear();
    savedBeforeTheAnswer = false;
    AnswerNextBox(QMessageBox::No, look);
    program.Window().close();
    QCOMPARE(asked, exitQuestion);
    QVERIFY(savedBeforeTheAnswer);
    QTest::qWait(50);
    QVERIFY(program.Window().isVisible());

    AnswerNextBox(QMessageBox::Yes);
    program.Window().close();
    QTRY_VERIFY(!program.Window().isVisible());
    QVERIFY(!program.Core().app.gpsRunning);
}

void WindowTest::TheDemoReceiverRunsWithoutReachingTheSettings() {
    QFile::copy(QStringLiteral(TOLVANE_PROGRAM_DIR "/demo.nmea"),
                home_->filePath(QStringLiteral("demo.nmea")));
    WriteOptions([](Options& options) {
        options.gpsSource = 0;
        options.portIndex = 3;
        options.baudIndex = 2;
    });
    CommandLine demo;
    demo.demo = true;
    ProgramWindow& program = Start({96, 96, 1280, 800}, demo);
    const AppState& app = program.Core().app;
    QVERIFY(app.gpsRunning);
    // The recording reaches the views through the terminal, at its own pace.
    QTRY_VERIFY_WITH_TIMEOUT(app.gps.connected, 10000);

    // The title bar's GPS mark names the demo as the source in use: as its
    // tooltip, and when it is held down, after it is let go too.
    ViewArea& views = program.Window().Views();
    const Rect mark = views.GpsMarkBox();
    const QPoint onMark((mark.left + mark.right) / 2, (mark.top + mark.bottom) / 2);
    QHelpEvent help(QEvent::ToolTip, onMark, views.mapToGlobal(onMark));
    QApplication::sendEvent(&views, &help);
    QTRY_COMPARE(QToolTip::text(), QStringLiteral("Demo recording"));
    QToolTip::hideText();
    QTRY_VERIFY(QToolTip::text().isEmpty());
    QTest::mousePress(&views, Qt::LeftButton, {}, onMark);
    QTRY_COMPARE(QToolTip::text(), QStringLiteral("Demo recording"));
    QTest::mouseRelease(&views, Qt::LeftButton, {}, onMark);
    QTest::qWait(50);
    QCOMPARE(QToolTip::text(), QStringLiteral("Demo recording"));

    // Every command that saves the settings saves the configured source.
    for (const int command : {kCommandOptions, kCommandGpsSetup}) {
        QFile::remove(OptionsPath());
        AcceptTheDialogOf(program, command);
        Options saved;
        QVERIFY(LoadOptions(OptionsPath().toStdString(), saved, 1));
        QCOMPARE(saved.gpsSource, 0);
        QCOMPARE(saved.portIndex, 3);
        QCOMPARE(saved.baudIndex, 2);
    }
    AnswerNextBox(QMessageBox::No);
    program.RunCommand(kCommandExit);
    Options saved;
    QVERIFY(LoadOptions(OptionsPath().toStdString(), saved, 1));
    QCOMPARE(saved.gpsSource, 0);
    QVERIFY(app.gpsRunning);
    QVERIFY(app.gps.connected);
}

void WindowTest::ASettingsFileThatDidNotLoadIsKeptAtTheFirstSave() {
    Options foreign;
    ResetOptions(foreign);
    foreign.version[9] = '2';  // 2.4.0.3152
    foreign.showMap = 0;
    const QByteArray records[] = {
        QByteArray(reinterpret_cast<const char*>(&foreign), sizeof foreign),
        QByteArray("\x01\x02 not a record")};
    const QString kept = OptionsPath() + QStringLiteral(".bak");
    for (const QByteArray& record : records) {
        QFile::remove(kept);
        QFile file(OptionsPath());
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(record);
        file.close();
        ProgramWindow& program = Start();
        QCOMPARE(program.Core().app.options.showMap, 1);  // the defaults, quietly
        AcceptTheDialogOf(program, kCommandOptions);
        AcceptTheDialogOf(program, kCommandOptions);
        QFile copy(kept);
        QVERIFY(copy.open(QIODevice::ReadOnly));
        QCOMPARE(copy.readAll(), record);
        Options saved;
        QVERIFY(LoadOptions(OptionsPath().toStdString(), saved, 1));
        QCOMPARE(QByteArray(saved.version), QByteArray(kProgramVersion));
        QVERIFY(!QFile::exists(OptionsPath() + QStringLiteral(".new")));
        program_.reset();
    }
}

void WindowTest::ASecondStartBringsTheFirstForwardAndEnds() {
    ProgramWindow& program = Start();
    QSignalSpy broughtForward(&program.Window(), &MainWindow::BroughtForward);
    QProcess second;
    second.start(QStringLiteral(TOLVANE_PROGRAM_DIR "/tolvane"),
                 {QStringLiteral("--home"), home_->path()});
    QTRY_COMPARE_WITH_TIMEOUT(second.state(), QProcess::NotRunning, 15000);
    QCOMPARE(second.exitStatus(), QProcess::NormalExit);
    QCOMPARE(second.exitCode(), 0);
    QCOMPARE(broughtForward.count(), 1);
}

// Without its language file the program says so once and runs on in its
// built-in English: no title, soft key, menu entry or question is empty.
void WindowTest::AStartWithoutTheLanguageFileShowsNoEmptyText() {
    QVERIFY(QFile::remove(home_->filePath(QStringLiteral("tolvane_ENU.dat"))));
    QString failure;
    AnswerNextBox(QMessageBox::Ok, [&](QMessageBox& box) { failure = box.text(); });
    ProgramWindow& program = Start();
    QVERIFY(failure.startsWith(QStringLiteral("Load language file failed!")));
    QCOMPARE(program.Window().windowTitle(), QStringLiteral("Tolvane GPS Utilities"));
    const QList<QToolButton*> keys = program.Window().SoftKeys().findChildren<QToolButton*>();
    QCOMPARE(keys.size(), 2);
    for (QToolButton* key : keys) QVERIFY(!key->text().isEmpty());
    QMenu commands;
    FillMenu(commands, BuildCommandMenu(program.Core()));
    QList<QAction*> actions = commands.actions();
    for (int i = 0; i < actions.size(); ++i) {
        if (actions[i]->menu() != nullptr) actions += actions[i]->menu()->actions();
        QVERIFY(actions[i]->isSeparator() || !actions[i]->text().isEmpty());
    }

    QStringList asked;
    const auto look = [&](QMessageBox& box) { asked << box.windowTitle() << box.text(); };
    QTest::keyClick(&program.Window(), Qt::Key_6);
    AnswerNextBox(QMessageBox::No, look);
    QTest::keyClick(&program.Window(), Qt::Key_Return);
    AnswerNextBox(QMessageBox::No, look);
    program.RunCommand(kCommandExit);
    QCOMPARE(asked, (QStringList{QStringLiteral("Tolvane GPS Utilities"),
                                 QStringLiteral("Clear the trip statistics?"),
                                 QStringLiteral("Tolvane GPS Utilities"),
                                 QStringLiteral("Do you want to exit Tolvane GPS Utilities?")}));
}

// The widest of a menu and its sub-menus, as they open.
int WidestMenu(QMenu& menu) {
    menu.ensurePolished();
    int widest = menu.sizeHint().width();
    for (QAction* action : menu.actions()) {
        if (action->menu() != nullptr) widest = std::max(widest, WidestMenu(*action->menu()));
    }
    return widest;
}

// LANG=de_DE.UTF-8 starts the window in German, Qt's standard buttons
// included, Options > Language changes it at once, and the menus of every
// shipped language open no wider than a 240 pixel handheld's screen.
void WindowTest::AGermanLocaleSpeaksGermanAndEveryLanguagesMenusFitAHandheld() {
    for (const char* code : {"DEU", "FRA", "ESP", "CHS"}) {
        const QString name = QStringLiteral("tolvane_%1.dat").arg(QLatin1String(code));
        QVERIFY(QFile::copy(QStringLiteral(TOLVANE_PROGRAM_DIR "/") + name, home_->filePath(name)));
    }
    const QByteArray lang = qgetenv("LANG");
    // Only LANG speaks; the window has read its locale already.
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "TOLVANE_LANGUAGE"}) qunsetenv(name);
    qputenv("LANG", "de_DE.UTF-8");
    ProgramWindow& program = Start({96, 96, 240, 320});
    qputenv("LANG", lang);
    const QList<QToolButton*> keys = program.Window().SoftKeys().findChildren<QToolButton*>();
    QCOMPARE(keys.size(), 2);
    QCOMPARE(keys[1]->text(), QStringLiteral("Menü"));
    QMenu german;
    FillMenu(german, BuildCommandMenu(program.Core()));
    QCOMPARE(FindAction(german, kCommandStartGps)->text(), QStringLiteral("GPS starten\t[0]"));
    QCOMPARE(FindAction(german, kCommandEnableLogger)->text(), QStringLiteral("Track aufzeichnen"));
    // Qt's own words speak German too, from Qt's translations.
    QString cancel;
    QTimer::singleShot(0, [&cancel] {
        QWidget* dialog = QApplication::activeModalWidget();
        QVERIFY(dialog != nullptr);
        cancel = dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel)->text();
        QMetaObject::invokeMethod(dialog, "reject");
    });
    program.RunCommand(kCommandTileMaps);
    QCOMPARE(cancel, QStringLiteral("Abbrechen"));
    // Options > Language relabels the soft keys at once.
    OptionsForm form = OpenOptionsForm(program.Core().app);
    form.language = 5;
    ApplyOptionsForm(program.Core(), form);
    QCOMPARE(keys[0]->text(), QStringLiteral("视图"));
    QCOMPARE(keys[1]->text(), QStringLiteral("菜单"));

    constexpr int kHandheldWidth = 240;
    for (const char* code : {"ENU", "DEU", "FRA", "ESP", "CHS"}) {
        QVERIFY(CStringManager::GetInstance().Load(code));
        for (const MenuItem& item :
             {BuildViewsMenu(program.Core()), BuildCommandMenu(program.Core())}) {
            QMenu menu;
            FillMenu(menu, item);
            const int widest = WidestMenu(menu);
            if (widest > kHandheldWidth) qWarning("%s: a menu is %d pixels wide", code, widest);
            QVERIFY(widest <= kHandheldWidth);
        }
    }
}

void WindowTest::ASquareScreenUses110DpiAndTheSmallLayout() {
    {
        ProgramWindow& program = Start({192, 192, 1280, 800});
        QCOMPARE(program.Core().screen.dpiY, 192);
        QVERIFY(program.Window().Views().Layout().large);
    }
    program_.reset();
    ProgramWindow& square = Start({192, 192, 320, 320});
    QCOMPARE(square.Core().screen.dpiX, 110);
    QCOMPARE(square.Core().screen.dpiY, 110);
    QVERIFY(!square.Window().Views().Layout().large);
}

namespace {

// The mean brightness of a picture, 0 black to 1 white.
double MeanBrightness(const QImage& image) {
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) sum += qGray(image.pixel(x, y));
    }
    return sum / (255.0 * image.width() * image.height());
}

}  // namespace

void WindowTest::ScreenshotsPaintEveryViewOfARecordingDayAndNight() {
    WriteOptions([](Options& options) { options.nightView = 1; });
    const QStringList names = {QStringLiteral("gps-info.png"),  QStringLiteral("satellites.png"),
                               QStringLiteral("compass.png"),   QStringLiteral("speed.png"),
                               QStringLiteral("trip-stat.png"), QStringLiteral("world-map.png"),
                               QStringLiteral("map.png")};
    double worldBrightness[2] = {};
    for (const bool night : {false, true}) {
        const QString folder =
            home_->filePath(night ? QStringLiteral("night") : QStringLiteral("day"));
        QStringList arguments = {QStringLiteral("--screenshot"),
                                 folder,
                                 QStringLiteral("--size"),
                                 QStringLiteral("240x320"),
                                 QStringLiteral("--replay"),
                                 QStringLiteral(TOLVANE_TEST_DATA_DIR "/gpsd/GPSmap-76S.log"),
                                 QStringLiteral("--at"),
                                 QStringLiteral("5")};
        if (night) arguments << QStringLiteral("--options") << OptionsPath();
        QProcess run;
        run.start(QStringLiteral(TOLVANE_PROGRAM_DIR "/tolvane"), arguments);
        QVERIFY(run.waitForFinished(30000));
        QCOMPARE(run.exitCode(), 0);
        // Every picture is listed, written at the asked size, and painted in
        // the palette the settings ask for.
        const QStringList printed = QString::fromLocal8Bit(run.readAllStandardOutput())
                                        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(printed.size(), names.size());
        for (const QString& name : names) {
            const QImage picture(QDir(folder).filePath(name));
            QCOMPARE(picture.size(), QSize(240, 320));
            const double brightness = MeanBrightness(picture);
            // The World Map is a picture of the earth, dark by day too; its
            // night is held darker than its day below.
            if (name == QStringLiteral("world-map.png")) {
                worldBrightness[night] = brightness;
                continue;
            }
            QVERIFY2(night ? brightness < 0.35 : brightness > 0.6, qPrintable(name));
        }
    }
    QVERIFY(worldBrightness[1] < worldBrightness[0]);
}

void WindowTest::TheAlarmLoopsWithoutAJump() {
    QFile file(QStringLiteral(TOLVANE_PROGRAM_DIR "/Alarm.wav"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray wave = file.readAll();
    constexpr int kHeaderBytes = 44;
    QVERIFY(wave.startsWith("RIFF") && wave.mid(8, 8) == "WAVEfmt ");
    QCOMPARE(wave.mid(36, 4), QByteArray("data"));
    const auto* samples = reinterpret_cast<const qint16*>(wave.constData() + kHeaderBytes);
    const int count = (wave.size() - kHeaderBytes) / 2;
    QVERIFY(count > 0);
    // Played in a loop, the last sample runs into the first: that step must
    // be no larger than the steps inside the sound, or the loop clicks.
    int largestStep = 0;
    for (int i = 1; i < count; ++i)
        largestStep = std::max(largestStep, std::abs(samples[i] - samples[i - 1]));
    QVERIFY(std::abs(samples[0] - samples[count - 1]) <= largestStep);
    QVERIFY(std::abs(samples[0]) < largestStep);
}

void WindowTest::TheValueDialogsFitTakeDigitsAndAnswerEnterAndEscape() {
    ProgramWindow& program = Start({96, 96, 240, 320});
    Options& options = program.Core().app.options;
    options.unitSystem = 2;
    QStringList opened;
    bool fits = false;
    const auto type = [&](const char* keys, Qt::Key answer) {
        return [&, keys, answer](QWidget& dialog) {
            const QList<QLineEdit*> fields = dialog.findChildren<QLineEdit*>();
            for (const QLineEdit* field : fields) opened << field->text();
            for (const QLabel* label : dialog.findChildren<QLabel*>()) opened << label->text();
            fits = dialog.width() <= 240 && dialog.height() <= 320;
            QTest::keyClicks(fields.front(), QString::fromLatin1(keys));
            QTest::keyClick(fields.front(), answer);
        };
    };

    // The first value is selected: typing replaces it, and a letter is refused.
    WhenOpens(Is<QDialog>, type("x95", Qt::Key_Return));
    program.RunCommand(kCommandCustomSpeedAlarm);
    QCOMPARE(options.speedAlarmValues[0], 95);
    QCOMPARE(options.speedAlarmValues[7], 120);
    QVERIFY(opened.contains(QStringLiteral("120")) && opened.contains(QStringLiteral("(kts)")));
    QVERIFY(fits);

    opened.clear();
    WhenOpens(Is<QDialog>, type("0", Qt::Key_Enter));
    program.RunCommand(kCommandCustomInterval);
    QCOMPARE(options.trackIntervalValues[0], 1);
    QVERIFY(opened.contains(QStringLiteral("1-3600 Seconds")));
    QVERIFY(fits);

    WhenOpens(Is<QDialog>, type("77", Qt::Key_Escape));
    program.RunCommand(kCommandCustomInterval);
    QCOMPARE(options.trackIntervalValues[0], 1);
}

namespace {

// Two fingers on widget, from first and second, moved by the same steps
// each: apart, together or side by side.
void MoveTwoFingers(QWidget* widget, QPointingDevice* screen, QPoint first, QPoint second,
                    QPoint firstStep, QPoint secondStep) {
    QTest::touchEvent(widget, screen).press(0, first, widget).press(1, second, widget);
    constexpr int kSteps = 6;
    for (int step = 1; step <= kSteps; ++step) {
        QTest::touchEvent(widget, screen)
            .move(0, first + firstStep * step, widget)
            .move(1, second + secondStep * step, widget);
    }
    QTest::touchEvent(widget, screen)
        .release(0, first + firstStep * kSteps, widget)
        .release(1, second + secondStep * kSteps, widget);
}

}  // namespace

// A touch screen's fingers on the two maps: spreading zooms in, moving
// together pans; on any view a finger held still opens the command menu,
// whose entries, like the soft keys, are large enough for a finger.
void WindowTest::FingersPinchAndPanBothMapsAndAHeldFingerOpensTheMenu() {
    ProgramWindow& program = Start();
    AppState& app = program.Core().app;
    const QString mapFile = QStringLiteral(TOLVANE_TEST_DATA_DIR "/maps/demo-map.png");
    std::shared_ptr<const MapPicture> picture = ReadMapPicture(mapFile, [](int, int) {});
    QVERIFY(picture != nullptr);
    SetLoadedMap(app, mapFile.toStdString(), std::move(picture));
    QPointingDevice* screen = QTest::createTouchDevice(QInputDevice::DeviceType::TouchScreen);
    QWidget* views = &program.Window().Views();
    QVERIFY(QTest::qWaitForWindowExposed(&program.Window()));
    const QPoint middle = views->rect().center();
    const QPoint apart(40, 0);

    QTest::keyClick(&program.Window(), Qt::Key_2);
    const int worldZoom = app.mapKeys.worldMapZoom;
    MoveTwoFingers(views, screen, middle - apart, middle + apart, -apart / 4, apart / 4);
    QVERIFY(app.mapKeys.worldMapZoom > worldZoom);
    const double longitude = app.worldMapCentre.longitude;
    MoveTwoFingers(views, screen, middle - apart, middle + apart, {10, 0}, {10, 0});
    QVERIFY(app.worldMapCentre.longitude < longitude);  // the map moves east with the hand

    QTest::keyClick(&program.Window(), Qt::Key_3);
    QCOMPARE(app.currentView, kViewMap);
    const int mapZoom = app.mapKeys.mapZoom;
    MoveTwoFingers(views, screen, middle - apart, middle + apart, -apart / 4, apart / 4);
    QVERIFY(app.mapKeys.mapZoom > mapZoom);
    const int columns = app.mapKeys.panColumns;
    MoveTwoFingers(views, screen, middle - apart, middle + apart, {-40, 0}, {-40, 0});
    QVERIFY(app.mapKeys.panColumns > columns);
    const int zoomed = app.mapKeys.mapZoom;
    MoveTwoFingers(views, screen, middle - apart * 2, middle + apart * 2, apart / 4, -apart / 4);
    QVERIFY(app.mapKeys.mapZoom < zoomed);

    const int target = TouchTargetPixels(views);
    for (QToolButton* key : program.Window().SoftKeys().findChildren<QToolButton*>())
        QVERIFY(key->height() >= target);
    QTest::keyClick(&program.Window(), Qt::Key_1);
    bool menuOpened = false;
    int smallestEntry = target;
    QTimer::singleShot(800, [&] {
        QMenu* menu = program.Window().SoftKeys().OpenMenu();
        if (menu == nullptr) return;
        menuOpened = FindAction(*menu, kCommandExit) != nullptr;
        for (QAction* action : menu->actions()) {
            if (!action->isSeparator())
                smallestEntry = std::min(smallestEntry, menu->actionGeometry(action).height());
        }
        menu->close();
    });
    QTest::touchEvent(views, screen).press(0, middle, views);
    QTest::qWait(1000);
    QTest::touchEvent(views, screen).release(0, middle, views);
    QVERIFY(smallestEntry >= target);
    QVERIFY(menuOpened);
    QCOMPARE(app.currentView, kViewGpsInfo);
}

}  // namespace tolvane::shell

int main(int argc, char** argv) {
    return tolvane::shell::RunOffscreenTests<tolvane::shell::WindowTest>(argc, argv);
}

#include "window_test.moc"
