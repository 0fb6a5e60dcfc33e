#include "platform/port_device.h"

#include "core/gps/bluetooth_port.h"

namespace tolvane::platform {

bool PortDevice::Open(const std::string& name) {
    active_->Close();
    const bool bluetooth = name.rfind(kBluetoothPortPrefix, 0) == 0;
    active_ = bluetooth ? static_cast<SerialDevice*>(&bluetooth_) : &serial_;
    return active_->Open(name);
}

}  // namespace tolvane::platform
