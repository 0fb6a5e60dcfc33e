#include "shell/first_start_search.h"

#include <QMetaObject>
#include <chrono>
#include <utility>
#include <vector>

#include "core/gps/daemon_ports.h"
#include "core/gps/modem_device.h"
#include "core/gps/nmea_listener.h"
#include "platform/receiver_probe.h"
#include "platform/receiver_setup.h"
#include "platform/socket_device.h"
#include "shell/dialogs/modem_manager.h"

namespace tolvane::shell {
namespace {

// How long a daemon's receiver may take to say something.
constexpr auto kListenTime = std::chrono::seconds(3);

// Whether the device, opened, gives checked NMEA text within the listening
// time.
bool GivesNmea(SerialDevice& device, const std::string& name) {
    if (!device.Open(name) || !device.SetReadTimeouts()) return false;
    NmeaListener listener;
    const auto until = std::chrono::steady_clock::now() + kListenTime;
    char buffer[512];
    while (listener.Summary().sentences == 0 && std::chrono::steady_clock::now() < until) {
        const int count = device.Read(buffer, sizeof buffer);
        if (count < 0 || device.IsGone()) break;
        listener.Feed(buffer, count, platform::ReceiverProbe::Now());
    }
    device.Close();
    return listener.Summary().sentences > 0;
}

class MachineProbes final : public ReceiverProbes {
  public:
    bool SocketGivesNmea(const std::string& path) override {
        platform::UnixSocketDevice socket;
        return GivesNmea(socket, SocketPortName(path));
    }

    bool ModemGivesNmea(std::string& modem) override {
        const GnssModem found = FindGnssModem();
        if (found.fault != ModemFault::kNone) return false;
        ModemManagerLocation location;
        ModemSerialDevice device(location);
        modem = found.path.toStdString();
        return GivesNmea(device, kModemPortName);
    }

    bool GpsdAnswers(std::string& address) override {
        address = platform::GpsdAddressText();
        return platform::GpsdAnswers();
    }

    bool LoneUsbReceiverGivesNmea(std::string& device, int& baudIndex) override {
        std::vector<platform::SerialPortEntry> receivers;
        for (const platform::SerialPortEntry& entry : platform::ListSerialPorts()) {
            if (platform::IsUsbSerialPort(entry)) receivers.push_back(entry);
        }
        if (receivers.size() != 1) return false;
        platform::ReceiverProbe probe;
        probe.Start(receivers[0].path, 0);
        ProbeStatus status = probe.Status();
        // "Auto" tries every rate of the table in turn until one speaks.
        while (!status.exhausted && status.problem.fault == DeviceFault::kNone &&
               FoundBaudIndex(status) < 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
            status = probe.Status();
        }
        baudIndex = FoundBaudIndex(status);
        device = receivers[0].path;
        return baudIndex >= 0;
    }
};

}  // namespace

FirstStartSearch::~FirstStartSearch() {
    if (worker_.joinable()) worker_.join();
}

void FirstStartSearch::Start(const std::string& gnssShareSocket, QObject* context,
                             std::function<void(const FoundReceiver&)> done) {
    if (worker_.joinable()) return;
    worker_ = std::thread([gnssShareSocket, context, done = std::move(done)] {
        MachineProbes probes;
        const FoundReceiver found = FindReceiver(probes, gnssShareSocket);
        QMetaObject::invokeMethod(context, [done, found] { done(found); }, Qt::QueuedConnection);
    });
}

}  // namespace tolvane::shell
