#include "shell/dialogs/destination_list_dialog.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QInputDialog>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/app/destination_commands.h"
#include "core/app/point_commands.h"
#include "core/app/program.h"
#include "core/data/geo_point_file.h"
#include "core/data/gpx_writer.h"
#include "core/nav/destination_list.h"
#include "shell/dialogs/dialog_parts.h"
#include "shell/dialogs/point_editor_dialog.h"

namespace tolvane::shell {
namespace {

constexpr std::uint32_t kTextEdit = 14228;
constexpr std::uint32_t kTextExport = 14233;
constexpr std::uint32_t kTextTitle = 14236;
constexpr std::uint32_t kTextUp = 14237;
constexpr std::uint32_t kTextDown = 14238;
constexpr std::uint32_t kTextFromPoints = 14239;
constexpr std::uint32_t kTextHere = 14240;
constexpr std::uint32_t kTextRemove = 14241;
constexpr std::uint32_t kTextSaveAs = 14242;
constexpr std::uint32_t kTextChooseDestination = 14245;
constexpr std::uint32_t kTextNotADestinationList = 14246;
constexpr std::uint32_t kTextPointFiles = 14247;
constexpr std::uint32_t kTextGpxFiles = 14248;
constexpr std::uint32_t kTextChoosePoints = 14249;
constexpr std::uint32_t kTextUnsaved = 14250;
constexpr std::uint32_t kTextDestinationMenu = 40240;

QString FileLabel(const std::string& file) {
    return file.empty() ? Text(kTextUnsaved) : QFileInfo(QString::fromStdString(file)).fileName();
}

QString RowText(const DestinationDraft& draft, int index) {
    return QString::fromStdString(DestinationRowText(draft, index));
}

bool SaveList(Program& program, QWidget* parent, const std::string& path) {
    if (SaveDestinationList(program.app.navigation, path)) return true;
    ShowWarning(parent, program, QString::fromStdString(PointFileNotSavedMessage(path)));
    return false;
}

// Saves the list to its file when it has one; an unsaved list stays so
// until the user saves it.
void SaveToItsFile(Program& program, QWidget* parent) {
    const std::string file = program.app.navigation.file;
    if (!file.empty()) SaveList(program, parent, file);
}

// The waypoints and POI to add, several at once.
std::vector<GeoPoint> ChoosePoints(Program& program, QWidget* parent) {
    PointCollection points;
    points.Load(program.app.runtime.waypointFile, program.app.runtime.poiFolder);
    const std::vector<PointRow> rows = points.Select(QueryAtFix(program.app));
    QDialog chooser(parent);
    chooser.setWindowTitle(Text(kTextFromPoints));
    auto* prompt = new QLabel(Text(kTextChoosePoints));
    prompt->setWordWrap(true);
    auto* list = new QListWidget;
    list->setSelectionMode(QAbstractItemView::MultiSelection);
    for (const PointRow row : rows) {
        list->addItem(new QListWidgetItem(CategoryMark(points.At(row).category),
                                          QString::fromStdString(points.At(row).name)));
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &chooser, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &chooser, &QDialog::reject);
    auto* layout = new QVBoxLayout(&chooser);
    layout->addWidget(prompt);
    layout->addWidget(list);
    layout->addWidget(buttons);
    FitDialog(chooser, parent, DialogFit::kWindowHeight);
    std::vector<GeoPoint> chosen;
    if (chooser.exec() != QDialog::Accepted) return chosen;
    for (int index = 0; index < list->count(); ++index) {
        if (list->item(index)->isSelected()) chosen.push_back(points.At(rows[index]));
    }
    return chosen;
}

class DestinationEditor : public QDialog {
  public:
    DestinationEditor(Program& program, QWidget* parent)
        : QDialog(parent), program_(program), draft_(CopyDestinations(program.app.navigation)) {
        file_ = program.app.navigation.file;
        title_ = new QLabel;
        list_ = new QListWidget;
        list_->setObjectName("destinations");
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(title_);
        layout->addWidget(list_, 1);
        layout->addLayout(Buttons());
        auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
        connect(buttons, &QDialogButtonBox::accepted, this, &DestinationEditor::Accept);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        layout->addWidget(buttons);
        connect(list_, &QListWidget::itemActivated, this, &DestinationEditor::Edit);
        Refill(draft_.current);
        FitDialog(*this, parent, DialogFit::kWindowHeight);
    }

  private:
    QGridLayout* Buttons() {
        const auto button = [this](std::uint32_t text, void (DestinationEditor::*run)()) {
            return CommandButton(this, text, run);
        };
        return ButtonGrid(
            {button(kTextUp, &DestinationEditor::Up), button(kTextDown, &DestinationEditor::Down),
             button(kTextEdit, &DestinationEditor::Edit),
             button(kTextFromPoints, &DestinationEditor::AddFromPoints),
             button(kTextHere, &DestinationEditor::AddHere),
             button(kTextRemove, &DestinationEditor::Remove),
             button(kTextSaveAs, &DestinationEditor::SaveAs),
             button(kTextExport, &DestinationEditor::Export)},
            parentWidget());
    }

