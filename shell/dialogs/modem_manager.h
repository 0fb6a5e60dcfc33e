#pragma once

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QList>
#include <QMap>
#include <QString>
#include <QVariantMap>
#include <cstdint>
#include <mutex>

#include "core/gps/modem_device.h"
#include "platform/serial_device.h"

namespace tolvane::shell {

// ModemManager's names on the system bus, and the types of the two replies
// the program reads (its mock in the tests answers with the same).
inline constexpr char kModemManagerService[] = "org.freedesktop.ModemManager1";
inline constexpr char kModemManagerPath[] = "/org/freedesktop/ModemManager1";
inline constexpr char kModemLocationInterface[] = "org.freedesktop.ModemManager1.Modem.Location";
inline constexpr char kObjectManagerInterface[] = "org.freedesktop.DBus.ObjectManager";

// The location sources of ModemManager's MMModemLocationSource that matter
// here: NMEA through the bus, or the receiver left to talk on a port of its
// own ("unmanaged"), where some modems give NMEA only.
inline constexpr std::uint32_t kLocationGpsNmea = 1u << 2;
inline constexpr std::uint32_t kLocationGpsUnmanaged = 1u << 4;
// MMModemPortType's GPS port.
inline constexpr std::uint32_t kModemPortGps = 5;

// One of a modem's ports, as its Ports property lists them.
struct ModemPort {
    QString name;  // "ttyUSB1"
    std::uint32_t type = 0;
};
QDBusArgument& operator<<(QDBusArgument& argument, const ModemPort& port);
const QDBusArgument& operator>>(const QDBusArgument& argument, ModemPort& port);
using ModemPorts = QList<ModemPort>;

using ModemInterfaces = QMap<QString, QVariantMap>;
using ManagedObjects = QMap<QDBusObjectPath, ModemInterfaces>;
using ModemLocationReply = QMap<std::uint32_t, QDBusVariant>;

// Registers the reply types with Qt D-Bus; called before the first call.
void RegisterModemManagerTypes();

// The first modem whose location service gives NMEA, with what it has
// switched on, or why there is none.
struct GnssModem {
    ModemFault fault = ModemFault::kNone;
    QString path;
    std::uint32_t enabled = 0;
    bool signalling = false;
    QString gpsPort;  // the device of an unmanaged receiver; empty for NMEA on the bus
};
GnssModem FindGnssModem();

// ModemManager's location service over the system bus (which
// DBUS_SYSTEM_BUS_ADDRESS may point elsewhere). Every call waits at most
// kCallMilliseconds; the calls come from the port source's reader thread
// and from the window's, so the modem's state is kept under a lock.
class ModemManagerLocation final : public ModemLocation {
  public:
    static constexpr int kCallMilliseconds = 1500;

    ModemManagerLocation();

    ModemFault Start() override;
    bool ReadNmea(std::string& sentences) override;
    bool Streams() const override { return gpsPort_.IsOpen(); }
    void Stop() override;

  private:
    bool OpenGpsPort(const std::string& device);

    std::mutex lock_;
    QString modemPath_;
    platform::TermiosSerialDevice gpsPort_;
    // What the modem had switched on before Start, put back by Stop.
    std::uint32_t enabledBefore_ = 0;
    bool signalsBefore_ = false;
    bool started_ = false;
};

}  // namespace tolvane::shell

Q_DECLARE_METATYPE(tolvane::shell::ModemPort)
Q_DECLARE_METATYPE(tolvane::shell::ModemPorts)
Q_DECLARE_METATYPE(tolvane::shell::ModemInterfaces)
Q_DECLARE_METATYPE(tolvane::shell::ManagedObjects)
Q_DECLARE_METATYPE(tolvane::shell::ModemLocationReply)
