#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/app/program.h"
#include "core/gps/bluetooth_port.h"
#include "core/gps/nmea_listener.h"

namespace tolvane {

// The texts of GPS Setup and its Bluetooth search.
inline constexpr std::uint32_t kTextSetupSourceGpsd = 14300;
inline constexpr std::uint32_t kTextSetupSourcePort = 14301;
inline constexpr std::uint32_t kTextSetupSourceBluetooth = 14302;
inline constexpr std::uint32_t kTextSetupSource = 14303;
inline constexpr std::uint32_t kTextSetupPort = 14304;
inline constexpr std::uint32_t kTextSetupDevice = 14305;
inline constexpr std::uint32_t kTextSetupBaud = 14306;
inline constexpr std::uint32_t kTextSetupAuto = 14307;
inline constexpr std::uint32_t kTextSetupAutoHelp = 14308;
inline constexpr std::uint32_t kTextSetupMultiGnss = 14309;
inline constexpr std::uint32_t kTextSetupAutoBluetooth = 14310;
inline constexpr std::uint32_t kTextSetupSearch = 14311;
inline constexpr std::uint32_t kTextSetupNoReceiver = 14312;
inline constexpr std::uint32_t kTextSetupGpsdHelp = 14313;
inline constexpr std::uint32_t kTextLiveHeard = 14320;
inline constexpr std::uint32_t kTextLiveNothingYet = 14321;
inline constexpr std::uint32_t kTextLiveTrying = 14322;
inline constexpr std::uint32_t kTextLiveNoNmea = 14323;
inline constexpr std::uint32_t kTextLiveOtherGnss = 14324;
inline constexpr std::uint32_t kTextLiveOtherGnssRead = 14325;
inline constexpr std::uint32_t kTextDeviceGone = 14330;
inline constexpr std::uint32_t kTextDeviceNoPermission = 14331;
inline constexpr std::uint32_t kTextDeviceCannotOpen = 14332;
inline constexpr std::uint32_t kTextGpsdNotRunning = 14333;
inline constexpr std::uint32_t kTextGpsdRunning = 14334;
inline constexpr std::uint32_t kTextLinkNotWritten = 14335;
inline constexpr std::uint32_t kTextSearchTitle = 14340;
inline constexpr std::uint32_t kTextSearching = 14341;
inline constexpr std::uint32_t kTextSearchFound = 14342;
inline constexpr std::uint32_t kTextSearchNoneFound = 14343;
inline constexpr std::uint32_t kTextSearchNoAdapter = 14344;
inline constexpr std::uint32_t kTextSearchFailed = 14345;
inline constexpr std::uint32_t kTextSearchCancel = 14346;
inline constexpr std::uint32_t kTextSearchUse = 14347;


// The live line of GPS Setup: "12 sentences, 4800 baud, last $GPRMC 2 s ago",
// or that nothing has come yet at the rate being tried.
std::string LiveLineText(const NmeaListenSummary& summary, std::uint32_t baudRate,
                         std::int64_t nowMilliseconds);

// What GPS Setup says about a receiver that talks GN, GL, GA, GB or GQ
// instead of GP: the two ways to read it, or that the multi-GNSS reading
// will. Empty for a receiver the port source reads as it is.
std::string OtherGnssAdvice(const NmeaListenSummary& summary, bool multiGnss);

// The choices of GPS Setup. baudIndex -1 is "Auto": the rate the probe
// found is stored, or the stored one kept when it found none.
struct GpsSetupChoice {
    int source = 0;
    int portIndex = 0;
    int baudIndex = 0;
    std::string bluetoothName;
    std::uint64_t bluetoothAddress = 0;
    int bluetoothChannel = 0;
    bool autoBluetooth = false;
    bool multiGnss = false;
};

GpsSetupChoice CurrentGpsSetup(const AppState& app);

// OK of GPS Setup: the choices go into Options and its run-time copies
// (a receiver counts as chosen only with a name and an address, as at
// start-up) and Options.dat is saved with five attempts.
void ApplyGpsSetup(Program& program, const GpsSetupChoice& choice, int foundBaudIndex);

// The baud index of a rate of the table; -1 for any other rate.
int BaudIndexForRate(std::uint32_t baudRate);

// A receiver that the Bluetooth search found offering the Serial Port
// service.
struct BluetoothReceiver {
    std::string name;
    std::uint64_t address = 0;
    int channel = 0;
};

// Adds what the search reports: each receiver once, by its address; a
// later report fills in a name or a channel that the first one lacked.
void AddFoundReceiver(std::vector<BluetoothReceiver>& receivers, const BluetoothReceiver& found);

}  // namespace tolvane
