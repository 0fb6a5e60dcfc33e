#pragma once

#include <cstdint>
#include <string>

#include "core/state/app_state.h"

namespace tolvane {

// The texts that name the GPS source in the title bar's GPS mark.
inline constexpr std::uint32_t kTextSourceGpsd = 14360;
inline constexpr std::uint32_t kTextSourcePort = 14361;
inline constexpr std::uint32_t kTextSourcePortDevice = 14362;
inline constexpr std::uint32_t kTextSourceBluetooth = 14363;
inline constexpr std::uint32_t kTextSourceNoBluetooth = 14364;
inline constexpr std::uint32_t kTextSourceGnssShare = 14365;
inline constexpr std::uint32_t kTextSourceModem = 14366;
inline constexpr std::uint32_t kTextSourceDemo = 14367;

// Where the sources lead outside the program, as the platform finds them.
struct SourcePlaces {
    std::string gpsdAddress;  // "localhost:2947"
    std::string portDevice;   // the device the port's link leads to; empty without one
};

// The GPS source in use, in the user's words: "gpsd (localhost:2947)",
// "Serial port COM0 (/dev/ttyUSB0)", "Bluetooth receiver NAME",
// "gnss-share (/run/gnss-share.sock)", "Modem (ModemManager)" or, while the
// demo receiver plays in the place of the chosen source, "Demo recording".
std::string GpsSourceName(const AppState& app, const SourcePlaces& places);

}  // namespace tolvane
