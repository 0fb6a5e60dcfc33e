// The window on the screens of a phone held upright and on its side (360 x
// 720 and 720 x 360 at twice the pixels) and of car computers (800 x 480 and
// 1024 x 600): it fills the screen, and every menu and every dialog that a
// command opens lies on the screen, cuts no text and has every control a
// finger taps at least 7 mm high. The screen is Qt's offscreen one, given
// the size and pixel ratio on the command line as WxH@RATIO.
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollArea>
#include <QTabBar>
#include <QTemporaryFile>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>

#include "core/app/commands.h"
#include "core/app/map_commands.h"
#include "shell/dialogs/map_loader.h"
#include "shell/dialogs/touch.h"
#include "shell/program_window.h"
#include "shell/soft_key_bar.h"
#include "tests/shell/program_home.h"

namespace tolvane::shell {
namespace {

bool InScrollArea(const QWidget* widget) {
    for (const QWidget* up = widget->parentWidget(); up != nullptr; up = up->parentWidget()) {
        if (qobject_cast<const QScrollArea*>(up) != nullptr) return true;
    }
    return false;
}

// A control a finger taps: the parts of a combo box or a spin box are
// tapped as the whole box.
bool IsTapped(const QWidget* widget) {
    const QWidget* parent = widget->parentWidget();
    if (qobject_cast<const QComboBox*>(parent) != nullptr ||
        qobject_cast<const QAbstractSpinBox*>(parent) != nullptr) {
        return false;
    }
    return qobject_cast<const QAbstractButton*>(widget) != nullptr ||
           qobject_cast<const QComboBox*>(widget) != nullptr ||
           qobject_cast<const QLineEdit*>(widget) != nullptr ||
           qobject_cast<const QAbstractSpinBox*>(widget) != nullptr;
}

// Wider than the room it has: a label that does not wrap, or a button.
bool IsCut(const QWidget* widget) {
    if (const auto* label = qobject_cast<const QLabel*>(widget)) {
        return !label->wordWrap() && !label->text().isEmpty() &&
               label->sizeHint().width() > label->width();
    }
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    return button != nullptr && !button->text().isEmpty() &&
           qobject_cast<const QTabBar*>(button->parentWidget()) == nullptr &&
           button->sizeHint().width() > button->width();
}

QString Describe(const QWidget* widget, const char* fault) {
    QString text;
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) text = button->text();
    if (const auto* label = qobject_cast<const QLabel*>(widget)) text = label->text();
    return QStringLiteral("%1 %2 '%3' in %4")
        .arg(QLatin1String(fault), QLatin1String(widget->metaObject()->className()), text,
             widget->window()->windowTitle());
}

QRect OnScreen(const QWidget* widget) {
    return {widget->mapToGlobal(QPoint()), widget->size()};
}

// What is wrong with a shown window: parts off the screen (sideways only
// inside a scroll area, which scrolls up and down), cut texts, and tapped
// controls, list rows and tabs lower than a finger's width.
QStringList Misfits(const QWidget& window) {
    const QRect screen = window.screen()->geometry();
    const int finger = TouchTargetPixels(&window);
    QStringList faults;
    if (!screen.contains(OnScreen(&window))) faults << Describe(&window, "off the screen:");
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisible()) continue;
        const QRect place = OnScreen(widget);
        const bool scrolls = InScrollArea(widget);
        if (!scrolls && !screen.contains(place)) faults << Describe(widget, "off the screen:");
        if (scrolls && (place.left() < screen.left() || place.right() > screen.right()))
            faults << Describe(widget, "off the screen's side:");
        if (IsTapped(widget) && widget->height() < finger) faults << Describe(widget, "too low:");
        if (IsCut(widget)) faults << Describe(widget, "cut:");
        const auto* list = qobject_cast<const QAbstractItemView*>(widget);
        if (list != nullptr && qobject_cast<const QHeaderView*>(list) == nullptr &&
            list->model() != nullptr && list->model()->rowCount(list->rootIndex()) > 0 &&
            list->visualRect(list->model()->index(0, 0, list->rootIndex())).height() < finger) {
            faults << Describe(widget, "rows too low:");
        }
        if (const auto* tabs = qobject_cast<const QTabBar*>(widget)) {
            for (int tab = 0; tab < tabs->count(); ++tab) {
                if (tabs->tabRect(tab).height() < finger ||
                    tabs->tabRect(tab).right() > tabs->width())
                    faults << Describe(widget, "tab too low or cut:");
            }
        }
    }
    return faults;
}

QStringList MenuMisfits(QMenu& menu) {
    QStringList faults = Misfits(menu);
    for (QAction* action : menu.actions()) {
        if (!action->isSeparator() &&
            menu.actionGeometry(action).height() < TouchTargetPixels(&menu))
            faults << QStringLiteral("menu entry too low: ") + action->text();
    }
    return faults;
}

