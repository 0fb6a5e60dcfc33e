#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>

#include "core/gps/serial_device.h"

namespace tolvane::platform {

// Where a port name leads. A name without a '/' is a port of the port
// folder: "COM4:" and "COM4" both give ports/COM4 in the settings folder
// (the program folder, unless installed), a symbolic link to the receiver's device that GPS Setup
// writes. Anything else is a device path and is used as it is.
std::string ResolvePortPath(const std::string& name);

// A serial line (or pseudo-terminal) through termios: raw 8N1 by default,
// XON/XOFF on, RTS/CTS off, DTR and RTS not raised.
class TermiosSerialDevice final : public SerialDevice {
  public:
    // Waits between the tries of reading the line's settings; tests pass
    // one that does not wait.
    using Sleeper = std::function<void(int milliseconds)>;

    static constexpr int kSettingsRetries = 15;
    static constexpr int kSettingsRetryMilliseconds = 1000;
    static constexpr int kReadWaitTenths = 10;

    TermiosSerialDevice();
    explicit TermiosSerialDevice(Sleeper sleep);
    ~TermiosSerialDevice() override;
    TermiosSerialDevice(const TermiosSerialDevice&) = delete;
    TermiosSerialDevice& operator=(const TermiosSerialDevice&) = delete;

    bool Open(const std::string& name) override;
    bool IsOpen() const override { return fd_ >= 0; }
    bool Configure(const SerialSettings& settings) override;
    bool SetReadTimeouts() override { return SetReadWait(kReadWaitTenths); }
    // A read waits up to tenths of a second for the first byte; GPS Setup's
    // probe waits less, so that it stops quickly.
    bool SetReadWait(int tenths);
    // Drops what has arrived and not been read, such as bytes received at
    // another baud rate.
    void DiscardInput();
    int Read(char* buffer, int size) override;
    bool IsGone() override;
    void Close() override;
    std::string FailureReason() const override { return reason_; }

  private:
    // Keeps the reason of errno; returns false.
    bool Fail();

    std::atomic<int> fd_{-1};
    std::string path_;
    std::atomic<bool> hungUp_{false};
    Sleeper sleep_;
    std::string reason_;
};

// Sets a rate that has no termios speed constant (14400 of the baud table)
// through the kernel's free-rate interface. Lives in its own file because
// the kernel's termios header clashes with the C library's.
bool SetCustomBaudRate(int fd, std::uint32_t baudRate);

}  // namespace tolvane::platform