    void Refill(int select) {
        setWindowTitle(Text(kTextTitle));
        title_->setText(FileLabel(file_));
        list_->clear();
        for (int index = 0; index < static_cast<int>(draft_.points.size()); ++index) {
            auto* item = new QListWidgetItem(CategoryMark(draft_.points[index].category),
                                             RowText(draft_, index));
            QFont font = item->font();
            font.setBold(index == draft_.current);
            item->setFont(font);
            list_->addItem(item);
        }
        if (select >= 0 && select < list_->count()) list_->setCurrentRow(select);
    }

    int Row() const { return list_->currentRow(); }
    int InsertAt() const { return Row() < 0 ? list_->count() : Row() + 1; }

    void Move(int step) {
        const int row = Row();
        MoveDestination(draft_, row, step);
        Refill(std::clamp(row + step, 0, list_->count() - 1));
    }
    void Up() { Move(-1); }
    void Down() { Move(+1); }

    void Edit() {
        const int row = Row();
        if (row < 0) return;
        GeoPoint point = draft_.points[row];
        if (!EditPoint(program_, this, point, true)) return;
        ReplaceDestination(draft_, row, point);
        Refill(row);
    }

    void Insert(const std::vector<GeoPoint>& points) {
        int at = InsertAt();
        for (const GeoPoint& point : points) InsertDestination(draft_, at++, point);
        Refill(at - 1);
    }

    void AddFromPoints() { Insert(ChoosePoints(program_, this)); }

    void AddHere() {
        bool haveFix = false;
        GeoPoint point = NewDestinationAtFix(program_.app, draft_, haveFix);
        if (EditPoint(program_, this, point, haveFix)) Insert({point});
    }

    void Remove() {
        const int row = Row();
        RemoveDestination(draft_, row);
        Refill(std::min(row, list_->count() - 2));
    }

    void SaveAs() {
        const QString path =
            AskDestinationFile(this, file_.empty() ? DefaultDestinationPath(program_.app) : file_);
        if (path.isEmpty()) return;
        file_ = path.toStdString();
        title_->setText(FileLabel(file_));
    }

    void Export() {
        const std::string name = QFileInfo(FileLabel(file_)).completeBaseName().toStdString();
        const QString path = ChooseFile(this, FileChoice::kSave, Text(kTextExport),
                                        program_.app.folders.destinationDir + "/" + name + ".gpx",
                                        Text(kTextGpxFiles));
        if (path.isEmpty()) return;
        if (!SaveGpxFile(path.toStdString(), RouteGpx(name, draft_.points))) {
            ShowWarning(this, program_,
                        QString::fromStdString(PointFileNotSavedMessage(path.toStdString())));
        }
    }

    void Accept() {
        ApplyDestinations(program_.app.navigation, draft_);
        if (!file_.empty() && !SaveList(program_, this, file_)) return;
        program_.host.Repaint();
        accept();
    }

    Program& program_;
    DestinationDraft draft_;
    std::string file_;
    QLabel* title_;
    QListWidget* list_;
};

}  // namespace

void EditDestinations(Program& program, QWidget* parent) {
    DestinationEditor editor(program, parent);
    editor.exec();
}

void AddDestination(Program& program, QWidget* parent) {
    bool haveFix = false;
    GeoPoint point =
        NewDestinationAtFix(program.app, CopyDestinations(program.app.navigation), haveFix);
    if (!EditPoint(program, parent, point, haveFix)) return;
    DestinationDraft draft = CopyDestinations(program.app.navigation);
    InsertDestination(draft, static_cast<int>(draft.points.size()), point);
    ApplyDestinations(program.app.navigation, draft);
    SaveToItsFile(program, parent);
    program.host.Repaint();
}

void ChooseDestination(Program& program, QWidget* parent) {
    const DestinationDraft draft = CopyDestinations(program.app.navigation);
    QStringList names;
    for (int index = 0; index < static_cast<int>(draft.points.size()); ++index) {
        names << RowText(draft, index);
    }
    bool chosen = false;
    const QString name =
        QInputDialog::getItem(parent, Text(kTextDestinationMenu), Text(kTextChooseDestination),
                              names, std::max(draft.current, 0), false, &chosen);
    if (!chosen) return;
    SelectDestination(program.app.navigation, static_cast<int>(names.indexOf(name)));
    program.host.Repaint();
}

void NewDestinations(Program& program, QWidget* parent) {
    if (!MayDropDestinationList(program)) return;
    const QString path = AskDestinationFile(parent, DefaultDestinationPath(program.app));
    if (path.isEmpty()) return;
    NewDestinationList(program.app.navigation, path.toStdString());
    if (!SaveList(program, parent, path.toStdString())) return;
    program.host.Repaint();
    EditDestinations(program, parent);
}

void OpenDestinations(Program& program, QWidget* parent) {
    if (!MayDropDestinationList(program)) return;
    const QString path = ChooseFile(parent, FileChoice::kOpen, Text(kTextTitle),
                                    program.app.folders.destinationDir, Text(kTextPointFiles));
    if (path.isEmpty()) return;
    if (!OpenDestinationFile(program.app.navigation, path.toStdString()).opened) {
        ShowWarning(parent, program, Text(kTextNotADestinationList, path.toStdString()));
    }
    program.host.Repaint();
}

QString AskDestinationFile(QWidget* parent, const std::string& suggestion) {
    return ChooseFile(parent, FileChoice::kSave, Text(kTextTitle), suggestion,
                      Text(kTextPointFiles));
}

}  // namespace tolvane::shell