// Runs open; once a modal window shows, look at it and close it, stepping
// through the pages of its tabs first.
void LookAtTheModalOf(const std::function<void()>& open, QStringList& faults) {
    auto* poll = new QTimer;
    poll->setInterval(20);
    QObject::connect(poll, &QTimer::timeout, [poll, &faults] {
        QWidget* window = QApplication::activeModalWidget();
        if (window == nullptr) return;
        poll->stop();
        poll->deleteLater();
        faults << Misfits(*window);
        if (auto* tabs = window->findChild<QTabBar*>()) {
            for (int tab = 1; tab < tabs->count(); ++tab) {
                tabs->setCurrentIndex(tab);
                QApplication::processEvents();
                faults << Misfits(*window);
            }
        }
        if (auto* box = qobject_cast<QMessageBox*>(window)) {
            box->button(box->buttons().contains(box->button(QMessageBox::No)) ? QMessageBox::No
                                                                              : QMessageBox::Ok)
                ->click();
        } else {
            QMetaObject::invokeMethod(window, "reject");
        }
    });
    poll->start();
    open();
}

}  // namespace

class SmallScreenTest : public QObject {
    Q_OBJECT

  private slots:
    void TheWindowFillsTheScreenAndEveryMenuAndDialogFits();
};

void SmallScreenTest::TheWindowFillsTheScreenAndEveryMenuAndDialogFits() {
    const std::unique_ptr<QTemporaryDir> home = NewProgramHome();
    ProgramWindow program{CommandLine{}};
    QVERIFY(program.Start(ReadScreen()));
    MainWindow& window = program.Window();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(window.frameGeometry(), window.screen()->availableGeometry());
    const QString mapFile = QStringLiteral(TOLVANE_TEST_DATA_DIR "/maps/demo-map.png");
    SetLoadedMap(program.Core().app, mapFile.toStdString(),
                 ReadMapPicture(mapFile, [](int, int) {}));
    // A listed tile map gives the Tile Maps dialog a row to measure.
    program.Core().app.runtime.tileSources = {mapFile.toStdString()};
    QStringList faults = Misfits(window);

    SoftKeyBar& softKeys = window.SoftKeys();
    for (const bool right : {false, true}) {
        QTimer::singleShot(50, [&] {
            QMenu* menu = softKeys.OpenMenu();
            faults << MenuMisfits(*menu);
            for (QAction* action : menu->actions()) {
                if (action->menu() == nullptr) continue;
                action->menu()->popup(menu->mapToGlobal(menu->actionGeometry(action).topRight()));
                faults << MenuMisfits(*action->menu());
                action->menu()->close();
            }
            menu->close();
        });
        right ? softKeys.OpenRight() : softKeys.OpenLeft();
    }

    for (const int command :
         {kCommandGpsSetup, kCommandOptions, kCommandAddWaypoint, kCommandPointManager,
          kCommandAddDestination, kCommandEditDestinations, kCommandOpenDestinationList,
          kCommandCustomSpeedAlarm, kCommandCustomInterval, kCommandLoadMap, kCommandImport,
          kCommandViewLogFile, kCommandTileMaps, kCommandAbout, kCommandExit}) {
        LookAtTheModalOf([&] { program.RunCommand(command); }, faults);
    }
    program.RunCommand(kCommandFirstRefPoint);
    LookAtTheModalOf([&] { program.RunCommand(kCommandPlaceRefPoint); }, faults);
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QLatin1Char('\n'))));
}

}  // namespace tolvane::shell

// The screen is made from the first argument, WxH@RATIO, in the pixels the
// program lays out (device pixels divided by the ratio).
int main(int argc, char** argv) {
    const QRegularExpressionMatch screen =
        QRegularExpression(QStringLiteral("^(\\d+)x(\\d+)@(\\d+)$"))
            .match(QString::fromLatin1(argc > 1 ? argv[1] : ""));
    if (!screen.hasMatch()) qFatal("usage: tolvane_small_screen_tests WxH@RATIO [test options]");
    QTemporaryFile configuration;
    if (!configuration.open()) qFatal("cannot write the screen's configuration");
    configuration.write(QStringLiteral("{\"screens\": [{\"name\": \"small\", \"x\": 0, \"y\": 0, "
                                       "\"width\": %1, \"height\": %2, \"logicalDpi\": 96, "
                                       "\"logicalBaseDpi\": 96, \"dpr\": %3}]}")
                            .arg(screen.captured(1), screen.captured(2), screen.captured(3))
                            .toUtf8());
    configuration.flush();
    argv[1] = argv[0];
    return tolvane::shell::RunOffscreenTests<tolvane::shell::SmallScreenTest>(
        argc - 1, argv + 1, "offscreen:configfile=" + configuration.fileName().toUtf8());
}

#include "small_screen_test.moc"
