#include "core/app/gps_commands.h"

#include <utility>

#include "core/app/main_timer.h"

namespace tolvane {
namespace {

// The port of the serial port source: the port table's device, or the
// receiver a daemon owns.
std::string SerialPortName(const Options& options, const OptionsRuntime& runtime) {
    switch (runtime.daemonReceiver) {
        case DaemonReceiver::kGnssShare:
            return SocketPortName(runtime.gnssShareSocket);
        case DaemonReceiver::kModemManager:
            return kModemPortName;
        case DaemonReceiver::kNone:
            break;
    }
    return PortDeviceName(options.portIndex) + ":";
}

// Names the port to open: the port table's device for a serial or GPD
// port, the registered virtual port for a Bluetooth receiver.
bool ChoosePort(PortSource& port, const Options& options, const OptionsRuntime& runtime,
                Host& host) {
    if (options.gpsSource != kGpsSourceBluetooth) {
        port.portName = SerialPortName(options, runtime);
        return true;
    }
    if (!runtime.receiverChosen) {
        ShowLanguageMessage(host, kTextNoReceiverChosen, MessageIcon::kInformation);
        return false;
    }
    if (!RegisterBluetoothPort(port, runtime.bluetoothAddress, runtime.bluetoothChannel)) {
        ShowLanguageMessage(host, kTextBluetoothFailed, MessageIcon::kStop, PortErrorText(port));
        return false;
    }
    return true;
}

}  // namespace

void LinkPortSourceToHost(PortSource& port, Host& host) {
    port.links.timers = &host.Timers();
    port.links.clock = &host.Time();
    port.links.rmcParsed = [&host] { host.NotifyRmcParsed(); };
}

SourceReading ReadPortSource(PortSource& port) {
    SourceReading reading;
    reading.connected = IsPortOpen(port) ? 1 : 0;
    std::lock_guard<std::mutex> guard(port.lock);
    reading.snapshot = port.fixReader.Read(port.record);
    return reading;
}

void RunGpsFrom(AppState& app, std::function<SourceReading()> read) {
    app.readActiveSource = std::move(read);
    UpdateGpsState(app);
    StartFirstFix(app.instruments.firstFix, app.gps);
    app.gpsRunning = true;
}

PortStart StartGpsFromPort(AppState& app, PortSource& port, ReaderDrive drive) {
    port.talkers = TalkersFor(app.multiGnss);
    if (!OpenPort(port)) return PortStart::kOpenFailed;
    if (!StartReader(port, drive)) return PortStart::kReaderFailed;
    RunGpsFrom(app, [&port] { return ReadPortSource(port); });
    return PortStart::kStarted;
}

bool StartPortGps(AppState& app, PortSource& port, Host& host) {
    if (!ChoosePort(port, app.options, app.runtime, host)) return false;
    port.baudRate = BaudRateForIndex(app.options.baudIndex);
    switch (StartGpsFromPort(app, port, ReaderDrive::kThread)) {
        case PortStart::kStarted:
            return true;
        case PortStart::kOpenFailed:
            ShowLanguageMessage(host, kTextPortOpenFailed, MessageIcon::kInformation,
                                PortErrorText(port));
            return false;
        case PortStart::kReaderFailed:
            ShowLanguageMessage(host, kTextReaderFailed, MessageIcon::kStop, PortErrorText(port));
            return false;
    }
    return false;
}

std::uint32_t StopLostPortGps(PortSource& port, Host& host) {
    std::uint32_t shown = 0;
    switch (StopPortSource(port)) {
        case kStopReasonDisconnected:
            shown = kTextGpsDisconnected;
            break;
        case kStopReasonSilent:
            shown = kTextGpsSilent;
            break;
        default:
            break;
    }
    if (shown != 0) ShowLanguageMessage(host, shown, MessageIcon::kStop);
    std::lock_guard<std::mutex> guard(port.lock);
    ClearNmeaRecord(port.record);
    return shown;
}

}  // namespace tolvane
