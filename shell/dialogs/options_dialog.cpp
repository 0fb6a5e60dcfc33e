#include "shell/dialogs/options_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>

#include "core/app/commands.h"
#include "platform/storage_locations.h"
#include "shell/dialogs/dialog_parts.h"
#include "shell/dialogs/number_edit.h"

namespace tolvane::shell {
namespace {

// A combo this many characters wide at least; longer entries (storage
// paths) are cut in the closed combo rather than widen the dialog past a
// small screen.
constexpr int kComboMinimumCharacters = 8;

QString FromUtf8(const std::string& text) {
    return QString::fromStdString(text);
}

std::string ToUtf8(const QString& text) {
    return text.toStdString();
}

// A page whose controls stand one under the other at the top; it scrolls
// when the screen is shorter than the page.
QScrollArea* NewScrollingPage(QVBoxLayout*& layout) {
    auto* content = new QWidget;
    layout = new QVBoxLayout(content);
    auto* scroll = new QScrollArea;
    scroll->setWidget(content);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    return scroll;
}

QWidget* Finish(QScrollArea* page, QVBoxLayout* layout) {
    layout->addStretch();
    return page;
}

}  // namespace

OptionsDialog::OptionsDialog(Program& program, QWidget* parent)
    : QDialog(parent), program_(program), form_(OpenOptionsForm(program.app)) {
    setWindowTitle(Text(kCommandOptions));
    auto* tabs = new QTabWidget;
    tabs->setUsesScrollButtons(true);
    tabs->addTab(GeneralPage(), Text(kTextPageGeneral));
    tabs->addTab(UnitsPage(), Text(kTextPageUnits));
    tabs->addTab(GuidancePage(), Text(kTextPageGuidance));
    tabs->addTab(GpsPage(), Text(kTextPageGps));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setText(Text(kTextOk));
    buttons->button(QDialogButtonBox::Cancel)->setText(Text(kTextCancel));
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(tabs);
    layout->addWidget(buttons);
    ShowUnitLabels();
    UpdateTestButton();
    FitDialog(*this, parent, DialogFit::kCoverWindow);
}

void OptionsDialog::accept() {
    ApplyOptionsForm(program_, form_);
    QDialog::accept();
}

QWidget* OptionsDialog::GeneralPage() {
    QVBoxLayout* layout = nullptr;
    QScrollArea* page = NewScrollingPage(layout);
    AddCheckBox(layout, "keepBacklightOn", kTextKeepBacklightOn, form_.keepBacklightOn);
    AddCheckBox(layout, "startGpsAtStartup", kTextStartGpsAtStartup, form_.startGpsAtStartup);
    AddCheckBox(layout, "loadPoiAtStartup", kTextLoadPoiAtStartup, form_.loadPoiAtStartup);
    AddStorageCombo(layout);
    AddCombo(layout, "language", kTextLanguage, OptionsCombo::kLanguage, form_.language);
    auto* sleepNote = new QLabel(Text(kTextSleepNote));
    sleepNote->setWordWrap(true);
    layout->addWidget(sleepNote);
    return Finish(page, layout);
}

QWidget* OptionsDialog::UnitsPage() {
    QVBoxLayout* layout = nullptr;
    QScrollArea* page = NewScrollingPage(layout);
    auto* group = new QGroupBox(Text(kTextUnitAndCoordinate));
    auto* groupLayout = new QVBoxLayout(group);
    QComboBox* units =
        NewCombo("unitSystem", OptionsComboEntries(OptionsCombo::kUnitSystem), form_.unitSystem);
    connect(units, &QComboBox::currentIndexChanged, this, [this](int index) {
        form_.unitSystem = index;
        ShowUnitLabels();
    });
    groupLayout->addWidget(units);
    QComboBox* coordinates =
        NewCombo("coordinateFormat", OptionsComboEntries(OptionsCombo::kCoordinateFormat),
                 form_.coordinateFormat);
    connect(coordinates, &QComboBox::currentIndexChanged, this,
            [this](int index) { form_.coordinateFormat = index; });
    groupLayout->addWidget(coordinates);
    layout->addWidget(group);
    AddNumberEdit(layout, NewDecimalEdit(kMinimumSpeedFieldLength, this), "minimumSpeed",
                  kTextMinimumSpeed, form_.minimumSpeed, speedUnit_);
    AddCombo(layout, "trackLogFormat", kTextTrackLogFormat, OptionsCombo::kTrackLogFormat,
             form_.trackLogFormat);
    return Finish(page, layout);
}

QWidget* OptionsDialog::GuidancePage() {
    QVBoxLayout* layout = nullptr;
    QScrollArea* page = NewScrollingPage(layout);
    AddNumberEdit(layout, NewDigitsEdit(kProximityRangeFieldLength, this), "proximityRange",
                  kTextDefaultProximityRange, form_.proximityRange, rangeUnit_);
    AddCheckBox(layout, "alwaysUseDefaultRange", kTextAlwaysUseDefaultRange,
                form_.alwaysUseDefaultRange);
    QComboBox* engine = AddCombo(layout, "voiceEngine", kTextVoiceEngine,
                                 OptionsCombo::kVoiceEngine, form_.voiceEngine);
    connect(engine, &QComboBox::currentIndexChanged, this, &OptionsDialog::UpdateTestButton);
    AddVoiceTest(layout);
    return Finish(page, layout);
}

QWidget* OptionsDialog::GpsPage() {
    QVBoxLayout* layout = nullptr;
    QScrollArea* page = NewScrollingPage(layout);
    AddCheckBox(layout, "autoBluetooth", kTextAutoBluetooth, form_.autoBluetooth);
    AddCombo(layout, "dataProcessor", kTextDataProcessor, OptionsCombo::kDataProcessor,
             form_.dataProcessor);
    auto* group = new QGroupBox(Text(kTextNmeaLogger));
    auto* groupLayout = new QVBoxLayout(group);
    AddCheckBox(groupLayout, "logNmea", kTextLogNmea, form_.logNmea);
    layout->addWidget(group);
    return Finish(page, layout);
}

QCheckBox* OptionsDialog::AddCheckBox(QVBoxLayout* page, const char* name, std::uint32_t textId,
                                      bool& field) {
    auto* box = new QCheckBox(Text(textId));
    box->setObjectName(QLatin1String(name));
    box->setChecked(field);
    connect(box, &QCheckBox::toggled, this, [&field](bool checked) { field = checked; });
    page->addWidget(box);
    return box;
}

QComboBox* OptionsDialog::NewCombo(const char* name, const std::vector<std::string>& entries,
                                   int current) {
    auto* combo = new QComboBox;
    combo->setObjectName(QLatin1String(name));
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(kComboMinimumCharacters);
    for (const std::string& entry : entries) combo->addItem(FromUtf8(entry));
    combo->setCurrentIndex(current);
    return combo;
}

QComboBox* OptionsDialog::AddCombo(QVBoxLayout* page, const char* name, std::uint32_t labelId,
                                   OptionsCombo combo, int& field) {
    QComboBox* box = NewCombo(name, OptionsComboEntries(combo), field);
    // The signal is joined after the current entry is shown, so a stored
    // index that no entry has stays as it is unless the user chooses.
    connect(box, &QComboBox::currentIndexChanged, this, [&field](int index) { field = index; });
    auto* label = new QLabel(Text(labelId));
    label->setBuddy(box);
    page->addWidget(label);
    page->addWidget(box);
    return box;
}

QLineEdit* OptionsDialog::AddNumberEdit(QVBoxLayout* page, QLineEdit* edit, const char* name,
                                        std::uint32_t labelId, std::string& field,
                                        QLabel*& unitLabel) {
    edit->setObjectName(QLatin1String(name));
    edit->setText(FromUtf8(field));
    connect(edit, &QLineEdit::textEdited, this,
            [&field](const QString& text) { field = ToUtf8(text); });
    auto* label = new QLabel(Text(labelId));
    label->setBuddy(edit);
    unitLabel = new QLabel;
    unitLabel->setObjectName(QLatin1String(name) + QLatin1String("Unit"));
    auto* row = new QHBoxLayout;
    row->addWidget(edit, 1);
    row->addWidget(unitLabel);
    page->addWidget(label);
    page->addLayout(row);
    return edit;
}

void OptionsDialog::AddStorageCombo(QVBoxLayout* page) {
    const std::vector<std::string> choices = StorageChoices(
        platform::StorageLocations(program_.files.documentsFolder), form_.storageLocation);
    QComboBox* combo =
        NewCombo("storageLocation", choices, StorageChoiceIndex(choices, form_.storageLocation));
    connect(combo, &QComboBox::currentTextChanged, this,
            [this](const QString& text) { form_.storageLocation = ToUtf8(text); });
    auto* label = new QLabel(Text(kTextStorageLocation));
    label->setBuddy(combo);
    page->addWidget(label);
    page->addWidget(combo);
}

void OptionsDialog::AddVoiceTest(QVBoxLayout* page) {
    auto* sentence = new QLineEdit;
    sentence->setObjectName(QStringLiteral("testSentence"));
    sentence->setMaxLength(static_cast<int>(kVoiceTestFieldLength));
    sentence->setText(FromUtf8(form_.testSentence));
    sentence->setCursorPosition(0);
    testButton_ = new QPushButton(Text(kTextVoiceTest));
    testButton_->setObjectName(QStringLiteral("test"));
    testButton_->setAutoDefault(false);
    connect(sentence, &QLineEdit::textEdited, this, [this](const QString& text) {
        form_.testSentence = ToUtf8(text);
        UpdateTestButton();
    });
    connect(testButton_, &QPushButton::clicked, this, [this] { TestVoice(program_, form_); });
    auto* row = new QHBoxLayout;
    row->addWidget(sentence, 1);
    row->addWidget(testButton_);
    page->addLayout(row);
}

void OptionsDialog::ShowUnitLabels() {
    const UnitLabels labels = OptionsUnitLabels(form_.unitSystem);
    speedUnit_->setText(FromUtf8(labels.speed));
    rangeUnit_->setText(FromUtf8(labels.range));
}

void OptionsDialog::UpdateTestButton() {
    testButton_->setEnabled(CanTestVoice(program_, form_));
}

}  // namespace tolvane::shell
