// The point dialogs in the running window on Qt's offscreen platform: the
// GeoPoint Editor, the W & P Manager, the destination list with its
// question before unsaved work goes, and the GPX import. Each dialog is
// driven through its own widgets as it opens, and what it did is read back
// from the files it wrote.
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <cmath>
#include <functional>
#include <memory>

#include "core/app/commands.h"
#include "core/app/point_commands.h"
#include "core/data/geo_point_file.h"
#include "core/nav/destination_list.h"
#include "shell/dialogs/gpx_import_dialog.h"
#include "shell/program_window.h"
#include "tests/shell/dialog_answers.h"
#include "tests/shell/program_home.h"

namespace tolvane::shell {
namespace {

using Kind = DialogKind;
using Act = DialogAct;

template <typename Widget>
bool Is(QWidget& widget) {
    return qobject_cast<Widget*>(&widget) != nullptr;
}

template <typename Control>
Control& Find(QWidget& dialog, const char* name) {
    auto* control = dialog.findChild<Control*>(QLatin1String(name));
    if (control == nullptr) qFatal("no control %s", name);
    return *control;
}

bool IsPointEditor(QWidget& widget) {
    return Is<QDialog>(widget) && widget.findChild<QLineEdit*>(QStringLiteral("name")) != nullptr;
}

bool HasChild(QWidget& widget, const char* name) {
    return widget.findChild<QWidget*>(QLatin1String(name)) != nullptr;
}

QPushButton& Button(QWidget& dialog, const QString& text) {
    for (QPushButton* button : dialog.findChildren<QPushButton*>()) {
        if (button->text() == text) return *button;
    }
    qFatal("no button %s", qPrintable(text));
}

void Retype(QWidget& dialog, const char* name, const QString& text) {
    auto& edit = Find<QLineEdit>(dialog, name);
    edit.selectAll();
    QTest::keyClick(&edit, Qt::Key_Backspace);
    QTest::keyClicks(&edit, text);
}

// Without a fix the editor's OK waits until the position is typed.
void TypePositionAndOk(QWidget& editor, const QString& latitude, const QString& longitude) {
    auto& ok = *editor.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
    QVERIFY(!ok.isEnabled());
    Find<QCheckBox>(editor, "typePosition").setChecked(true);
    Retype(editor, "latitude", latitude);
    Retype(editor, "longitude", longitude);
    ok.click();
}

// Chooses path in the file chooser, as typing it and pressing its button
// do (selectFile leaves alone the name field that has the focus).
Act ChooseFileAct(const QString& path) {
    return [path](QWidget& chooser) {
        Find<QLineEdit>(chooser, "fileNameEdit").setText(path);
        QMetaObject::invokeMethod(&chooser, "accept");
    };
}

// Answers a message box with button, keeping its text.
Act Answer(QMessageBox::StandardButton button, QString* text = nullptr) {
    return [button, text](QWidget& widget) {
        auto& box = static_cast<QMessageBox&>(widget);
        if (text != nullptr) *text = box.text();
        QVERIFY(box.button(button) != nullptr);
        box.button(button)->click();
    };
}

std::vector<GeoPoint> ReadPoints(const std::string& path) {
    DynamicList<GeoPoint> list;
    LoadPointFile(path, list);
    std::vector<GeoPoint> points;
    list.ForEach([&](const GeoPoint& point) { points.push_back(point); });
    return points;
}

QStringList Names(const std::vector<GeoPoint>& points) {
    QStringList names;
    for (const GeoPoint& point : points) names << QString::fromStdString(point.name);
    return names;
}

void WritePoints(const std::string& path, const QStringList& names) {
    DynamicList<GeoPoint> points;
    for (const QString& name : names) {
        GeoPoint point;
        point.name = name.toStdString();
        point.latitude = -27.2;
        point.longitude = 153.0;
        points.Append(point);
    }
    QVERIFY(QDir().mkpath(QFileInfo(QString::fromStdString(path)).path()));
    QVERIFY(SavePointFile(path, points));
}

}  // namespace

class PointDialogsTest : public QObject {
    Q_OBJECT

  private slots:
    void init();
    void cleanup();
    void TheEditorSuggestsAFreeNameAndTheManagerEditsAndDeletesInTheFile();
    void ADestinationListWithUnsavedChangesAsksBeforeItGoes();
    void TheImportAddsWhatItsPreviewShowsOnlyOnOk();

