#pragma once

#include <QDialog>

#include "core/app/options_form.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace tolvane::shell {

// "Options": the settings without a menu entry of their own, on four tab
// pages that scroll where a small screen needs it. The controls edit a form
// of the core; OK hands it to the core, Cancel (or Escape) drops it.
class OptionsDialog : public QDialog {
    Q_OBJECT

  public:
    OptionsDialog(Program& program, QWidget* parent);

    void accept() override;

  private:
    QWidget* GeneralPage();
    QWidget* UnitsPage();
    QWidget* GuidancePage();
    QWidget* GpsPage();

    QCheckBox* AddCheckBox(QVBoxLayout* page, const char* name, std::uint32_t textId, bool& field);
    QComboBox* AddCombo(QVBoxLayout* page, const char* name, std::uint32_t labelId,
                        OptionsCombo combo, int& field);
    QComboBox* NewCombo(const char* name, const std::vector<std::string>& entries, int current);
    QLineEdit* AddNumberEdit(QVBoxLayout* page, QLineEdit* edit, const char* name,
                             std::uint32_t labelId, std::string& field, QLabel*& unitLabel);
    void AddStorageCombo(QVBoxLayout* page);
    void AddVoiceTest(QVBoxLayout* page);

    void ShowUnitLabels();
    void UpdateTestButton();

    Program& program_;
    OptionsForm form_;
    QLabel* speedUnit_ = nullptr;
    QLabel* rangeUnit_ = nullptr;
    QPushButton* testButton_ = nullptr;
};

}  // namespace tolvane::shell
