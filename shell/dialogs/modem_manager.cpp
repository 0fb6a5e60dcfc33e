#include "shell/dialogs/modem_manager.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusMetaType>

namespace tolvane::shell {
namespace {

QDBusMessage Call(const QString& path, const char* interface, const char* method,
                  const QList<QVariant>& arguments = {}) {
    QDBusMessage message = QDBusMessage::createMethodCall(
        kModemManagerService, path, QString::fromLatin1(interface), QString::fromLatin1(method));
    message.setArguments(arguments);
    return QDBusConnection::systemBus().call(message, QDBus::Block,
                                             ModemManagerLocation::kCallMilliseconds);
}

bool Failed(const QDBusMessage& reply) {
    return reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty();
}

// Whether the error says that ModemManager or its modem is not there at
// all, rather than that one call went wrong.
bool IsGoneError(const QDBusMessage& reply) {
    const QString name = reply.errorName();
    return name == QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown") ||
           name == QLatin1String("org.freedesktop.DBus.Error.UnknownObject") ||
           name == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner") ||
           name == QLatin1String("org.freedesktop.DBus.Error.Disconnected");
}

// The device of the modem's GPS port, when it lists one.
QString GpsPortOf(const ModemInterfaces& modem) {
    const auto properties = modem.find(QStringLiteral("org.freedesktop.ModemManager1.Modem"));
    if (properties == modem.cend()) return {};
    const QVariant ports = properties->value(QStringLiteral("Ports"));
    for (const ModemPort& port : qdbus_cast<ModemPorts>(ports.value<QDBusArgument>())) {
        if (port.type == kModemPortGps) return QStringLiteral("/dev/") + port.name;
    }
    return {};
}

}  // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const ModemPort& port) {
    argument.beginStructure();
    argument << port.name << port.type;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, ModemPort& port) {
    argument.beginStructure();
    argument >> port.name >> port.type;
    argument.endStructure();
    return argument;
}

void RegisterModemManagerTypes() {
    qDBusRegisterMetaType<ModemPort>();
    qDBusRegisterMetaType<ModemPorts>();
    qDBusRegisterMetaType<ModemInterfaces>();
    qDBusRegisterMetaType<ManagedObjects>();
    qDBusRegisterMetaType<ModemLocationReply>();
}

ModemManagerLocation::ModemManagerLocation() {
    RegisterModemManagerTypes();
}

GnssModem FindGnssModem() {
    RegisterModemManagerTypes();
    GnssModem found;
    const QDBusMessage reply =
        Call(QString::fromLatin1(kModemManagerPath), kObjectManagerInterface, "GetManagedObjects");
    if (Failed(reply)) {
        found.fault = ModemFault::kNoModemManager;
        return found;
    }
    const ManagedObjects objects =
        qdbus_cast<ManagedObjects>(reply.arguments().at(0).value<QDBusArgument>());
    found.fault = objects.isEmpty() ? ModemFault::kNoModem : ModemFault::kNoGnss;
    // The first modem, in the order of its path, whose receiver gives NMEA
    // on the bus or, left unmanaged, on a GPS port of its own.
    for (auto modem = objects.cbegin(); modem != objects.cend(); ++modem) {
        const auto location = modem->find(QString::fromLatin1(kModemLocationInterface));
        if (location == modem->cend()) continue;
        const std::uint32_t capabilities = location->value(QStringLiteral("Capabilities")).toUInt();
        if ((capabilities & kLocationGpsNmea) == 0) {
            if ((capabilities & kLocationGpsUnmanaged) == 0) continue;
            found.gpsPort = GpsPortOf(*modem);
            if (found.gpsPort.isEmpty()) continue;
        }
        found.fault = ModemFault::kNone;
        found.path = modem.key().path();
        found.enabled = location->value(QStringLiteral("Enabled")).toUInt();
        found.signalling = location->value(QStringLiteral("SignalsLocation")).toBool();
        break;
    }
    return found;
}

ModemFault ModemManagerLocation::Start() {
    const std::lock_guard<std::mutex> guard(lock_);
    const GnssModem modem = FindGnssModem();
    if (modem.fault != ModemFault::kNone) return modem.fault;
    const std::uint32_t source = modem.gpsPort.isEmpty() ? kLocationGpsNmea : kLocationGpsUnmanaged;
    const QDBusMessage setup = Call(modem.path, kModemLocationInterface, "Setup",
                                    {QVariant::fromValue(modem.enabled | source),
                                     QVariant::fromValue(modem.signalling)});
    if (setup.type() != QDBusMessage::ReplyMessage) return ModemFault::kRefused;
    if (!modem.gpsPort.isEmpty() && !OpenGpsPort(modem.gpsPort.toStdString())) {
        Call(modem.path, kModemLocationInterface, "Setup",
             {QVariant::fromValue(modem.enabled), QVariant::fromValue(modem.signalling)});
        return ModemFault::kRefused;
    }
    modemPath_ = modem.path;
    enabledBefore_ = modem.enabled;
    signalsBefore_ = modem.signalling;
    started_ = true;
    return ModemFault::kNone;
}

bool ModemManagerLocation::OpenGpsPort(const std::string& device) {
    // The port is the modem's own USB function: its rate means nothing, and
    // the usual one is set for a port that would care.
    constexpr std::uint32_t kGpsPortBaud = 115200;
    return gpsPort_.Open(device) && gpsPort_.Configure({kGpsPortBaud, 8, 0, 0}) &&
           gpsPort_.SetReadTimeouts();
}

bool ModemManagerLocation::ReadNmea(std::string& sentences) {
    QString path;
    {
        const std::lock_guard<std::mutex> guard(lock_);
        if (!started_) return false;
        path = modemPath_;
    }
    sentences.clear();
    if (gpsPort_.IsOpen()) {
        char buffer[1024];
        const int count = gpsPort_.Read(buffer, sizeof buffer);
        if (count < 0 || gpsPort_.IsGone()) return false;
        sentences.assign(buffer, static_cast<std::size_t>(count));
        return true;
    }
    const QDBusMessage reply = Call(path, kModemLocationInterface, "GetLocation");
    if (Failed(reply)) return !IsGoneError(reply);
    const ModemLocationReply location =
        qdbus_cast<ModemLocationReply>(reply.arguments().at(0).value<QDBusArgument>());
    const auto nmea = location.find(kLocationGpsNmea);
    if (nmea != location.cend()) sentences = nmea->variant().toString().toStdString();
    return true;
}

void ModemManagerLocation::Stop() {
    const std::lock_guard<std::mutex> guard(lock_);
    if (!started_) return;
    started_ = false;
    gpsPort_.Close();
    Call(modemPath_, kModemLocationInterface, "Setup",
         {QVariant::fromValue(enabledBefore_), QVariant::fromValue(signalsBefore_)});
}

}  // namespace tolvane::shell
