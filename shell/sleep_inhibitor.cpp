#include "shell/sleep_inhibitor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QString>

namespace tolvane::shell {
namespace {

constexpr int kCallMilliseconds = 2000;

}  // namespace

void SleepInhibitor::Hold() {
    wanted_ = true;
    if (Held() || asking_) return;
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) return;
    QDBusMessage inhibit = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
    inhibit << QStringLiteral("sleep") << QStringLiteral("Tolvane GPS Utilities")
            << QStringLiteral("Recording a GPS track") << QStringLiteral("block");
    asking_ = true;
    auto* call = new QDBusPendingCallWatcher(bus.asyncCall(inhibit, kCallMilliseconds), &calls_);
    QObject::connect(call, &QDBusPendingCallWatcher::finished, &calls_, [this, call] {
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *call;
        asking_ = false;
        // A release that came while logind was asked lets the lock go at once.
        if (wanted_ && reply.isValid()) lock_ = reply.value();
        call->deleteLater();
    });
}

void SleepInhibitor::Release() {
    wanted_ = false;
    // Closing the last copy of the descriptor ends the inhibitor.
    lock_ = QDBusUnixFileDescriptor();
}

}  // namespace tolvane::shell
