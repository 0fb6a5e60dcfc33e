#pragma once

#include <cstdint>
#include <string>

namespace tolvane {

// A Bluetooth receiver is reached through an RFCOMM link, which the port
// source names like a port: "rfcomm:00:11:22:33:44:55:1", the receiver's
// address and the channel of its Serial Port service. The platform's
// serial device opens such a name as a socket.
inline constexpr char kBluetoothPortPrefix[] = "rfcomm:";

// The channel most receivers offer their Serial Port service on; used when
// the search has not told another one.
inline constexpr int kDefaultRfcommChannel = 1;

// A receiver's 48-bit address as "00:11:22:33:44:55".
std::string BluetoothAddressText(std::uint64_t address);

std::string BluetoothPortName(std::uint64_t address, int channel);

// Reads back a name made by BluetoothPortName. False for any other name,
// a channel outside 1-30 or an address of zero.
bool ParseBluetoothPortName(const std::string& name, std::uint64_t& address, int& channel);

}  // namespace tolvane
