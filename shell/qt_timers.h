#pragma once

#include <QTimer>
#include <functional>
#include <map>
#include <memory>

#include "core/base/services.h"

namespace tolvane::shell {

// The core's timers as timers of the Qt event loop: each callback runs on
// the user-interface thread, between the window's other events.
class QtTimers final : public TimerService {
  public:
    int StartTimer(int intervalMilliseconds, std::function<void()> callback) override;
    void KillTimer(int timerId) override;

  private:
    std::map<int, std::unique_ptr<QTimer>> timers_;
    int nextTimerId_ = 1;
};

}  // namespace tolvane::shell
