#pragma once

#include <cstdint>
#include <string>

#include "core/app/gps_setup_form.h"
#include "core/app/program.h"

namespace tolvane {

// On the first start, before anything was set up, the program looks for a
// receiver by itself, so that a phone shows a fix without the user opening
// a dialog. Later starts keep what the settings say.

// What the search found: one of GPS Setup's listed sources, or none.
struct FoundReceiver {
    int source = -1;
    std::string where;   // the socket, the modem, gpsd's address or the device
    int baudIndex = -1;  // the rate a USB receiver talks at
};

// The questions the search asks of the machine; the window answers them,
// each within a few seconds.
class ReceiverProbes {
  public:
    virtual ~ReceiverProbes() = default;
    // NMEA arrives on gnss-share's socket at path.
    virtual bool SocketGivesNmea(const std::string& path) = 0;
    // A modem's receiver gives NMEA through ModemManager; modem names it.
    virtual bool ModemGivesNmea(std::string& modem) = 0;
    // gpsd takes a connection at address.
    virtual bool GpsdAnswers(std::string& address) = 0;
    // Exactly one USB receiver is plugged in and NMEA came from it at the
    // baud index.
    virtual bool LoneUsbReceiverGivesNmea(std::string& device, int& baudIndex) = 0;
};

inline constexpr std::uint32_t kTextReceiverFound = 14319;

// Whether start-up searches: on the first start only, and never while a
// demo reads its recording.
bool ShouldFindReceiver(const AppState& app);

// Asks in order: gnss-share, ModemManager's modem, gpsd, a lone USB
// receiver; the first that answers is the one.
FoundReceiver FindReceiver(ReceiverProbes& probes, const std::string& gnssShareSocket);

// Takes the receiver as GPS Setup's OK would (a USB receiver's port link
// is the window's to write first), starts the GPS and says which receiver
// it chose and where to change it. Nothing found changes nothing.
void TakeFoundReceiver(Program& program, const FoundReceiver& found);

}  // namespace tolvane
