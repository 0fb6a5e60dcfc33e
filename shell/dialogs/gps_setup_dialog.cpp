#include "shell/dialogs/gps_setup_dialog.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <functional>
#include <thread>
#include <vector>

#include "core/app/commands.h"
#include "core/app/gid_commands.h"
#include "core/app/gps_commands.h"
#include "core/gps/port_source.h"
#include "platform/receiver_setup.h"
#include "platform/socket_device.h"
#include "shell/dialogs/bluetooth_search.h"
#include "shell/dialogs/dialog_parts.h"
#include "shell/dialogs/modem_manager.h"

namespace tolvane::shell {
namespace {

constexpr int kLiveLineMilliseconds = 500;
constexpr int kSettingsPage = 0;
constexpr int kSearchPage = 1;

// A menu text without its key hint: "GPS Setup\t[*]" is "GPS Setup".
QString MenuTitle(std::uint32_t id) {
    return Text(id).section('\t', 0, 0);
}

// A combo box that may be narrower than its longest item, as a small screen
// needs.
QComboBox* NarrowComboBox() {
    auto* box = new QComboBox;
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(6);
    return box;
}

QLabel* WrappedLabel(const QString& text = {}) {
    auto* label = new QLabel(text);
    label->setWordWrap(true);
    return label;
}

// The property of a label that counts the questions ShowLater asked for it.
constexpr char kQuestion[] = "question";

// Shows in label what the work finds out, on a thread of its own: asking a
// daemon may take a second or two, and the dialog may close meanwhile. Only
// the answer to the label's latest question is shown.
void ShowLater(QLabel* label, std::function<std::string()> work) {
    const int question = label->property(kQuestion).toInt() + 1;
    label->setProperty(kQuestion, question);
    QPointer<QLabel> shown = label;
    std::thread([shown, question, work = std::move(work)] {
        const std::string text = work();
        QMetaObject::invokeMethod(
            qApp,
            [shown, question, text] {
                if (shown && shown->property(kQuestion).toInt() == question) {
                    shown->setText(QString::fromStdString(text));
                }
            },
            Qt::QueuedConnection);
    }).detach();
}

// The layout of a page, edge to edge: the dialog's own margins suffice.
QVBoxLayout* PageLayout(QWidget* page) {
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    return layout;
}

}  // namespace

GpsSetupDialog::GpsSetupDialog(Program& program, QWidget* parent)
    : QDialog(parent), program_(program), choice_(CurrentGpsSetup(program.app)) {
    setWindowTitle(MenuTitle(kCommandGpsSetup));
    pages_ = new QStackedWidget;
    auto* scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    // The labels wrap to the width instead: no sideways scrolling on a phone.
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidget(MakeSettingsPage());
    pages_->addWidget(scroll);
    pages_->addWidget(MakeSearchPage());
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(pages_);
    layout->addWidget(buttons);
    buttons_ = buttons;
    ok_ = buttons->button(QDialogButtonBox::Ok);

    FitDialog(*this, parent, DialogFit::kComfortable);

    liveTimer_ = new QTimer(this);
    connect(liveTimer_, &QTimer::timeout, this, &GpsSetupDialog::ShowProbe);
    liveTimer_->start(kLiveLineMilliseconds);
    ShowSource();
}

GpsSetupDialog::~GpsSetupDialog() {
    probe_.Stop();
}

QWidget* GpsSetupDialog::MakeSettingsPage() {
    auto* page = new QWidget;
    QVBoxLayout* layout = PageLayout(page);
    source_ = NarrowComboBox();
    source_->setObjectName("source");
    for (int source = 0; source < kSetupSourceCount; ++source) {
        source_->addItem(QString::fromStdString(ListedSourceText(source, false)));
    }
    MarkFoundSources();
    source_->setCurrentIndex(ShownGpsSource(choice_.source));
    auto* form = new QFormLayout;
    form->addRow(Text(kTextSetupSource), source_);
    layout->addLayout(form);
    sourcePages_ = new QStackedWidget;
    sourcePages_->addWidget(MakeGpsdPage());
    sourcePages_->addWidget(MakePortPage());
    sourcePages_->addWidget(MakeBluetoothPage());
    sourcePages_->addWidget(MakeGnssSharePage());
    sourcePages_->addWidget(MakeModemPage());
    layout->addWidget(sourcePages_);
    layout->addStretch();
    connect(source_, &QComboBox::currentIndexChanged, this, &GpsSetupDialog::ShowSource);
    return page;
}

QWidget* GpsSetupDialog::MakeGpsdPage() {
    auto* page = new QWidget;
    QVBoxLayout* layout = PageLayout(page);
    layout->addWidget(WrappedLabel(Text(kTextSetupGpsdHelp)));
    gpsdState_ = WrappedLabel();
    layout->addWidget(gpsdState_);
    layout->addStretch();
    return page;
}

QWidget* GpsSetupDialog::MakeGnssSharePage() {
    auto* page = new QWidget;
    QVBoxLayout* layout = PageLayout(page);
    layout->addWidget(WrappedLabel(Text(kTextSetupGnssShareHelp)));
    socketPath_ = new QLineEdit(QString::fromStdString(choice_.gnssShareSocket));
    socketPath_->setObjectName("socketPath");
    auto* form = new QFormLayout;
    form->addRow(Text(kTextSetupSocket), socketPath_);
    layout->addLayout(form);
    shareState_ = WrappedLabel();
    shareState_->setObjectName("shareState");
    layout->addWidget(shareState_);
    layout->addStretch();
    connect(socketPath_, &QLineEdit::editingFinished, this, &GpsSetupDialog::ShowShareState);
    return page;
}

QWidget* GpsSetupDialog::MakeModemPage() {
    auto* page = new QWidget;
    QVBoxLayout* layout = PageLayout(page);
    layout->addWidget(WrappedLabel(Text(kTextSetupModemHelp)));
    modemState_ = WrappedLabel();
    modemState_->setObjectName("modemState");
    layout->addWidget(modemState_);
    layout->addStretch();
    return page;
}

QWidget* GpsSetupDialog::MakePortPage() {
    auto* page = new QWidget;
    auto* form = new QFormLayout(page);
    form->setContentsMargins(0, 0, 0, 0);
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    port_ = NarrowComboBox();
    for (int index = 0; index < kPortCount; ++index) {
        port_->addItem(QString::fromStdString(PortDeviceName(index)));
    }
    port_->setCurrentIndex(
        choice_.portIndex >= 0 && choice_.portIndex < kPortCount ? choice_.portIndex : 0);
    device_ = NarrowComboBox();
    device_->setObjectName("device");
    device_->setEditable(true);
    device_->setInsertPolicy(QComboBox::NoInsert);
    baud_ = NarrowComboBox();
    baud_->addItem(Text(kTextSetupAuto), kAutoBaudIndex);
    for (int index = 0; index < kBaudCount; ++index) {
        baud_->addItem(QString::number(BaudRateForIndex(index)), index);
    }
    form->addRow(Text(kTextSetupPort), port_);
    form->addRow(Text(kTextSetupDevice), device_);
    form->addRow(Text(kTextSetupBaud), baud_);
    auto* autoHelp = WrappedLabel(Text(kTextSetupAutoHelp));
    autoHelp->setStyleSheet("font-size: small");
    form->addRow(autoHelp);
    liveLine_ = WrappedLabel();
    liveLine_->setObjectName("liveLine");
    form->addRow(liveLine_);
    advice_ = WrappedLabel();
    form->addRow(advice_);
    multiGnss_ = new QCheckBox(Text(kTextSetupMultiGnss));
    multiGnss_->setChecked(choice_.multiGnss);
    form->addRow(multiGnss_);
    FillDevices();
    connect(port_, &QComboBox::currentIndexChanged, this, &GpsSetupDialog::FillDevices);
    connect(device_, &QComboBox::activated, this, &GpsSetupDialog::RestartProbe);
    connect(device_->lineEdit(), &QLineEdit::editingFinished, this, &GpsSetupDialog::RestartProbe);
    connect(baud_, &QComboBox::currentIndexChanged, this, &GpsSetupDialog::RestartProbe);
    connect(multiGnss_, &QCheckBox::toggled, this, &GpsSetupDialog::ShowProbe);
    return page;
}

QWidget* GpsSetupDialog::MakeBluetoothPage() {
    auto* page = new QWidget;
    QVBoxLayout* layout = PageLayout(page);
    receiver_ = WrappedLabel();
    auto* search = new QPushButton(Text(kTextSetupSearch));
    autoBluetooth_ = new QCheckBox(Text(kTextSetupAutoBluetooth));
    autoBluetooth_->setChecked(choice_.autoBluetooth);
    layout->addWidget(receiver_);
    layout->addWidget(search);
    layout->addWidget(autoBluetooth_);
    layout->addStretch();
    connect(search, &QPushButton::clicked, this, &GpsSetupDialog::StartSearch);
    ShowReceiver();
    return page;
}

QWidget* GpsSetupDialog::MakeSearchPage() {
    auto* page = new QWidget;
    QVBoxLayout* layout = PageLayout(page);
    auto* title = new QLabel(Text(kTextSearchTitle));
    title->setStyleSheet("font-weight: bold");
    searchState_ = WrappedLabel();
    searchProgress_ = new QProgressBar;
    searchProgress_->setTextVisible(false);
    foundList_ = new QListWidget;
    useFound_ = new QPushButton(Text(kTextSearchUse));
    auto* cancel = new QPushButton(Text(kTextSearchCancel));
    auto* row = new QHBoxLayout;
    row->addWidget(useFound_);
    row->addWidget(cancel);
    for (QWidget* widget :
         {static_cast<QWidget*>(title), static_cast<QWidget*>(searchState_),
          static_cast<QWidget*>(searchProgress_), static_cast<QWidget*>(foundList_)}) {
        layout->addWidget(widget);
    }
    layout->addLayout(row);
    search_ = new BluetoothSearch(this);
    connect(search_, &BluetoothSearch::Found, this,
            [this](const QString& name, quint64 address, int channel) {
                AddFoundReceiver(found_, {name.toStdString(), address, channel});
                foundList_->clear();
                for (const BluetoothReceiver& receiver : found_) {
                    foundList_->addItem(
                        QString::fromStdString(ReceiverText(receiver.name, receiver.address)));
                }
                if (foundList_->currentRow() < 0) foundList_->setCurrentRow(0);
            });
    connect(search_, &BluetoothSearch::Finished, this, &GpsSetupDialog::EndSearch);
    connect(useFound_, &QPushButton::clicked, this, &GpsSetupDialog::TakeFoundReceiver);
    connect(foundList_, &QListWidget::itemActivated, this, &GpsSetupDialog::TakeFoundReceiver);
    connect(cancel, &QPushButton::clicked, this, &GpsSetupDialog::reject);
    return page;
}

void GpsSetupDialog::FillDevices() {
    const std::string linked = platform::ReadPortLink(PortDeviceName(port_->currentIndex()));
    const QSignalBlocker blocker(device_);
    device_->clear();
    for (const platform::SerialPortEntry& entry : platform::ListSerialPorts()) {
        device_->addItem(QString::fromStdString(entry.label), QString::fromStdString(entry.path));
    }
    const int known = device_->findData(QString::fromStdString(linked));
    if (!linked.empty() && known < 0) {
        device_->insertItem(0, QString::fromStdString(linked), QString::fromStdString(linked));
    }
    device_->setCurrentIndex(std::max(0, device_->findData(QString::fromStdString(linked))));
    const QSignalBlocker baudBlocker(baud_);
    baud_->setCurrentIndex(std::max(0, baud_->findData(ShownBaudIndex(linked, choice_.baudIndex))));
    RestartProbe();
}

std::string GpsSetupDialog::ChosenDevice() const {
    const int index = device_->currentIndex();
    if (index >= 0 && device_->itemText(index) == device_->currentText()) {
        return device_->itemData(index).toString().toStdString();
    }
    return device_->currentText().trimmed().toStdString();
}

void GpsSetupDialog::ShowSource() {
    const int source = source_->currentIndex();
    sourcePages_->setCurrentIndex(source);
    const SourceActions actions = ActionsOfSource(source);
    if (actions.probesDevice) {
        RestartProbe();
    } else {
        probe_.Stop();
    }
    if (actions.asksGpsd) ShowGpsdState();
    if (actions.asksSocket) ShowShareState();
    if (actions.asksModem) ShowModemState();
}

void GpsSetupDialog::RestartProbe() {
    if (source_ == nullptr || !ActionsOfSource(source_->currentIndex()).probesDevice) return;
    const std::string device = ChosenDevice();
    if (device.empty()) {
        probe_.Stop();
        liveLine_->clear();
        return;
    }
    probe_.Start(device, ProbeBaudRate(baud_->currentData().toInt()));
    ShowProbe();
}

void GpsSetupDialog::ShowProbe() {
    if (!ActionsOfSource(source_->currentIndex()).probesDevice || ChosenDevice().empty()) return;
    const ProbeStatus status = probe_.Status();
    liveLine_->setText(
        QString::fromStdString(ProbeLineText(status, platform::ReceiverProbe::Now())));
    const std::string advice = OtherGnssAdvice(status.summary, multiGnss_->isChecked());
    advice_->setText(QString::fromStdString(advice));
    advice_->setVisible(!advice.empty());
}

// Whether gpsd answers is asked on a thread of its own: a gpsd on another
// machine may take a second to refuse.
void GpsSetupDialog::ShowGpsdState() {
    ShowLater(gpsdState_,
              [] { return GpsdStateText(platform::GpsdAnswers(), platform::GpsdAddressText()); });
}

// Which sources the machine offers is found out on a thread of its own and
// marked in the list when known.
void GpsSetupDialog::MarkFoundSources() {
    QPointer<QComboBox> list = source_;
    const std::string socketPath = choice_.gnssShareSocket;
    std::thread([list, socketPath] {
        bool found[kSetupSourceCount] = {};
        found[kGpsSourceGid] = platform::GpsdAnswers();
        for (const platform::SerialPortEntry& entry : platform::ListSerialPorts()) {
            found[kGpsSourcePort] = found[kGpsSourcePort] || platform::IsUsbSerialPort(entry);
        }
        found[kGpsSourceBluetooth] = platform::BluetoothAdapterPresent();
        platform::UnixSocketDevice socket;
        found[kSetupSourceGnssShare] = socket.Open(SocketPortName(socketPath));
        found[kSetupSourceModemManager] = FindGnssModem().fault == ModemFault::kNone;
        std::vector<QString> texts;
        for (int source = 0; source < kSetupSourceCount; ++source) {
            texts.push_back(QString::fromStdString(ListedSourceText(source, found[source])));
        }
        QMetaObject::invokeMethod(
            qApp,
            [list, texts] {
                if (!list) return;
                for (int source = 0; source < kSetupSourceCount; ++source) {
                    list->setItemText(source, texts[static_cast<std::size_t>(source)]);
                }
            },
            Qt::QueuedConnection);
    }).detach();
}

void GpsSetupDialog::ShowShareState() {
    const std::string path = socketPath_->text().trimmed().toStdString();
    ShowLater(shareState_, [path] {
        platform::UnixSocketDevice socket;
        const bool answers = socket.Open(SocketPortName(path));
        return GnssShareStateText(answers, path, socket.FailureReason());
    });
}

void GpsSetupDialog::ShowModemState() {
    modemState_->setText(Text(kTextModemLooking));
    ShowLater(modemState_, [] {
        const GnssModem modem = FindGnssModem();
        return ModemStateText(modem.fault, modem.path.toStdString());
    });
}

void GpsSetupDialog::ShowReceiver() {
    receiver_->setText(
        QString::fromStdString(ReceiverText(choice_.bluetoothName, choice_.bluetoothAddress)));
}

void GpsSetupDialog::StartSearch() {
    found_.clear();
    foundList_->clear();
    useFound_->setEnabled(false);
    searchState_->setText(Text(kTextSearching));
    searchProgress_->setRange(0, 0);
    ShowPage(kSearchPage);
    search_->Start();
}

void GpsSetupDialog::EndSearch(const QString& problem) {
    searchProgress_->setRange(0, 1);
    searchProgress_->setValue(1);
    useFound_->setEnabled(!found_.empty());
    searchState_->setText(
        QString::fromStdString(SearchEndText(problem.toStdString(), found_.size())));
}

void GpsSetupDialog::TakeFoundReceiver() {
    const int row = foundList_->currentRow();
    if (row < 0 || row >= static_cast<int>(found_.size())) return;
    search_->Cancel();
    choice_.bluetoothName = found_[static_cast<std::size_t>(row)].name;
    choice_.bluetoothAddress = found_[static_cast<std::size_t>(row)].address;
    choice_.bluetoothChannel = found_[static_cast<std::size_t>(row)].channel;
    ShowReceiver();
    ShowPage(kSettingsPage);
}

void GpsSetupDialog::ShowPage(int page) {
    pages_->setCurrentIndex(page);
    buttons_->setVisible(page == kSettingsPage);
    // Enter takes the found receiver on the search page and is OK elsewhere.
    useFound_->setDefault(page == kSearchPage);
    ok_->setDefault(page == kSettingsPage);
}

void GpsSetupDialog::reject() {
    if (pages_->currentIndex() != kSearchPage) return QDialog::reject();
    search_->Cancel();
    ShowPage(kSettingsPage);
}

void GpsSetupDialog::accept() {
    if (pages_->currentIndex() == kSearchPage) return TakeFoundReceiver();
    choice_.source = source_->currentIndex();
    choice_.autoBluetooth = autoBluetooth_->isChecked();
    choice_.multiGnss = multiGnss_->isChecked();
    choice_.gnssShareSocket = socketPath_->text().trimmed().toStdString();
    int foundBaudIndex = -1;
    if (choice_.source == kGpsSourcePort) {
        choice_.portIndex = port_->currentIndex();
        choice_.baudIndex = baud_->currentData().toInt();
        foundBaudIndex = FoundBaudIndex(probe_.Status());
        const std::string device = ChosenDevice();
        const std::string portName = PortDeviceName(choice_.portIndex);
        std::string reason;
        if (!device.empty() && !platform::WritePortLink(portName, device, reason)) {
            ShowWarning(this, program_,
                        QString::fromStdString(LinkNotWrittenText(portName, device, reason)));
            return;
        }
    }
    // The port is left free for Start GPS.
    probe_.Stop();
    ApplyGpsSetup(program_, choice_, foundBaudIndex);
    QDialog::accept();
}

}  // namespace tolvane::shell
