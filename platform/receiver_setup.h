#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/gps/serial_device.h"

namespace tolvane::platform {

// A serial device that GPS Setup offers: its path and what the user sees.
struct SerialPortEntry {
    std::string path;   // "/dev/serial/by-id/usb-u-blox_GNSS_receiver-if00"
    std::string label;  // "usb-u-blox_GNSS_receiver-if00 (ttyACM0)"
};

// The serial devices present: /dev/serial/by-id/* with the names they carry,
// then the /dev/ttyACM* and /dev/ttyUSB* that no such name covers, then the
// /dev/ttyS* with a port behind them. Pseudo-terminals are not listed; the
// user gives one by its path. devRoot stands in for /dev in tests.
std::vector<SerialPortEntry> ListSerialPorts(const std::string& devRoot = "/dev");

// Whether the entry is a USB receiver's (by-id, ttyACM or ttyUSB) rather
// than a serial port of the machine's own.
bool IsUsbSerialPort(const SerialPortEntry& entry);

// Whether the kernel knows a Bluetooth adapter (sysRoot stands in for /sys
// in tests).
bool BluetoothAdapterPresent(const std::string& sysRoot = "/sys");

// The device a port name's link in the port folder leads to; empty when
// the name has no link.
std::string ReadPortLink(const std::string& portName);

// Makes the port name's link in the port folder lead to devicePath,
// replacing an earlier link. False with the system's reason when it cannot.
bool WritePortLink(const std::string& portName, const std::string& devicePath, std::string& reason);

// Why a device cannot be read: gone, a group to join, or the system's
// reason. DeviceFault::kNone when it can be opened.
DeviceProblem ProblemOpening(const std::string& devicePath);

// What the failure error (an errno) of opening devicePath means.
DeviceProblem ProblemOfError(const std::string& devicePath, int error);

// Where gpsd listens ("localhost:2947", or GPSD_HOST and GPSD_PORT) and
// whether it takes a connection there within a short time.
std::string GpsdAddressText();
bool GpsdAnswers();

}  // namespace tolvane::platform
