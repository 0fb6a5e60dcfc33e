// Stand-ins for ModemManager and systemd-logind on the bus that
// DBUS_SYSTEM_BUS_ADDRESS names. ModemManager has one modem whose receiver
// gives the NMEA of a recording, a second of it each second after its NMEA
// source is switched on; logind hands out sleep inhibitors. What the
// program does is printed on standard output: "Setup <sources> <signals>"
// for every Setup call, "Inhibit <what> <who> <why> <mode>" for an
// inhibitor and "Released" when its descriptor is closed.
//
//   system_bus_mock RECORDING [working|unmanaged|no-modem|no-gnss|refuses]
//
// "unmanaged" is a modem that gives no NMEA on the bus: left unmanaged, its
// receiver talks on a GPS port of its own, here a pseudo-terminal.

#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QFile>
#include <QSocketNotifier>
#include <QTimer>
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
        : mode_(std::move(mode)), seconds_(std::move(seconds)) {
        if (Unmanaged()) OpenGpsPort();
    }

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
    bool Unmanaged() const { return mode_ == QLatin1String("unmanaged"); }

    // The GPS port: a pseudo-terminal whose far side the mock writes the
    // recording into, a second each second, while the receiver is unmanaged.
    void OpenGpsPort() {
        char name[256] = {};
        if (openpty(&master_, &slave_, name, nullptr, nullptr) != 0) return;
        termios line{};
        tcgetattr(slave_, &line);
        cfmakeraw(&line);
        tcsetattr(slave_, TCSANOW, &line);
        gpsPort_ = QString::fromLatin1(name).mid(5);  // "pts/N" below /dev
        QObject::connect(&talk_, &QTimer::timeout, [this] {
            if ((enabled_ & kLocationGpsUnmanaged) == 0 || seconds_.empty()) return;
            const std::string& second = seconds_[next_++ % seconds_.size()];
            if (write(master_, second.data(), second.size()) < 0) return;
        });
        talk_.start(1000);
    }

    ManagedObjects Objects() const {
        ManagedObjects objects;
        if (mode_ == QLatin1String("no-modem")) return objects;
        QVariantMap location;
        // 3GPP cells and raw GPS, and NMEA unless the modem has no GNSS or
        // gives it unmanaged only.
        std::uint32_t capabilities = 1u | 2u | kLocationGpsNmea;
        if (mode_ == QLatin1String("no-gnss")) capabilities = 1u;
        if (Unmanaged()) capabilities = 1u | kLocationGpsUnmanaged;
        location.insert(QStringLiteral("Capabilities"), QVariant::fromValue(capabilities));
        location.insert(QStringLiteral("Enabled"), QVariant::fromValue(enabled_));
        location.insert(QStringLiteral("SignalsLocation"), QVariant::fromValue(false));
        QVariantMap modem;
        modem.insert(QStringLiteral("Ports"),
                     QVariant::fromValue(ModemPorts{{QStringLiteral("ttyUSB2"), 3u},
                                                    {gpsPort_, kModemPortGps}}));
        ModemInterfaces interfaces;
        interfaces.insert(QStringLiteral("org.freedesktop.ModemManager1.Modem"), modem);
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
    int master_ = -1;
    int slave_ = -1;  // kept open, so the port lives while the program closes its side
    QString gpsPort_;
    QTimer talk_;
    std::size_t next_ = 0;
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
