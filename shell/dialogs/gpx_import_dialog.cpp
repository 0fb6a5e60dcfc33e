#include "shell/dialogs/gpx_import_dialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

#include "core/app/commands.h"
#include "core/app/file_import.h"
#include "core/data/geo_point_file.h"
#include "formats/point_file_reader.h"
#include "shell/dialogs/dialog_parts.h"

namespace tolvane::shell {
namespace {

constexpr int kDialogWidth = 240;

QLabel* WrappedLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    return label;
}

}  // namespace

GpxImportDialog::GpxImportDialog(const ImportContents& contents, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(Text(kCommandImport));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(WrappedLabel(Text(kTextImportPreview, ImportSummary(contents)), this));
    if (!contents.waypoints.empty()) {
        layout->addWidget(WrappedLabel(Text(kTextWaypointsGoTo), this));
        target_ = new QComboBox(this);
        target_->setObjectName("target");
        target_->addItem(Text(kTextWaypointList));
        for (int category = 1; category <= kPoiCategoryCount; ++category) {
            target_->addItem(Text(kTextPoiCategory, CategoryName(category)));
        }
        layout->addWidget(target_);
    }
    if (!contents.routes.empty() || !contents.tracks.empty()) {
        layout->addWidget(WrappedLabel(Text(kTextImportNote), this));
    }
    layout->addStretch();
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    // As wide as the narrowest screen; the labels wrap to it.
    setFixedWidth(kDialogWidth);
}

void GpxImportDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // A top-level layout does not give wrapped labels the height they need
    // at the dialog's width; it is known once the style has set the fonts.
    setMinimumHeight(layout()->totalHeightForWidth(width()));
}

int GpxImportDialog::PoiCategory() const {
    return target_ == nullptr ? kImportToWaypointList : target_->currentIndex();
}

void RunGpxImport(Program& program, QWidget* parent) {
    const std::string path =
        ChooseFile(parent, FileChoice::kOpen, Text(kCommandImport), program.app.folders.root,
                   Text(kTextGpxFileFilter), DialogFit::kCoverWindow)
            .toStdString();
    if (path.empty()) return;
    const ImportRead read = ReadWithProgress(
        parent, Text(kCommandImport),
        [&path](const ImportProgress& progress) { return ReadGpxFile(path, progress); });
    if (read.problem == ImportProblem::kCancelled) return;
    const std::string refusal = ImportRefusal(path, read);
    if (!refusal.empty()) {
        program.host.ShowMessage(refusal, program.title, MessageIcon::kStop);
        return;
    }
    GpxImportDialog preview(read.contents, parent);
    if (preview.exec() != QDialog::Accepted) return;
    const ImportOutcome outcome =
        ImportIntoProgram(program.app, read.contents, preview.PoiCategory());
    program.host.Repaint();
    if (!outcome.failedPath.empty()) {
        program.host.ShowMessage(PointFileNotSavedMessage(outcome.failedPath), program.title,
                                 MessageIcon::kStop);
        return;
    }
    program.host.ShowMessage(ImportDoneMessage(read.contents, outcome), program.title,
                             MessageIcon::kInformation);
}

}  // namespace tolvane::shell
