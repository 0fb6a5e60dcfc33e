// A stand-in for ModemManager on the bus DBUS_SYSTEM_BUS_ADDRESS names: one
// modem whose receiver gives the NMEA of a recording, a second of it each
// second after its NMEA source is switched on. Every Setup call is printed
// as "Setup <sources> <signals>" on standard output.
//
//   modem_manager_mock RECORDING [working|no-modem|no-gnss|refuses]

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QFile>
#include <cstdio>
#include <string>
#include <vector>

#include "headless/recording_device.h"
#include "shell/dialogs/modem_manager.h"

namespace tolvane::shell {
namespace {

constexpr char kModemPath[] = "/org/freedesktop/ModemManager1/Modem/0";

class MockModemManager final : public QDBusVirtualObject {
  public:
    MockModemManager(QString mode, std::vector<std::string> seconds)
        : mode_(std::move(mode)), seconds_(std::move(seconds)) {}

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        const QString member = message.member();
        if (member == QLatin1String("GetManagedObjects")) {
            return connection.send(message.createReply(QVariant::fromValue(Objects())));
        }
        if (member == QLatin1String("Setup")) return Setup(message, connection);
        if (member == QLatin1String("GetLocation")) {
            return connection.send(message.createReply(QVariant::fromValue(Location())));
        }
        return false;
    }

  private:
    ManagedObjects Objects() const {
        ManagedObjects objects;
        if (mode_ == QLatin1String("no-modem")) return objects;
        QVariantMap location;
        // 3GPP cells and raw GPS, and NMEA unless the modem has no GNSS.
        const std::uint32_t capabilities =
            mode_ == QLatin1String("no-gnss") ? 1u : 1u | 2u | kLocationGpsNmea;
        location.insert(QStringLiteral("Capabilities"), QVariant::fromValue(capabilities));
        location.insert(QStringLiteral("Enabled"), QVariant::fromValue(enabled_));
        location.insert(QStringLiteral("SignalsLocation"), QVariant::fromValue(false));
        ModemInterfaces interfaces;
        interfaces.insert(QStringLiteral("org.freedesktop.ModemManager1.Modem"), {});
        interfaces.insert(QString::fromLatin1(kModemLocationInterface), location);
        objects.insert(QDBusObjectPath(QString::fromLatin1(kModemPath)), interfaces);
        return objects;
    }

    bool Setup(const QDBusMessage& message, const QDBusConnection& connection) {
        if (mode_ == QLatin1String("refuses")) {
            return connection.send(message.createErrorReply(
                QStringLiteral("org.freedesktop.ModemManager1.Error.Core.Unsupported"),
                QStringLiteral("not in this mock")));
        }
        enabled_ = message.arguments().value(0).toUInt();
        const bool signalling = message.arguments().value(1).toBool();
        std::printf("Setup %u %d\n", enabled_, signalling ? 1 : 0);
        std::fflush(stdout);
        since_.start();
        return connection.send(message.createReply());
    }

    ModemLocationReply Location() const {
        ModemLocationReply location;
        if ((enabled_ & kLocationGpsNmea) == 0 || seconds_.empty()) return location;
        const std::size_t second = static_cast<std::size_t>(since_.elapsed() / 1000) % seconds_.size();
        location.insert(kLocationGpsNmea,
                        QDBusVariant(QString::fromStdString(seconds_[second]).trimmed()));
        return location;
    }

    QString mode_;
    std::vector<std::string> seconds_;
    std::uint32_t enabled_ = 0;
    QElapsedTimer since_;
};

std::vector<std::string> ReadSeconds(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {};
    const std::string recording = file.readAll().toStdString();
    std::vector<std::string> seconds;
    for (const headless::RecordedSecond& second : headless::SplitIntoSeconds(recording)) {
        seconds.push_back(recording.substr(second.begin, second.end - second.begin));
    }
    return seconds;
}

}  // namespace
}  // namespace tolvane::shell

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    tolvane::shell::RegisterModemManagerTypes();
    const QStringList arguments = application.arguments();
    if (arguments.size() < 2) return 2;
    tolvane::shell::MockModemManager manager(arguments.value(2, QStringLiteral("working")),
                                             tolvane::shell::ReadSeconds(arguments.at(1)));
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.registerVirtualObject(QString::fromLatin1(tolvane::shell::kModemManagerPath), &manager,
                                   QDBusConnection::SubPath) ||
        !bus.registerService(QString::fromLatin1(tolvane::shell::kModemManagerService))) {
        return 1;
    }
    std::printf("ready\n");
    std::fflush(stdout);
    return application.exec();
}
