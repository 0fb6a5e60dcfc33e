#include "core/app/gps_commands.h"

namespace tolvane {
namespace {

// Names the port to open: the port table's device for a serial or GPD
// port, the registered virtual port for a Bluetooth receiver.
bool ChoosePort(PortSource& port, const Options& options, const OptionsRuntime& runtime,
                Host& host) {
    if (options.gpsSource != kGpsSourceBluetooth) {
        port.portName = PortDeviceName(options.portIndex) + ":";
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
    port.links.timers = &host;
    port.links.clock = &host;
    port.links.rmcParsed = [&host] { host.NotifyRmcParsed(); };
}

SourceReading ReadPortSource(PortSource& port) {
    SourceReading reading;
    reading.connected = IsPortOpen(port) ? 1 : 0;
    std::lock_guard<std::mutex> guard(port.lock);
    reading.snapshot = port.fixReader.Read(port.record);
    return reading;
}

bool StartPortGps(PortSource& port, const Options& options, const OptionsRuntime& runtime,
                  Host& host) {
    if (!ChoosePort(port, options, runtime, host)) return false;
    port.baudRate = BaudRateForIndex(options.baudIndex);
    if (!OpenPort(port)) {
        ShowLanguageMessage(host, kTextPortOpenFailed, MessageIcon::kInformation,
                            PortErrorText(port));
        return false;
    }
    if (!StartReader(port)) {
        ShowLanguageMessage(host, kTextReaderFailed, MessageIcon::kStop, PortErrorText(port));
        return false;
    }
    return true;
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
