#pragma once

#include <QDialog>
#include <vector>

#include "core/app/gps_setup_form.h"
#include "core/app/program.h"
#include "platform/receiver_probe.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QTimer;

namespace tolvane::shell {

class BluetoothSearch;

// GPS Setup (command 40033): the source, the port with its device and baud
// rate, or the Bluetooth receiver. While it is open a probe listens to the
// chosen device and the live line says what arrives; OK writes the port's
// link and stores the choice.
class GpsSetupDialog final : public QDialog {
    Q_OBJECT

  public:
    GpsSetupDialog(Program& program, QWidget* parent);
    ~GpsSetupDialog() override;

    // Writes the port link and stores the choices; stays open with a
    // message when the link cannot be written.
    void accept() override;
    // On the search page Escape ends the search and goes back; elsewhere
    // it closes the dialog without a change.
    void reject() override;

  private:
    QWidget* MakeSettingsPage();
    QWidget* MakeGpsdPage();
    QWidget* MakePortPage();
    QWidget* MakeBluetoothPage();
    QWidget* MakeGnssSharePage();
    QWidget* MakeModemPage();
    QWidget* MakeSearchPage();
    void FillDevices();
    void ShowSource();
    void RestartProbe();
    void ShowProbe();
    void ShowGpsdState();
    void MarkFoundSources();
    void ShowShareState();
    void ShowModemState();
    void ShowReceiver();
    void StartSearch();
    void EndSearch(const QString& problem);
    void TakeFoundReceiver();
    void ShowPage(int page);
    std::string ChosenDevice() const;

    Program& program_;
    GpsSetupChoice choice_;
    std::vector<BluetoothReceiver> found_;
    platform::ReceiverProbe probe_;

    QStackedWidget* pages_ = nullptr;
    QWidget* buttons_ = nullptr;
    QPushButton* ok_ = nullptr;
    QStackedWidget* sourcePages_ = nullptr;
    QComboBox* source_ = nullptr;
    QComboBox* port_ = nullptr;
    QComboBox* device_ = nullptr;
    QComboBox* baud_ = nullptr;
    QLabel* liveLine_ = nullptr;
    QLabel* advice_ = nullptr;
    QCheckBox* multiGnss_ = nullptr;
    QLabel* gpsdState_ = nullptr;
    QLineEdit* socketPath_ = nullptr;
    QLabel* shareState_ = nullptr;
    QLabel* modemState_ = nullptr;
    QLabel* receiver_ = nullptr;
    QCheckBox* autoBluetooth_ = nullptr;
    QLabel* searchState_ = nullptr;
    QProgressBar* searchProgress_ = nullptr;
    QListWidget* foundList_ = nullptr;
    QPushButton* useFound_ = nullptr;
    BluetoothSearch* search_ = nullptr;
    QTimer* liveTimer_ = nullptr;
};

}  // namespace tolvane::shell
