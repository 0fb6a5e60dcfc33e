#include "shell/dialogs/point_manager_dialog.h"

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "core/app/destination_commands.h"
#include "core/app/point_commands.h"
#include "core/app/program.h"
#include "core/data/geo_point_file.h"
#include "core/data/gpx_writer.h"
#include "shell/dialogs/dialog_parts.h"
#include "shell/dialogs/point_editor_dialog.h"

namespace tolvane::shell {
namespace {

constexpr std::uint32_t kTextTitle = 14220;
constexpr std::uint32_t kTextAllPoints = 14221;
constexpr std::uint32_t kTextWaypoints = 14222;
constexpr std::uint32_t kTextPoi = 14223;
constexpr std::uint32_t kTextAllCategories = 14224;
constexpr std::uint32_t kTextByName = 14225;
constexpr std::uint32_t kTextByDistance = 14226;
constexpr std::uint32_t kTextSearch = 14227;
constexpr std::uint32_t kTextEdit = 14228;
constexpr std::uint32_t kTextDelete = 14229;
constexpr std::uint32_t kTextGoTo = 14230;
constexpr std::uint32_t kTextWaypointFile = 14231;
constexpr std::uint32_t kTextPoiFolder = 14232;
constexpr std::uint32_t kTextExport = 14233;
constexpr std::uint32_t kTextAskDelete = 14234;
constexpr std::uint32_t kTextAdd = 14235;
constexpr std::uint32_t kTextPointFiles = 14247;
constexpr std::uint32_t kTextGpxFiles = 14248;

// Enough to tell the entries of the filter boxes apart on a phone.
constexpr int kChoiceMinimumCharacters = 6;

// Saves a change through the collection and makes it the program's lists;
// a file that cannot be written is reported.
template <typename Change>
void SaveChange(Program& program, QWidget* parent, PointCollection& points, Change change) {
    if (!change()) {
        ShowWarning(parent, program,
                    QString::fromStdString(PointFileNotSavedMessage(points.FailedPath())));
    }
    PublishPoints(program.app, points);
    program.host.Repaint();
}

void AddPoint(Program& program, QWidget* parent, PointCollection& points, PointKind kind) {
    bool haveFix = false;
    GeoPoint point = NewPointAtFix(program.app, kind, points, haveFix);
    if (!EditPoint(program, parent, point, haveFix)) return;
    SaveChange(program, parent, points, [&] { return points.Add(kind, point); });
}

QComboBox* Choice(std::initializer_list<QString> entries) {
    auto* box = new QComboBox;
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(kChoiceMinimumCharacters);
    for (const QString& entry : entries) box->addItem(entry);
    return box;
}

class PointManager : public QDialog {
  public:
    PointManager(Program& program, QWidget* parent) : QDialog(parent), program_(program) {
        setWindowTitle(Text(kTextTitle));
        search_ = new QLineEdit;
        search_->setPlaceholderText(Text(kTextSearch));
        search_->setClearButtonEnabled(true);
        kinds_ = Choice({Text(kTextAllPoints), Text(kTextWaypoints), Text(kTextPoi)});
        categories_ = Choice({Text(kTextAllCategories)});
        for (int index = 1; index <= kPoiCategoryCount; ++index) {
            const std::string name = CategoryName(index);
            categories_->addItem(CategoryMark(name), QString::fromStdString(name));
        }
        sort_ = Choice({Text(kTextByName), Text(kTextByDistance)});
        list_ = new QTreeWidget;
        list_->setObjectName("points");
        list_->setColumnCount(2);
        list_->setHeaderHidden(true);
        list_->setRootIsDecorated(false);
        list_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
        list_->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
        list_->header()->setStretchLastSection(false);

        auto* filters = new QGridLayout;
        filters->addWidget(kinds_, 0, 0);
        filters->addWidget(sort_, 0, 1);
        filters->addWidget(categories_, 1, 0, 1, 2);
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(search_);
        layout->addLayout(filters);
        layout->addWidget(list_, 1);
        layout->addLayout(Buttons());
        auto* close = new QDialogButtonBox(QDialogButtonBox::Close);
        connect(close, &QDialogButtonBox::rejected, this, &QDialog::reject);
        layout->addWidget(close);

        connect(search_, &QLineEdit::textChanged, this, &PointManager::Refill);
        for (QComboBox* box : {kinds_, categories_, sort_}) {
            connect(box, &QComboBox::currentIndexChanged, this, &PointManager::Refill);
        }
        connect(list_, &QTreeWidget::itemActivated, this, &PointManager::Edit);
        ReloadPoints(program.app, points_);
        Refill();
        FitDialog(*this, parent, DialogFit::kWindowHeight);
    }

