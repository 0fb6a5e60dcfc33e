#pragma once

#include <cstdint>
#include <string>

namespace tolvane {

// How the port source wants the line set up. The codes are those the
// settings record and the port tables use: parity 0 none, 1 odd, 2 even;
// stopBits 0 one, 1 one and a half, 2 two.
struct SerialSettings {
    std::uint32_t baudRate = 38400;
    std::uint8_t byteSize = 8;
    std::uint8_t parity = 0;
    std::uint8_t stopBits = 0;
};

// The stream device a receiver is reached through. The port source opens,
// configures and reads it; the platform's serial device implements it over
// the operating system and the replay over a recording.
class SerialDevice {
  public:
    virtual ~SerialDevice() = default;

    // Opens a port name of the port table ("COM4:", "GPD1") or a device path
    // for reading and writing. False when it cannot be opened.
    virtual bool Open(const std::string& name) = 0;
    virtual bool IsOpen() const = 0;

    // Applies the baud rate, character format and software flow control,
    // leaving every other setting of the line as it was.
    virtual bool Configure(const SerialSettings& settings) = 0;

    // A read returns at once with whatever has arrived, or waits up to one
    // second for the first byte.
    virtual bool SetReadTimeouts() = 0;

    // Reads up to size bytes: the count read, 0 when nothing came, -1 when
    // the read failed.
    virtual int Read(char* buffer, int size) = 0;

    // True when the device has hung up or gone away (a receiver pulled out,
    // the far side of a link closed).
    virtual bool IsGone() = 0;

    virtual void Close() = 0;

    // Why the last open or setup failed, in the system's words ("No such
    // file or directory"); empty when the device cannot tell.
    virtual std::string FailureReason() const { return {}; }
};

// Why a receiver's device cannot be read, as the platform finds it out;
// GPS Setup puts it in the user's words.
enum class DeviceFault {
    kNone,
    kGone,          // no such device, or it went away
    kNoPermission,  // the user is not in the device's group
    kCannotOpen,    // any other error of opening it
    kOther,         // the device failed for a reason only it can tell
};

struct DeviceProblem {
    DeviceFault fault = DeviceFault::kNone;
    std::string devicePath;
    std::string group;   // kNoPermission: the group that may read the device
    std::string reason;  // kCannotOpen, kOther: the system's words
};

}  // namespace tolvane
