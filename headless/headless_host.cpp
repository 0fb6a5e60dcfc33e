#include "headless/headless_host.h"

#include <ostream>

namespace tolvane::headless {

int LoopTimers::StartTimer(int /*intervalMilliseconds*/, std::function<void()> callback) {
    const int id = nextTimerId_++;
    timers_[id] = std::move(callback);
    return id;
}

void LoopTimers::KillTimer(int timerId) {
    timers_.erase(timerId);
}

void LoopTimers::FireTimers() {
    // A callback may kill timers (the watchdog stops the source) or start
    // new ones, so the timer after each one that ran is looked up again, up
    // to the last that was there at the start: ids only grow.
    if (timers_.empty()) return;
    const int lastId = timers_.rbegin()->first;
    for (auto it = timers_.begin(); it != timers_.end() && it->first <= lastId;) {
        const int id = it->first;
        const std::function<void()> callback = it->second;
        callback();
        it = timers_.upper_bound(id);
    }
}

void HeadlessHost::ShowMessage(const std::string& text, const std::string& caption,
                               MessageIcon /*icon*/) {
    messages_ << caption << ": " << text << '\n';
}

bool HeadlessHost::AskYesNo(const std::string& text, const std::string& caption) {
    messages_ << caption << ": " << text << " [no]\n";
    return false;
}

SaveAnswer HeadlessHost::AskSaveDiscardCancel(const std::string& text, const std::string& caption) {
    messages_ << caption << ": " << text << " [cancel]\n";
    return SaveAnswer::kCancel;
}

}  // namespace tolvane::headless