  private:
    QGridLayout* Buttons() {
        const auto button = [this](std::uint32_t text, void (PointManager::*run)()) {
            return CommandButton(this, text, run);
        };
        return ButtonGrid(
            {button(kTextAdd, &PointManager::Add), button(kTextEdit, &PointManager::Edit),
             button(kTextDelete, &PointManager::Delete), button(kTextGoTo, &PointManager::GoTo),
             button(kTextExport, &PointManager::Export),
             button(kTextWaypointFile, &PointManager::ChooseWaypointFile),
             button(kTextPoiFolder, &PointManager::ChoosePoiFolder)},
            parentWidget());
    }

    PointQuery Query() {
        PointQuery query = QueryAtFix(program_.app);
        query.kinds = static_cast<KindFilter>(kinds_->currentIndex());
        if (categories_->currentIndex() > 0) {
            query.category = categories_->currentText().toStdString();
        }
        query.search = search_->text().toStdString();
        query.sort = sort_->currentIndex() == 1 ? PointSort::kByDistance : PointSort::kByName;
        return query;
    }

    void Refill() {
        const PointQuery query = Query();
        rows_ = points_.Select(query);
        list_->clear();
        for (const PointRow row : rows_) {
            const GeoPoint& point = points_.At(row);
            auto* item = new QTreeWidgetItem({QString::fromStdString(point.name),
                                              QString::fromStdString(DistanceText(
                                                  query, point, program_.app.options.unitSystem))});
            item->setIcon(0, CategoryMark(point.category));
            item->setTextAlignment(1, Qt::AlignRight);
            list_->addTopLevelItem(item);
        }
        if (!rows_.empty()) list_->setCurrentItem(list_->topLevelItem(0));
    }

    bool Selected(PointRow& row) {
        const int index = list_->indexOfTopLevelItem(list_->currentItem());
        if (index < 0 || index >= static_cast<int>(rows_.size())) return false;
        row = rows_[index];
        return true;
    }

    void Add() {
        AddPoint(program_, this, points_,
                 KindToAdd(static_cast<KindFilter>(kinds_->currentIndex())));
        Refill();
    }

    void Edit() {
        PointRow row;
        if (!Selected(row)) return;
        GeoPoint point = points_.At(row);
        if (!EditPoint(program_, this, point, true)) return;
        SaveChange(program_, this, points_, [&] { return points_.Replace(row, point); });
        Refill();
    }

    void Delete() {
        PointRow row;
        if (!Selected(row) || !AskYesNo(this, program_, Text(kTextAskDelete, points_.At(row).name)))
            return;
        SaveChange(program_, this, points_, [&] { return points_.Remove(row); });
        Refill();
    }

    void GoTo() {
        PointRow row;
        if (!Selected(row) || !StartGoTo(program_, points_.At(row))) return;
        program_.host.Repaint();
        accept();
    }

    void Export() {
        const QString path =
            ChooseFile(this, FileChoice::kSave, Text(kTextExport),
                       program_.app.folders.root + "/My GPS/Points.gpx", Text(kTextGpxFiles));
        if (path.isEmpty()) return;
        std::vector<GeoPoint> shown;
        for (const PointRow row : rows_) shown.push_back(points_.At(row));
        if (!SaveGpxFile(path.toStdString(), WaypointsGpx(shown))) {
            ShowWarning(this, program_,
                        QString::fromStdString(PointFileNotSavedMessage(path.toStdString())));
        }
    }

    void ChooseWaypointFile() {
        const QString path = ChooseFile(this, FileChoice::kSaveOrPick, Text(kTextWaypointFile),
                                        program_.app.runtime.waypointFile, Text(kTextPointFiles));
        if (path.isEmpty()) return;
        ChangePointLocations(program_.app, path.toStdString(), program_.app.runtime.poiFolder);
        Reload();
    }

    void ChoosePoiFolder() {
        const QString folder = ChooseFile(this, FileChoice::kFolder, Text(kTextPoiFolder),
                                          program_.app.runtime.poiFolder, QString());
        if (folder.isEmpty()) return;
        ChangePointLocations(program_.app, program_.app.runtime.waypointFile, folder.toStdString());
        Reload();
    }

    void Reload() {
        ReloadPoints(program_.app, points_);
        program_.host.Repaint();
        Refill();
    }

    Program& program_;
    PointCollection points_;
    std::vector<PointRow> rows_;
    QLineEdit* search_;
    QComboBox* kinds_;
    QComboBox* categories_;
    QComboBox* sort_;
    QTreeWidget* list_;
};

}  // namespace

void ManagePoints(Program& program, QWidget* parent) {
    PointManager manager(program, parent);
    manager.exec();
}

void AddPointAtFix(Program& program, QWidget* parent, bool poi) {
    PointCollection points;
    ReloadPoints(program.app, points);
    AddPoint(program, parent, points, poi ? PointKind::kPoi : PointKind::kWaypoint);
}

}  // namespace tolvane::shell
