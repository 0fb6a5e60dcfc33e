#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "core/gps/serial_device.h"

namespace tolvane {

// Why the modem's receiver cannot be read.
enum class ModemFault {
    kNone,
    kNoModemManager,  // nobody answers as ModemManager on the system bus
    kNoModem,         // ModemManager knows no modem
    kNoGnss,          // no modem has a GNSS receiver that gives NMEA
    kRefused,         // the modem would not switch its receiver on
};

// The texts of the faults.
inline constexpr std::uint32_t kTextModemNoManager = 14350;
inline constexpr std::uint32_t kTextModemNone = 14351;
inline constexpr std::uint32_t kTextModemNoGnss = 14352;
inline constexpr std::uint32_t kTextModemRefused = 14353;

std::string ModemFaultText(ModemFault fault);

// What the program needs of ModemManager's location service; the window
// reaches it over the system bus. Every call returns within a second or
// two, whatever the bus or the modem does.
class ModemLocation {
  public:
    virtual ~ModemLocation() = default;

    // Finds the first modem with a GNSS receiver and switches its NMEA
    // source on, keeping what was on before.
    virtual ModemFault Start() = 0;

    // The NMEA sentences the modem holds now, the latest of each kind; empty
    // when it has none yet. False when ModemManager or the modem went away.
    // A modem whose receiver talks on a port of its own gives what came
    // there since the last read instead (Streams() is true then).
    virtual bool ReadNmea(std::string& sentences) = 0;
    virtual bool Streams() const { return false; }

    // Switches off what Start switched on.
    virtual void Stop() = 0;
};

// The modem as the device of the port source: it opens kModemPortName and
// asks for the sentences a few times a second; those that changed pass on
// as the bytes of a serial line would, so the parser, the watchdog and the
// NMEA log treat the modem like any receiver.
class ModemSerialDevice final : public SerialDevice {
  public:
    static constexpr int kAskMilliseconds = 250;

    explicit ModemSerialDevice(ModemLocation& location) : location_(location) {}
    ~ModemSerialDevice() override { Close(); }
    ModemSerialDevice(const ModemSerialDevice&) = delete;
    ModemSerialDevice& operator=(const ModemSerialDevice&) = delete;

    bool Open(const std::string& name) override;
    bool IsOpen() const override { return open_; }
    bool Configure(const SerialSettings&) override { return open_; }
    bool SetReadTimeouts() override { return open_; }
    // Waits up to a second for sentences that changed.
    int Read(char* buffer, int size) override;
    bool IsGone() override { return gone_; }
    void Close() override;
    std::string FailureReason() const override { return reason_; }

  private:
    ModemLocation& location_;
    // The reader thread reads while the window's thread may close.
    std::atomic<bool> open_{false};
    std::atomic<bool> gone_{false};
    std::string reason_;
    std::string last_;     // the sentences last passed on
    std::string pending_;  // what the reads have still to give
};

}  // namespace tolvane
