// The Tile Maps dialog in the running window on Qt's offscreen platform: a
// generated MBTiles and a file that is no SQLite database are added through
// the file chooser, each row says what its map is or why it does not open,
// a map listed already is refused, and OK writes the order into
// tolvane.conf.

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>

#include "core/app/commands.h"
#include "core/app/local_settings.h"
#include "shell/program_window.h"
#include "tests/formats/mbtiles_writer.h"
#include "tests/shell/dialog_answers.h"
#include "tests/shell/program_home.h"

namespace tolvane::shell {
namespace {

using Act = DialogAct;

bool IsFileChooser(QWidget& widget) {
    return qobject_cast<QFileDialog*>(&widget) != nullptr;
}

bool IsMessageBox(QWidget& widget) {
    return qobject_cast<QMessageBox*>(&widget) != nullptr;
}

bool IsTileMapsDialog(QWidget& widget) {
    return widget.findChild<QListWidget*>(QStringLiteral("tileMaps")) != nullptr;
}

QPushButton& Button(QWidget& dialog, const QString& text) {
    for (QPushButton* button : dialog.findChildren<QPushButton*>()) {
        if (button->text() == text) return *button;
    }
    qFatal("no button %s", qPrintable(text));
}

// Add File... with path typed into the chooser.
void AddFile(QWidget& dialog, const QString& path) {
    WhenOpens(IsFileChooser, [path](QWidget& chooser) {
        chooser.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(path);
        QMetaObject::invokeMethod(&chooser, "accept");
    });
    Button(dialog, QStringLiteral("Add File...")).click();
}

QStringList Rows(const QListWidget& list) {
    QStringList rows;
    for (int row = 0; row < list.count(); ++row) rows << list.item(row)->text();
    return rows;
}

// A small MBTiles as a map tool writes it: its metadata and one tile.
void WriteMbtiles(const QString& path) {
    testing::MbtilesWriter map(path.toStdString());
    map.MakeMbtilesTables();
    map.Run(
        "INSERT INTO metadata VALUES ('name', 'Demo walk'), ('format', 'png'),"
        " ('minzoom', '0'), ('maxzoom', '2')");
    map.AddTile(0, 0, 0, "\x89PNG\r\n\x1a\n");
}

std::string TileSourceLines(const std::string& path) {
    std::ifstream file(path);
    std::string line;
    std::string lines;
    while (std::getline(file, line)) {
        if (line.starts_with("tile-source")) lines += line + "\n";
    }
    return lines;
}

}  // namespace

class TileMapsDialogTest : public QObject {
    Q_OBJECT

  private slots:
    void TheRowsSayWhatEachMapIsAndOkKeepsTheirOrder();
};

void TileMapsDialogTest::TheRowsSayWhatEachMapIsAndOkKeepsTheirOrder() {
    const std::unique_ptr<QTemporaryDir> home = NewProgramHome();
    ProgramWindow program{CommandLine{}};
    QVERIFY(program.Start({96, 96, 240, 320}));
    const QString walk = home->filePath(QStringLiteral("walk.mbtiles"));
    const QString notes = home->filePath(QStringLiteral("notes.mbtiles"));
    WriteMbtiles(walk);
    {
        std::ofstream file(notes.toStdString(), std::ios::binary);
        file << std::string(2048, 'n');
    }

    QStringList rows;
    QString refusal;
    WhenOpens(IsTileMapsDialog, [&](QWidget& dialog) {
        auto& list = *dialog.findChild<QListWidget*>(QStringLiteral("tileMaps"));
        AddFile(dialog, walk);
        AddFile(dialog, notes);
        QTRY_VERIFY(!Rows(list).join('\n').contains(QStringLiteral("Reading...")));
        rows = Rows(list);
        WhenOpens(IsMessageBox, [&refusal](QWidget& box) {
            refusal = static_cast<QMessageBox&>(box).text();
            static_cast<QMessageBox&>(box).accept();
        });
        AddFile(dialog, walk);
        list.setCurrentRow(1);
        Button(dialog, QStringLiteral("Move Up")).click();
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
    program.RunCommand(kCommandTileMaps);

    QCOMPARE(rows, QStringList({"Demo walk\nMBTiles, zoom 0 to 2, PNG",
                                "notes.mbtiles\nNot an SQLite file: file is not a database"}));
    QCOMPARE(refusal, walk + QStringLiteral(" is in the list already."));
    const std::string conf = LocalSettingsPath(program.Core().files.optionsPath);
    QCOMPARE(QString::fromStdString(TileSourceLines(conf)),
             QStringLiteral("tile-source = %1\ntile-source = %2\n").arg(notes, walk));
    QCOMPARE(program.Core().app.runtime.tileSources.size(), std::size_t{2});
    // The World Map opens the new list at once: the walk's zooms are its.
    QTRY_COMPARE(program.Core().app.tileZooms.highest, 2);
    QCOMPARE(program.Core().app.tileZooms.lowest, 0);
}

}  // namespace tolvane::shell

int main(int argc, char** argv) {
    return tolvane::shell::RunOffscreenTests<tolvane::shell::TileMapsDialogTest>(argc, argv);
}

#include "tile_maps_dialog_test.moc"
