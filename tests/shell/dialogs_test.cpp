// The dialogs in the running window on Qt's offscreen platform: the
// Options dialog, the GeoPoint Editor, the W & P Manager, the destination
// list with its question before unsaved work goes, the GPX import and Tile
// Maps. Each dialog is driven through its own widgets as it opens, and what
// it did is read back from the files it wrote.
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
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>
#include <cmath>
#include <fstream>
#include <memory>

#include "core/app/commands.h"
#include "core/app/local_settings.h"
#include "core/app/point_commands.h"
#include "core/data/geo_point_file.h"
#include "core/data/options.h"
#include "core/nav/destination_list.h"
#include "shell/dialogs/gpx_import_dialog.h"
#include "shell/dialogs/options_dialog.h"
#include "shell/program_window.h"
#include "tests/formats/mbtiles_writer.h"
#include "tests/shell/dialog_answers.h"
#include "tests/shell/program_home.h"

namespace tolvane::shell {
namespace {

bool IsPointEditor(QWidget& widget) {
    return Is<QDialog>(widget) && widget.findChild<QLineEdit*>(QStringLiteral("name")) != nullptr;
}

bool HasChild(QWidget& widget, const char* name) {
    return widget.findChild<QWidget*>(QLatin1String(name)) != nullptr;
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

// Add File... in Tile Maps, with path typed into the chooser.
void AddTileMap(QWidget& dialog, const QString& path) {
    WhenOpens(Is<QFileDialog>, ChooseFileAct(path));
    Button(dialog, QStringLiteral("Add File...")).click();
}

QStringList Rows(const QListWidget& list) {
    QStringList rows;
    for (int row = 0; row < list.count(); ++row) rows << list.item(row)->text();
    return rows;
}

std::string TileSourceLines(const std::string& path) {
    std::ifstream file(path);
    std::string lines;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("tile-source")) lines += line + "\n";
    }
    return lines;
}

}  // namespace

class DialogsTest : public QObject {
    Q_OBJECT

  private slots:
    void init();
    void cleanup();
    void OptionsFitASmallScreenAndEnterStoresWhatWasTypedAndEscapeNothing();
    void TheEditorSuggestsAFreeNameAndTheManagerEditsAndDeletesInTheFile();
    void ADestinationListWithUnsavedChangesAsksBeforeItGoes();
    void TheImportAddsWhatItsPreviewShowsOnlyOnOk();
    void TileMapsRowsSayWhatEachMapIsAndOkKeepsTheirOrder();

  private:
    AppState& App() { return program_->Core().app; }
    QString OptionsPath() const { return home_->filePath(QStringLiteral("Options.dat")); }
    // The W & P Manager with act run on it; it is closed afterwards unless
    // act closed it.
    void InTheManager(const DialogAct& act);
    // The manager's Go To on the first point of its list.
    void GoToTheFirstPoint();
    // Runs an Add command, types the position into the point editor it
    // opens and presses OK; returns the name the editor suggested.
    QString AddPointAt(int command, const QString& latitude, const QString& longitude);

    std::unique_ptr<QTemporaryDir> home_;
    std::unique_ptr<ProgramWindow> program_;
};

void DialogsTest::init() {
    home_ = NewProgramHome();
    program_ = std::make_unique<ProgramWindow>(CommandLine{});
    if (!program_->Start({96, 96, 240, 320})) qFatal("the program did not start");
}

void DialogsTest::cleanup() {
    ForgetDialogWaits();
    program_.reset();
    home_.reset();
}

void DialogsTest::InTheManager(const DialogAct& act) {
    WhenOpens([](QWidget& widget) { return HasChild(widget, "points"); },
              [act](QWidget& manager) {
                  act(manager);
                  if (manager.isVisible()) static_cast<QDialog&>(manager).reject();
              });
    program_->RunCommand(kCommandPointManager);
}

void DialogsTest::GoToTheFirstPoint() {
    InTheManager([](QWidget& manager) {
        auto& list = Find<QTreeWidget>(manager, "points");
        list.setCurrentItem(list.topLevelItem(0));
        Button(manager, QStringLiteral("Go To")).click();
    });
}