  private:
    AppState& App() { return program_->Core().app; }
    // The W & P Manager with act run on it; it is closed afterwards unless
    // act closed it.
    void InTheManager(const Act& act);
    // The manager's Go To on the first point of its list.
    void GoToTheFirstPoint();

    std::unique_ptr<QTemporaryDir> home_;
    std::unique_ptr<ProgramWindow> program_;
};

void PointDialogsTest::init() {
    home_ = NewProgramHome();
    program_ = std::make_unique<ProgramWindow>(CommandLine{});
    if (!program_->Start({96, 96, 240, 320})) qFatal("the program did not start");
}

void PointDialogsTest::cleanup() {
    ForgetDialogWaits();
    program_.reset();
    home_.reset();
}

void PointDialogsTest::InTheManager(const Act& act) {
    WhenOpens([](QWidget& widget) { return HasChild(widget, "points"); },
              [act](QWidget& manager) {
                  act(manager);
                  if (manager.isVisible()) static_cast<QDialog&>(manager).reject();
              });
    program_->RunCommand(kCommandPointManager);
}

void PointDialogsTest::GoToTheFirstPoint() {
    InTheManager([](QWidget& manager) {
        auto& list = Find<QTreeWidget>(manager, "points");
        list.setCurrentItem(list.topLevelItem(0));
        Button(manager, QStringLiteral("Go To")).click();
    });
}

// Add Waypoint offers the first free number and OK writes the point; in the
// manager Edit renames a point and Delete, once confirmed, takes one out,
// each written to the waypoint file at once.
void PointDialogsTest::TheEditorSuggestsAFreeNameAndTheManagerEditsAndDeletesInTheFile() {
    const std::string waypoints = App().runtime.waypointFile;
    WritePoints(waypoints, {QStringLiteral("WP001"), QStringLiteral("WP002")});

    QString suggested;
    WhenOpens(IsPointEditor, [&suggested](QWidget& editor) {
        suggested = Find<QLineEdit>(editor, "name").text();
        TypePositionAndOk(editor, QStringLiteral("27 12 39.3 S"), QStringLiteral("153.0512"));
    });
    program_->RunCommand(kCommandAddWaypoint);
    QCOMPARE(suggested, QStringLiteral("WP003"));
    std::vector<GeoPoint> saved = ReadPoints(waypoints);
    QCOMPARE(Names(saved), QStringList({"WP001", "WP002", "WP003"}));
    QVERIFY(std::abs(saved[2].latitude + 27.210917) < 1e-5);
    QVERIFY(std::abs(saved[2].longitude - 153.0512) < 1e-5);

    QStringList shown;
    InTheManager([&shown](QWidget& manager) {
        auto& list = Find<QTreeWidget>(manager, "points");
        list.setCurrentItem(list.topLevelItem(1));
        WhenOpens(IsPointEditor, [](QWidget& editor) {
            Retype(editor, "name", QStringLiteral("Harbour"));
            QTest::keyClick(&Find<QLineEdit>(editor, "name"), Qt::Key_Return);
        });
        Button(manager, QStringLiteral("Edit")).click();
        list.setCurrentItem(list.findItems(QStringLiteral("WP001"), Qt::MatchExactly).value(0));
        WhenOpens(Is<QMessageBox>, Answer(QMessageBox::Yes));
        Button(manager, QStringLiteral("Delete")).click();
        for (int row = 0; row < list.topLevelItemCount(); ++row) {
            shown << list.topLevelItem(row)->text(0);
        }
    });
    QCOMPARE(shown, QStringList({"Harbour", "WP003"}));
    QCOMPARE(Names(ReadPoints(waypoints)), QStringList({"Harbour", "WP003"}));
}

// A list that Go To made asks nothing; once a destination is added, Close
// asks Save, Discard or Cancel: Cancel keeps the list, Save writes it to a
// file the user chooses, and Discard lets New replace it unsaved.
void PointDialogsTest::ADestinationListWithUnsavedChangesAsksBeforeItGoes() {
    WritePoints(App().runtime.waypointFile, {QStringLiteral("WP001")});
    const QString folder = QString::fromStdString(App().folders.destinationDir);
    QVERIFY(QDir().mkpath(folder));
    const auto addDestination = [this] {
        QString suggested;
        WhenOpens(IsPointEditor, [&suggested](QWidget& editor) {
            suggested = Find<QLineEdit>(editor, "name").text();
            TypePositionAndOk(editor, QStringLiteral("-27.3"), QStringLiteral("153.1"));
        });
        program_->RunCommand(kCommandAddDestination);
        QCOMPARE(suggested, QStringLiteral("WP002"));
        QCOMPARE(CopyDestinations(App().navigation).points.size(), std::size_t{2});
    };
    GoToTheFirstPoint();
    addDestination();

    QString question;
    WhenOpens(Is<QMessageBox>, Answer(QMessageBox::Cancel, &question));
    program_->RunCommand(kCommandCloseDestinationList);
    QVERIFY2(question.contains(QStringLiteral("not been saved")), qPrintable(question));
    QVERIFY(App().navigation.open);
    QCOMPARE(CopyDestinations(App().navigation).points.size(), std::size_t{2});

    const QString walk = folder + QStringLiteral("/Walk.csv");
    WhenOpens(Is<QMessageBox>, [walk](QWidget& box) {
        WhenOpens(Is<QFileDialog>, ChooseFileAct(walk));
        Answer(QMessageBox::Save)(box);
    });
    program_->RunCommand(kCommandCloseDestinationList);
    QVERIFY(!App().navigation.open);
    QCOMPARE(Names(ReadPoints(walk.toStdString())), QStringList({"WP001", "WP002"}));

    GoToTheFirstPoint();
    addDestination();
    const QString fresh = folder + QStringLiteral("/Fresh.csv");
    WhenOpens(Is<QMessageBox>, [fresh](QWidget& box) {
        WhenOpens(Is<QFileDialog>, ChooseFileAct(fresh));
        WhenOpens([](QWidget& widget) { return HasChild(widget, "destinations"); },
                  [](QWidget& editor) { static_cast<QDialog&>(editor).accept(); });
        Answer(QMessageBox::Discard)(box);
    });
    program_->RunCommand(kCommandNewDestinationList);
    QCOMPARE(App().navigation.file, fresh.toStdString());
    QVERIFY(CopyDestinations(App().navigation).points.empty());
    QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList({"Fresh.csv", "Walk.csv"}));
    QCOMPARE(ReadPoints(walk.toStdString()).size(), std::size_t{2});
}

