#include "shell/dialogs/point_editor_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "core/app/program.h"
#include "core/data/geo_point_file.h"
#include "core/data/point_entry.h"
#include "core/geo/formatting.h"
#include "shell/dialogs/dialog_parts.h"

namespace tolvane::shell {
namespace {

constexpr std::uint32_t kTextTitle = 14210;
constexpr std::uint32_t kTextName = 14211;
constexpr std::uint32_t kTextLatitude = 14212;
constexpr std::uint32_t kTextLongitude = 14213;
constexpr std::uint32_t kTextCategory = 14214;
constexpr std::uint32_t kTextSpeedLimit = 14215;
constexpr std::uint32_t kTextRange = 14216;
constexpr std::uint32_t kTextVoice = 14217;
constexpr std::uint32_t kTextComment = 14218;
constexpr std::uint32_t kTextNoFix = 14219;

constexpr int kCategoryMinimumCharacters = 8;

QLineEdit* Field(const std::string& text, int maxLength) {
    auto* field = new QLineEdit(QString::fromStdString(text));
    field->setMaxLength(maxLength);
    return field;
}

QComboBox* CategoryBox(const std::string& category) {
    auto* box = new QComboBox;
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(kCategoryMinimumCharacters);
    box->setEditable(true);  // the user's own categories are kept as typed
    box->addItem(QString());
    for (int index = 1; index <= kPoiCategoryCount; ++index) {
        const std::string name = CategoryName(index);
        box->addItem(CategoryMark(name), QString::fromStdString(name));
    }
    const int index = CategoryIndex(category);
    if (index != 0) {
        box->setCurrentIndex(index);
    } else {
        box->setEditText(QString::fromStdString(category));
    }
    return box;
}

class PointEditor : public QDialog {
  public:
    PointEditor(Program& program, QWidget* parent, const GeoPoint& point, bool positionKnown)
        : QDialog(parent), program_(program), point_(point) {
        const Options& options = program.app.options;
        const PointEntry entry = EntryFromPoint(point, options.coordinateFormat, positionKnown);
        setWindowTitle(Text(kTextTitle));
        name_ = Field(entry.name, kGeoPointNameLength - 1);
        name_->setObjectName("name");
        latitude_ = Field(entry.latitude, 40);
        latitude_->setObjectName("latitude");
        longitude_ = Field(entry.longitude, 40);
        longitude_->setObjectName("longitude");
        category_ = CategoryBox(entry.category);
        speedLimit_ = Field(entry.speedLimit, 3);
        range_ = Field(entry.proximityRange, 5);
        range_->setPlaceholderText(QString::number(options.defaultProximityRange));
        voice_ = Field(entry.voiceGuide, kGeoPointVoiceLength - 1);
        comment_ = Field(entry.comment, kGeoPointCommentLength - 1);

        // Labels go above their fields where the screen is narrow.
        auto* form = new QFormLayout;
        form->setRowWrapPolicy(IsNarrow(parent) ? QFormLayout::WrapAllRows
                                                : QFormLayout::WrapLongRows);
        form->addRow(Text(kTextName), name_);
        if (!positionKnown) AddTypePositionSwitch(*form);
        form->addRow(Text(kTextLatitude), latitude_);
        form->addRow(Text(kTextLongitude), longitude_);
        form->addRow(Text(kTextCategory), category_);
        form->addRow(Text(kTextSpeedLimit), speedLimit_);
        form->addRow(Text(kTextRange, AltitudeUnitText(options.unitSystem)), range_);
        form->addRow(Text(kTextVoice), voice_);
        form->addRow(Text(kTextComment), comment_);

        auto* fields = new QWidget;
        fields->setLayout(form);
        auto* scroll = new QScrollArea;
        scroll->setWidgetResizable(true);
        scroll->setFrameShape(QFrame::NoFrame);
        scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        scroll->setWidget(fields);
        buttons_ = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
        connect(buttons_, &QDialogButtonBox::accepted, this, &PointEditor::Accept);
        connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(scroll);
        layout->addWidget(buttons_);
        SetPositionEditable(positionKnown);
        FitDialog(*this, parent, DialogFit::kWindowHeight);
    }

    const GeoPoint& Point() const { return point_; }

  private:
    // A check box cannot wrap its text, so a narrow screen gets the text as
    // a label beside it.
    void AddTypePositionSwitch(QFormLayout& form) {
        auto* typePosition = new QCheckBox;
        typePosition->setObjectName("typePosition");
        auto* note = new QLabel(Text(kTextNoFix));
        note->setWordWrap(true);
        note->setBuddy(typePosition);
        connect(typePosition, &QCheckBox::toggled, this, &PointEditor::SetPositionEditable);
        auto* row = new QHBoxLayout;
        row->addWidget(typePosition);
        row->addWidget(note, 1);
        form.addRow(row);
    }

    void SetPositionEditable(bool editable) {
        latitude_->setEnabled(editable);
        longitude_->setEnabled(editable);
        buttons_->button(QDialogButtonBox::Ok)->setEnabled(editable);
    }

    void Accept() {
        PointEntry entry;
        entry.name = name_->text().toStdString();
        entry.latitude = latitude_->text().toStdString();
        entry.longitude = longitude_->text().toStdString();
        entry.category = category_->currentText().toStdString();
        entry.speedLimit = speedLimit_->text().toStdString();
        entry.proximityRange = range_->text().toStdString();
        entry.voiceGuide = voice_->text().toStdString();
        entry.comment = comment_->text().toStdString();
        const Options& options = program_.app.options;
        const PointEntryResult result =
            PointFromEntry(entry, point_, options.coordinateFormat, options.unitSystem);
        if (!result.accepted) {
            ShowWarning(this, program_, QString::fromStdString(result.refusal));
            return;
        }
        point_ = result.point;
        accept();
    }

    Program& program_;
    GeoPoint point_;
    QLineEdit* name_;
    QLineEdit* latitude_;
    QLineEdit* longitude_;
    QComboBox* category_;
    QLineEdit* speedLimit_;
    QLineEdit* range_;
    QLineEdit* voice_;
    QLineEdit* comment_;
    QDialogButtonBox* buttons_ = nullptr;
};

}  // namespace

bool EditPoint(Program& program, QWidget* parent, GeoPoint& point, bool positionKnown) {
    PointEditor editor(program, parent, point, positionKnown);
    if (editor.exec() != QDialog::Accepted) return false;
    point = editor.Point();
    return true;
}

}  // namespace tolvane::shell
