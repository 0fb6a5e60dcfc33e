#include "shell/qt_timers.h"

namespace tolvane::shell {

int QtTimers::StartTimer(int intervalMilliseconds, std::function<void()> callback) {
    auto timer = std::make_unique<QTimer>();
    timer->setInterval(intervalMilliseconds);
    QObject::connect(timer.get(), &QTimer::timeout, timer.get(), std::move(callback));
    timer->start();
    const int id = nextTimerId_++;
    timers_[id] = std::move(timer);
    return id;
}

void QtTimers::KillTimer(int timerId) {
    timers_.erase(timerId);
}

}  // namespace tolvane::shell