// The preview says what the file holds; Escape imports nothing, OK puts the
// waypoints in the waypoint file, the route in a destination list and the
// track on the map, and says so.
void PointDialogsTest::TheImportAddsWhatItsPreviewShowsOnlyOnOk() {
    const QString garmin = QStringLiteral(TOLVANE_TEST_DATA_DIR "/gpx/garmin.gpx");
    const std::string waypoints = App().runtime.waypointFile;
    const QString route =
        QString::fromStdString(App().folders.destinationDir) + QStringLiteral("/Thames walk.csv");

    QString preview;
    WhenOpens(Is<QFileDialog>, ChooseFileAct(garmin));
    WhenOpens(Is<GpxImportDialog>, [&preview](QWidget& dialog) {
        for (QLabel* label : dialog.findChildren<QLabel*>()) preview += label->text() + '\n';
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    program_->RunCommand(kCommandImport);
    QVERIFY2(preview.contains(QStringLiteral("2 waypoints")), qPrintable(preview));
    QVERIFY2(preview.contains(QStringLiteral("1 route with 2 points")), qPrintable(preview));
    QVERIFY(ReadPoints(waypoints).empty());
    QVERIFY(!QFile::exists(route));

    QString done;
    WhenOpens(Is<QFileDialog>, ChooseFileAct(garmin));
    WhenOpens(Is<GpxImportDialog>, [](QWidget& dialog) {
        QCOMPARE(Find<QComboBox>(dialog, "target").currentIndex(), 0);  // the waypoint list
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    WhenOpens(Is<QMessageBox>, Answer(QMessageBox::Ok, &done));
    program_->RunCommand(kCommandImport);
    QVERIFY2(done.startsWith(QStringLiteral("Imported: 2 waypoints, 1 route")), qPrintable(done));
    const std::vector<GeoPoint> imported = ReadPoints(waypoints);
    QCOMPARE(Names(imported), QStringList({"A very long waypoin", "Clock tower"}));
    QCOMPARE(QString::fromStdString(imported[0].category), QStringLiteral("Gas Station"));
    QCOMPARE(Names(ReadPoints(route.toStdString())), QStringList({"Tower", "Bridge"}));
    QCOMPARE(App().track.viewedTrack.Count(), 2);
}

}  // namespace tolvane::shell

int main(int argc, char** argv) {
    return tolvane::shell::RunOffscreenTests<tolvane::shell::PointDialogsTest>(argc, argv);
}

#include "point_dialogs_test.moc"
