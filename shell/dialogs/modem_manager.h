#pragma once

#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QMap>
#include <QString>
#include <QVariantMap>
#include <cstdint>
#include <mutex>

#include "core/gps/modem_device.h"

namespace tolvane::shell {

// ModemManager's names on the system bus, and the types of the two replies
// the program reads (its mock in the tests answers with the same).
inline constexpr char kModemManagerService[] = "org.freedesktop.ModemManager1";
inline constexpr char kModemManagerPath[] = "/org/freedesktop/ModemManager1";
inline constexpr char kModemLocationInterface[] = "org.freedesktop.ModemManager1.Modem.Location";
inline constexpr char kObjectManagerInterface[] = "org.freedesktop.DBus.ObjectManager";

// The location sources of ModemManager's MMModemLocationSource that matter
// here.
inline constexpr std::uint32_t kLocationGpsNmea = 1u << 2;

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
    void Stop() override;

  private:
    std::mutex lock_;
    QString modemPath_;
    // What the modem had switched on before Start, put back by Stop.
    std::uint32_t enabledBefore_ = 0;
    bool signalsBefore_ = false;
    bool started_ = false;
};

}  // namespace tolvane::shell

Q_DECLARE_METATYPE(tolvane::shell::ModemInterfaces)
Q_DECLARE_METATYPE(tolvane::shell::ManagedObjects)
Q_DECLARE_METATYPE(tolvane::shell::ModemLocationReply)
