#include "tools/tolvane-tool/tool_host.h"

#include <ostream>
#include <vector>

namespace tolvane::tool {

int ToolHost::StartTimer(int /*intervalMilliseconds*/, std::function<void()> callback) {
    const int id = nextTimerId_++;
    timers_[id] = std::move(callback);
    return id;
}

void ToolHost::KillTimer(int timerId) {
    timers_.erase(timerId);
}

void ToolHost::FireTimers() {
    // A callback may kill timers (the watchdog stops the source), so the
    // ids are taken first and each is looked up again before it runs.
    std::vector<int> ids;
    for (const auto& entry : timers_) ids.push_back(entry.first);
    for (const int id : ids) {
        const auto it = timers_.find(id);
        if (it != timers_.end()) {
            const std::function<void()> callback = it->second;
            callback();
        }
    }
}

void ToolHost::ShowMessage(const std::string& text, const std::string& caption,
                           MessageIcon /*icon*/) {
    messages_ << caption << ": " << text << '\n';
}

bool ToolHost::AskYesNo(const std::string& text, const std::string& caption) {
    messages_ << caption << ": " << text << " [no]\n";
    return false;
}

}  // namespace tolvane::tool
