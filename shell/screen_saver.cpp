#include "shell/screen_saver.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QString>

namespace tolvane::shell {
namespace {

const QString kService = QStringLiteral("org.freedesktop.ScreenSaver");
const QString kPath = QStringLiteral("/org/freedesktop/ScreenSaver");

QDBusMessage Call(const QString& method) {
    return QDBusMessage::createMethodCall(kService, kPath, kService, method);
}

}  // namespace

ScreenSaver::~ScreenSaver() {
    Release();
}

bool ScreenSaver::Available() {
    // Looked for once: a desktop without the service keeps without it.
    if (available_ < 0) {
        const QDBusConnection bus = QDBusConnection::sessionBus();
        available_ = bus.isConnected() && bus.interface()->isServiceRegistered(kService) ? 1 : 0;
    }
    return available_ == 1;
}

void ScreenSaver::SimulateUserActivity() {
    // Sent without waiting: the answer carries nothing the program needs.
    if (Available())
        QDBusConnection::sessionBus().call(Call("SimulateUserActivity"), QDBus::NoBlock);
}

void ScreenSaver::Hold() {
    if (cookie_ != 0 || !Available()) return;
    QDBusMessage inhibit = Call("Inhibit");
    inhibit << QStringLiteral("tolvane") << QStringLiteral("Keep backlight on");
    const QDBusReply<quint32> reply = QDBusConnection::sessionBus().call(inhibit);
    if (reply.isValid()) cookie_ = reply.value();
}

void ScreenSaver::Release() {
    if (cookie_ == 0) return;
    QDBusMessage uninhibit = Call("UnInhibit");
    uninhibit << cookie_;
    QDBusConnection::sessionBus().call(uninhibit, QDBus::NoBlock);
    cookie_ = 0;
}

}  // namespace tolvane::shell
