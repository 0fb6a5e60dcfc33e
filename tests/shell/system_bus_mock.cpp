// Stand-ins for ModemManager and systemd-logind on the bus that
// DBUS_SYSTEM_BUS_ADDRESS names. ModemManager has one modem whose receiver
// gives the NMEA of a recording, a second of it each second after its NMEA
// source is switched on; logind hands out sleep inhibitors. What the
// program does is printed on standard output: "Setup <sources> <signals>"
// for every Setup call, "Inhibit <what> <who> <why> <mode>" for an
// inhibitor and "Released" when its descriptor is closed.
//
//   system_bus_mock RECORDING [working|no-modem|no-gnss|refuses]

#include <unistd.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QFile>
#include <QSocketNotifier>
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

// logind's Inhibit: the program keeps the writing end of a pipe, and its
// closing is seen as the end of the reading one.
class MockLogind final : public QDBusVirtualObject {
  public:
    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() != QLatin1String("Inhibit")) return false;
        const QList<QVariant> arguments = message.arguments();
        std::printf("Inhibit %s %s %s %s\n", qPrintable(arguments.value(0).toString()),
                    qPrintable(arguments.value(1).toString()),
                    qPrintable(arguments.value(2).toString()),
                    qPrintable(arguments.value(3).toString()));
        std::fflush(stdout);
        int ends[2];
        if (pipe(ends) != 0) return false;
        auto* closed = new QSocketNotifier(ends[0], QSocketNotifier::Read, this);
        QObject::connect(closed, &QSocketNotifier::activated, closed, [closed, end = ends[0]] {
            std::printf("Released\n");
            std::fflush(stdout);
            closed->setEnabled(false);
            close(end);
        });
        // The message keeps a copy of the descriptor of its own.
        const bool sent = connection.send(
            message.createReply(QVariant::fromValue(QDBusUnixFileDescriptor(ends[1]))));
        close(ends[1]);
        return sent;
    }
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
    tolvane::shell::MockLogind logind;
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.registerVirtualObject(QString::fromLatin1(tolvane::shell::kModemManagerPath), &manager,
                                   QDBusConnection::SubPath) ||
        !bus.registerService(QString::fromLatin1(tolvane::shell::kModemManagerService)) ||
        !bus.registerVirtualObject(QStringLiteral("/org/freedesktop/login1"), &logind) ||
        !bus.registerService(QStringLiteral("org.freedesktop.login1"))) {
        return 1;
    }
    std::printf("ready\n");
    std::fflush(stdout);
    return application.exec();
}