QString DialogsTest::AddPointAt(int command, const QString& latitude, const QString& longitude) {
    QString suggested;
    WhenOpens(IsPointEditor, [&](QWidget& editor) {
        suggested = Find<QLineEdit>(editor, "name").text();
        TypePositionAndOk(editor, latitude, longitude);
    });
    program_->RunCommand(command);
    return suggested;
}

// The Options dialog fits a small screen without a sideways scroll, is
// filled with keys as a user fills it and closed with Enter or Escape;
// what it left is read back from Options.dat.
void DialogsTest::OptionsFitASmallScreenAndEnterStoresWhatWasTypedAndEscapeNothing() {
    WhenOpens(Is<OptionsDialog>, [](QWidget& dialog) {
        const QSize hint = dialog.minimumSizeHint();
        QVERIFY2(hint.width() <= 240 && hint.height() <= 320,
                 qPrintable(QStringLiteral("%1 x %2").arg(hint.width()).arg(hint.height())));
        dialog.resize(240, 320);
        for (QWidget* control : dialog.findChildren<QWidget*>()) {
            if (!control->isVisibleTo(&dialog) || control->objectName().isEmpty()) continue;
            const QRect onDialog(control->mapTo(&dialog, QPoint()), control->size());
            QVERIFY2(onDialog.right() < 240, qPrintable(control->objectName()));
        }
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

    WhenOpens(Is<OptionsDialog>, [](QWidget& dialog) {
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
    QCOMPARE(App().options.logNmea, 0);
    QCOMPARE(App().options.minimumSpeed, 0.0);
}

// Add Waypoint offers the first free number and OK writes the point; in the
// manager Edit renames a point and Delete, once confirmed, takes one out,
// each written to the waypoint file at once.
void DialogsTest::TheEditorSuggestsAFreeNameAndTheManagerEditsAndDeletesInTheFile() {
    const std::string waypoints = App().runtime.waypointFile;
    WritePoints(waypoints, {QStringLiteral("WP001"), QStringLiteral("WP002")});

    QCOMPARE(
        AddPointAt(kCommandAddWaypoint, QStringLiteral("27 12 39.3 S"), QStringLiteral("153.0512")),
        QStringLiteral("WP003"));
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
        AnswerNextBox(QMessageBox::Yes);
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
void DialogsTest::ADestinationListWithUnsavedChangesAsksBeforeItGoes() {
    WritePoints(App().runtime.waypointFile, {QStringLiteral("WP001")});
    const QString folder = QString::fromStdString(App().folders.destinationDir);
    QVERIFY(QDir().mkpath(folder));
    const auto addDestination = [this] {
        QCOMPARE(
            AddPointAt(kCommandAddDestination, QStringLiteral("-27.3"), QStringLiteral("153.1")),
            QStringLiteral("WP002"));
        QCOMPARE(CopyDestinations(App().navigation).points.size(), std::size_t{2});
    };
    GoToTheFirstPoint();
    addDestination();

    QString question;
    AnswerNextBox(QMessageBox::Cancel, [&question](QMessageBox& box) { question = box.text(); });
    program_->RunCommand(kCommandCloseDestinationList);
    QVERIFY2(question.contains(QStringLiteral("not been saved")), qPrintable(question));
    QVERIFY(App().navigation.open);
    QCOMPARE(CopyDestinations(App().navigation).points.size(), std::size_t{2});

    const QString walk = folder + QStringLiteral("/Walk.csv");
    AnswerNextBox(QMessageBox::Save,
                  [walk](QMessageBox&) { WhenOpens(Is<QFileDialog>, ChooseFileAct(walk)); });
    program_->RunCommand(kCommandCloseDestinationList);
    QVERIFY(!App().navigation.open);
    QCOMPARE(Names(ReadPoints(walk.toStdString())), QStringList({"WP001", "WP002"}));

    GoToTheFirstPoint();
    addDestination();
    const QString fresh = folder + QStringLiteral("/Fresh.csv");
    AnswerNextBox(QMessageBox::Discard, [fresh](QMessageBox&) {
        WhenOpens(Is<QFileDialog>, ChooseFileAct(fresh));
        WhenOpens([](QWidget& widget) { return HasChild(widget, "destinations"); },
                  [](QWidget& editor) { static_cast<QDialog&>(editor).accept(); });
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
void DialogsTest::TheImportAddsWhatItsPreviewShowsOnlyOnOk() {
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
    AnswerNextBox(QMessageBox::Ok, [&done](QMessageBox& box) { done = box.text(); });
    program_->RunCommand(kCommandImport);
    QVERIFY2(done.startsWith(QStringLiteral("Imported: 2 waypoints, 1 route")), qPrintable(done));
    const std::vector<GeoPoint> imported = ReadPoints(waypoints);
    QCOMPARE(Names(imported), QStringList({"A very long waypoin", "Clock tower"}));
    QCOMPARE(QString::fromStdString(imported[0].category), QStringLiteral("Gas Station"));
    QCOMPARE(Names(ReadPoints(route.toStdString())), QStringList({"Tower", "Bridge"}));
    QCOMPARE(App().track.viewedTrack.Count(), 2);
}

// A generated MBTiles and a file that is no SQLite database are added
// through the file chooser, each row says what its map is or why it does
// not open, a map listed already is refused, and OK writes the order into
// tolvane.conf.
void DialogsTest::TileMapsRowsSayWhatEachMapIsAndOkKeepsTheirOrder() {
    const QString walk = home_->filePath(QStringLiteral("walk.mbtiles"));
    const QString notes = home_->filePath(QStringLiteral("notes.mbtiles"));
    {
        testing::MbtilesWriter map(walk.toStdString());
        map.MakeMbtilesTables();
        map.Run(
            "INSERT INTO metadata VALUES ('name', 'Demo walk'), ('format', 'png'),"
            " ('minzoom', '0'), ('maxzoom', '2')");
        map.AddTile(0, 0, 0, "\x89PNG\r\n\x1a\n");
        std::ofstream file(notes.toStdString(), std::ios::binary);
        file << std::string(2048, 'n');
    }

    QStringList rows;
    QString refusal;
    const auto isTileMaps = [](QWidget& widget) { return HasChild(widget, "tileMaps"); };
    WhenOpens(isTileMaps, [&](QWidget& dialog) {
        auto& list = Find<QListWidget>(dialog, "tileMaps");
        AddTileMap(dialog, walk);
        AddTileMap(dialog, notes);
        QTRY_VERIFY(!Rows(list).join('\n').contains(QStringLiteral("Reading...")));
        rows = Rows(list);
        AnswerNextBox(QMessageBox::Ok, [&refusal](QMessageBox& box) { refusal = box.text(); });
        AddTileMap(dialog, walk);
        list.setCurrentRow(1);
        Button(dialog, QStringLiteral("Move Up")).click();
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
    program_->RunCommand(kCommandTileMaps);

    QCOMPARE(rows, QStringList({"Demo walk\nMBTiles, zoom 0 to 2, PNG",
                                "notes.mbtiles\nNot an SQLite file: file is not a database"}));
    QCOMPARE(refusal, walk + QStringLiteral(" is in the list already."));
    const std::string conf = LocalSettingsPath(program_->Core().files.optionsPath);
    QCOMPARE(QString::fromStdString(TileSourceLines(conf)),
             QStringLiteral("tile-source = %1\ntile-source = %2\n").arg(notes, walk));
    QCOMPARE(App().runtime.tileSources.size(), std::size_t{2});
    // The World Map opens the new list at once: the walk's zooms are its.
    QTRY_COMPARE(App().tileZooms.highest, 2);
    QCOMPARE(App().tileZooms.lowest, 0);
}

}  // namespace tolvane::shell

int main(int argc, char** argv) {
    return tolvane::shell::RunOffscreenTests<tolvane::shell::DialogsTest>(argc, argv);
}

#include "dialogs_test.moc"
