#include "platform/port_device.h"

#include "core/gps/bluetooth_port.h"
#include "core/gps/daemon_ports.h"

namespace tolvane::platform {

bool PortDevice::Open(const std::string& name) {
    active_->Close();
    if (name.rfind(kBluetoothPortPrefix, 0) == 0) {
        active_ = &bluetooth_;
    } else if (name.rfind(kSocketPortPrefix, 0) == 0) {
        active_ = &socket_;
    } else if (name == kModemPortName && modem_ != nullptr) {
        active_ = modem_;
    } else {
        active_ = &serial_;
    }
    return active_->Open(name);
}

}  // namespace tolvane::platform
