#include "shell/bluetooth_radio.h"

#include <QBluetoothLocalDevice>
#include <QEventLoop>
#include <QTimer>

#include "core/app/host.h"

namespace tolvane::shell {
namespace {

// An adapter takes about a second to power up; a link made before that
// fails, so the switch waits, but never long.
constexpr int kSwitchWaitMilliseconds = 5000;

int ModeOf(const QBluetoothLocalDevice& adapter) {
    if (!adapter.isValid()) return kRadioNone;
    return adapter.hostMode() == QBluetoothLocalDevice::HostPoweredOff ? kRadioOff
                                                                       : kRadioConnectable;
}

}  // namespace

int ReadRadioMode() {
    const QBluetoothLocalDevice adapter;
    return ModeOf(adapter);
}

bool SwitchRadio(int mode) {
    QBluetoothLocalDevice adapter;
    if (!adapter.isValid()) return false;
    if (ModeOf(adapter) == mode) return true;
    QEventLoop wait;
    QObject::connect(&adapter, &QBluetoothLocalDevice::hostModeStateChanged, &wait,
                     &QEventLoop::quit);
    QTimer::singleShot(kSwitchWaitMilliseconds, &wait, &QEventLoop::quit);
    adapter.setHostMode(mode == kRadioOff ? QBluetoothLocalDevice::HostPoweredOff
                                          : QBluetoothLocalDevice::HostConnectable);
    wait.exec();
    return ModeOf(adapter) == mode;
}

}  // namespace tolvane::shell
