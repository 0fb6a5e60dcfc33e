#include "core/gps/bluetooth_port.h"

#include <cstdio>
#include <cstring>

namespace tolvane {
namespace {

constexpr int kLastRfcommChannel = 30;

}  // namespace

std::string BluetoothAddressText(std::uint64_t address) {
    char text[18];
    std::snprintf(
        text, sizeof text, "%02X:%02X:%02X:%02X:%02X:%02X",
        static_cast<unsigned>(address >> 40 & 0xFF), static_cast<unsigned>(address >> 32 & 0xFF),
        static_cast<unsigned>(address >> 24 & 0xFF), static_cast<unsigned>(address >> 16 & 0xFF),
        static_cast<unsigned>(address >> 8 & 0xFF), static_cast<unsigned>(address & 0xFF));
    return text;
}

std::string BluetoothPortName(std::uint64_t address, int channel) {
    return kBluetoothPortPrefix + BluetoothAddressText(address) + ":" +
           std::to_string(channel > 0 ? channel : kDefaultRfcommChannel);
}

bool ParseBluetoothPortName(const std::string& name, std::uint64_t& address, int& channel) {
    const std::size_t prefix = std::strlen(kBluetoothPortPrefix);
    if (name.compare(0, prefix, kBluetoothPortPrefix) != 0) return false;
    unsigned bytes[6];
    int parsedChannel = 0;
    char rest = 0;
    if (std::sscanf(name.c_str() + prefix, "%2x:%2x:%2x:%2x:%2x:%2x:%d%c", &bytes[0], &bytes[1],
                    &bytes[2], &bytes[3], &bytes[4], &bytes[5], &parsedChannel, &rest) != 7) {
        return false;
    }
    std::uint64_t parsed = 0;
    for (const unsigned byte : bytes) parsed = parsed << 8 | byte;
    if (parsed == 0 || parsedChannel < 1 || parsedChannel > kLastRfcommChannel) return false;
    address = parsed;
    channel = parsedChannel;
    return true;
}

}  // namespace tolvane
