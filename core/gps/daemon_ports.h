#pragma once

#include <string>

namespace tolvane {

// Receivers that a daemon owns, which the port source reads as it reads a
// port of the port table. Which one is used is kept beside the settings
// record, whose source field says "serial port" for all three.
enum class DaemonReceiver {
    kNone,          // the port of the port table
    kGnssShare,     // gnss-share's socket
    kModemManager,  // ModemManager's modem
};

// On Linux phones (the Librem 5, postmarketOS) the gnss-share daemon owns
// the receiver and serves its NMEA on a UNIX socket. The port source names
// such a socket like a port, "unix:/run/gnss-share.sock", and the
// platform's serial device opens the name as a socket.
inline constexpr char kSocketPortPrefix[] = "unix:";
inline constexpr char kDefaultGnssShareSocket[] = "/run/gnss-share.sock";

inline std::string SocketPortName(const std::string& path) {
    return kSocketPortPrefix + path;
}

// The socket's path of a name made by SocketPortName; empty for any other
// name.
inline std::string SocketPathOf(const std::string& name) {
    const std::string prefix = kSocketPortPrefix;
    return name.rfind(prefix, 0) == 0 ? name.substr(prefix.size()) : std::string();
}

// The PinePhone's receiver sits in its modem, which ModemManager owns. The
// port source opens this name for it; the modem device of the window
// reaches ModemManager over the system bus.
inline constexpr char kModemPortName[] = "modem:";

}  // namespace tolvane
