#pragma once

#include <atomic>
#include <string>

#include "core/gps/serial_device.h"

namespace tolvane::platform {

// A receiver reached through a stream socket instead of a serial line. The
// line settings mean nothing on a socket and are accepted as they are; a
// read waits up to a second for the first byte, as on a serial line, and
// the far side closing the stream is the receiver gone.
class SocketDevice : public SerialDevice {
  public:
    SocketDevice() = default;
    ~SocketDevice() override { Close(); }
    SocketDevice(const SocketDevice&) = delete;
    SocketDevice& operator=(const SocketDevice&) = delete;

    bool IsOpen() const override { return fd_ >= 0; }
    bool Configure(const SerialSettings&) override { return IsOpen(); }
    bool SetReadTimeouts() override;
    int Read(char* buffer, int size) override;
    bool IsGone() override;
    void Close() override;
    std::string FailureReason() const override { return reason_; }

  protected:
    // Connects a new socket of the family and protocol to address within
    // the time limit and keeps it. False with the reason kept on failure.
    bool Connect(int family, int protocol, const void* address, unsigned addressLength,
                 int milliseconds);
    bool Fail(int error);

  private:
    std::atomic<int> fd_{-1};
    std::atomic<bool> hungUp_{false};
    std::string reason_;
};

// A Bluetooth receiver's Serial Port service through an RFCOMM socket of
// BlueZ: no bound /dev/rfcomm device and no root needed. It opens names of
// the form BluetoothPortName makes.
class RfcommSerialDevice final : public SocketDevice {
  public:
    // How long a receiver out of reach may keep the link from coming up.
    static constexpr int kConnectMilliseconds = 15000;

    bool Open(const std::string& name) override;
};

// A receiver that a daemon shares on a UNIX socket, as gnss-share does on
// Linux phones: it opens names of the form SocketPortName makes.
class UnixSocketDevice final : public SocketDevice {
  public:
    // A local daemon answers at once or not at all.
    static constexpr int kConnectMilliseconds = 2000;

    bool Open(const std::string& name) override;
};

}  // namespace tolvane::platform
