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

}  // namespace

void RegisterModemManagerTypes() {
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
    // The first modem, in the order of its path, whose receiver gives NMEA.
    for (auto modem = objects.cbegin(); modem != objects.cend(); ++modem) {
        const auto location = modem->find(QString::fromLatin1(kModemLocationInterface));
        if (location == modem->cend()) continue;
        if ((location->value(QStringLiteral("Capabilities")).toUInt() & kLocationGpsNmea) == 0) {
            continue;
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
    const QDBusMessage setup = Call(modem.path, kModemLocationInterface, "Setup",
                                    {QVariant::fromValue(modem.enabled | kLocationGpsNmea),
                                     QVariant::fromValue(modem.signalling)});
    if (setup.type() != QDBusMessage::ReplyMessage) return ModemFault::kRefused;
    modemPath_ = modem.path;
    enabledBefore_ = modem.enabled;
    signalsBefore_ = modem.signalling;
    started_ = true;
    return ModemFault::kNone;
}

bool ModemManagerLocation::ReadNmea(std::string& sentences) {
    QString path;
    {
        const std::lock_guard<std::mutex> guard(lock_);
        if (!started_) return false;
        path = modemPath_;
    }
    sentences.clear();
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
    Call(modemPath_, kModemLocationInterface, "Setup",
         {QVariant::fromValue(enabledBefore_), QVariant::fromValue(signalsBefore_)});
}

}  // namespace tolvane::shell
