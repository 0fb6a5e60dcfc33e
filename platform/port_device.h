#pragma once

#include "core/gps/serial_device.h"
#include "platform/serial_device.h"
#include "platform/socket_device.h"

namespace tolvane::platform {

// The device behind the program's port names: a Bluetooth link name opens
// an RFCOMM socket, a socket name a UNIX socket, the modem's name the modem
// device, every other name a serial line or pseudo-terminal.
class PortDevice final : public SerialDevice {
  public:
    // The device that opens kModemPortName, which the window makes over the
    // system bus; without one that name opens nothing.
    void SetModemDevice(SerialDevice* modem) { modem_ = modem; }

    bool Open(const std::string& name) override;
    bool IsOpen() const override { return active_->IsOpen(); }
    bool Configure(const SerialSettings& settings) override { return active_->Configure(settings); }
    bool SetReadTimeouts() override { return active_->SetReadTimeouts(); }
    int Read(char* buffer, int size) override { return active_->Read(buffer, size); }
    bool IsGone() override { return active_->IsGone(); }
    void Close() override { active_->Close(); }
    std::string FailureReason() const override { return active_->FailureReason(); }

  private:
    TermiosSerialDevice serial_;
    RfcommSerialDevice bluetooth_;
    UnixSocketDevice socket_;
    SerialDevice* modem_ = nullptr;
    SerialDevice* active_ = &serial_;
};

}  // namespace tolvane::platform
