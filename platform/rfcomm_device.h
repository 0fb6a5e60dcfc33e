#pragma once

#include <atomic>
#include <string>

#include "core/gps/serial_device.h"

namespace tolvane::platform {

// A Bluetooth receiver's Serial Port service through an RFCOMM socket of
// BlueZ: no bound /dev/rfcomm device and no root needed. It opens names of
// the form BluetoothPortName makes; the line settings mean nothing on a
// socket and are accepted as they are.
class RfcommSerialDevice final : public SerialDevice {
  public:
    // How long a receiver out of reach may keep the link from coming up.
    static constexpr int kConnectMilliseconds = 15000;

    RfcommSerialDevice() = default;
    ~RfcommSerialDevice() override { Close(); }
    RfcommSerialDevice(const RfcommSerialDevice&) = delete;
    RfcommSerialDevice& operator=(const RfcommSerialDevice&) = delete;

    bool Open(const std::string& name) override;
    bool IsOpen() const override { return fd_ >= 0; }
    bool Configure(const SerialSettings&) override { return IsOpen(); }
    bool SetReadTimeouts() override;
    int Read(char* buffer, int size) override;
    bool IsGone() override;
    void Close() override;
    std::string FailureReason() const override { return reason_; }

  private:
    bool Fail(int error);

    std::atomic<int> fd_{-1};
    std::atomic<bool> hungUp_{false};
    std::string reason_;
};

}  // namespace tolvane::platform
