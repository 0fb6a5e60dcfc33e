#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/app/program.h"
#include "core/gps/bluetooth_port.h"
#include "core/gps/modem_device.h"
#include "core/gps/nmea_listener.h"
#include "core/gps/serial_device.h"

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
inline constexpr std::uint32_t kTextSetupSourceGnssShare = 14314;
inline constexpr std::uint32_t kTextSetupSourceModem = 14315;
inline constexpr std::uint32_t kTextSetupSocket = 14316;
inline constexpr std::uint32_t kTextSetupGnssShareHelp = 14317;
inline constexpr std::uint32_t kTextSetupModemHelp = 14318;
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
inline constexpr std::uint32_t kTextGnssShareAnswers = 14336;
inline constexpr std::uint32_t kTextGnssShareSilent = 14337;
inline constexpr std::uint32_t kTextModemFound = 14338;
inline constexpr std::uint32_t kTextModemLooking = 14339;
inline constexpr std::uint32_t kTextSearchTitle = 14340;
inline constexpr std::uint32_t kTextSearching = 14341;
inline constexpr std::uint32_t kTextSearchFound = 14342;
inline constexpr std::uint32_t kTextSearchNoneFound = 14343;
inline constexpr std::uint32_t kTextSearchNoAdapter = 14344;
inline constexpr std::uint32_t kTextSearchFailed = 14345;
inline constexpr std::uint32_t kTextSearchCancel = 14346;
inline constexpr std::uint32_t kTextSearchUse = 14347;

// The sources GPS Setup lists: the settings record's three (gpsd, serial
// port, Bluetooth) by their own numbers, then the receivers a daemon owns,
// which the record keeps as the serial port.
inline constexpr int kSetupSourceGnssShare = 3;
inline constexpr int kSetupSourceModemManager = 4;
inline constexpr int kSetupSourceCount = 5;

// The names of the listed sources, in their order.
inline constexpr std::uint32_t kSetupSourceTexts[kSetupSourceCount] = {
    kTextSetupSourceGpsd, kTextSetupSourcePort, kTextSetupSourceBluetooth,
    kTextSetupSourceGnssShare, kTextSetupSourceModem};
inline constexpr std::uint32_t kTextSourceFound = 14326;

// A source as GPS Setup lists it: its name, marked when the machine was
// found to offer it ("Shared GPS service (gpsd) - found").
std::string ListedSourceText(int source, bool found);
// "Auto" in the list of baud rates: the probe tries every rate of the table.
inline constexpr int kAutoBaudIndex = -1;

// The live line of GPS Setup: "12 sentences, 4800 baud, last $GPRMC 2 s ago",
// or that nothing has come yet at the rate being tried.
std::string LiveLineText(const NmeaListenSummary& summary, std::uint32_t baudRate,
                         std::int64_t nowMilliseconds);

// What GPS Setup says about a receiver that talks GN, GL, GA, GB or GQ
// instead of GP: the two ways to read it, or that the multi-GNSS reading
// will. Empty for a receiver the port source reads as it is.
std::string OtherGnssAdvice(const NmeaListenSummary& summary, bool multiGnss);

// The live line of the port page for what the probe has found so far: the
// device's problem, that "Auto" heard no NMEA at any rate, the rate "Auto"
// is trying, or what has arrived.
std::string ProbeLineText(const ProbeStatus& status, std::int64_t nowMilliseconds);

// A device's problem in the user's words; empty when it has none.
std::string DeviceProblemText(const DeviceProblem& problem);

// The gpsd page's line: whether gpsd answers at its address.
std::string GpsdStateText(bool answers, const std::string& address);

// gnss-share's page line: whether its socket answers, with the system's
// reason when it does not.
std::string GnssShareStateText(bool answers, const std::string& path, const std::string& reason);

// The modem page's line: the modem found, or why there is none.
std::string ModemStateText(ModemFault fault, const std::string& modemPath);

// The message that keeps GPS Setup open when OK cannot link the port.
std::string LinkNotWrittenText(const std::string& portName, const std::string& devicePath,
                               const std::string& reason);

// The source GPS Setup opens on: the chosen one, or gpsd for a source the
// dialog does not offer.
int ShownGpsSource(int chosenSource);

// What choosing a source starts: the port source listens to its device,
// gpsd's page asks whether gpsd answers, gnss-share's whether its socket
// does, and the modem's page looks for a modem with GNSS.
struct SourceActions {
    bool probesDevice = false;
    bool asksGpsd = false;
    bool asksSocket = false;
    bool asksModem = false;
};
SourceActions ActionsOfSource(int source);

// The baud index a port's list shows: "Auto" for a port without a link,
// which is new to the user, and the stored index for a linked one.
int ShownBaudIndex(const std::string& linkedDevice, int storedBaudIndex);

// The rate the probe listens at for a baud index; 0 tries every rate.
std::uint32_t ProbeBaudRate(int baudIndex);

// The rate OK stores for "Auto": the index of the rate the probe settled
// at, -1 when it has heard nothing yet.
int FoundBaudIndex(const ProbeStatus& status);

// The choices of GPS Setup. baudIndex -1 is "Auto": the rate the probe
// found is stored, or the stored one kept when it found none.
struct GpsSetupChoice {
    int source = 0;  // one of the listed sources
    std::string gnssShareSocket;
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

// A receiver as the Bluetooth page and the search list show it:
// "name (address)", or that none is chosen yet.
std::string ReceiverText(const std::string& name, std::uint64_t address);

// Why the Bluetooth search could not run or ended early, as the search
// finds it out.
struct SearchProblem {
    bool noAdapter = false;  // no adapter, or one that is switched off
    int error = 0;           // the Bluetooth stack's error number; 0 for none
    std::string words;       // the stack's own words for the error
};

// A search problem in the user's words, with the Bluetooth code and the
// stack's error number.
std::string SearchProblemText(const SearchProblem& problem);

// The search page's line when the search ends: the search's own problem,
// that no receiver was found, or how many were.
std::string SearchEndText(const std::string& problem, std::size_t found);

// Adds what the search reports: each receiver once, by its address; a
// later report fills in a name or a channel that the first one lacked.
void AddFoundReceiver(std::vector<BluetoothReceiver>& receivers, const BluetoothReceiver& found);

}  // namespace tolvane
