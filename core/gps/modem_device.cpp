#include "core/gps/modem_device.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <thread>

#include "core/base/string_manager.h"
#include "core/gps/daemon_ports.h"

namespace tolvane {

std::string ModemFaultText(ModemFault fault) {
    switch (fault) {
        case ModemFault::kNone:
            return {};
        case ModemFault::kNoModemManager:
            return LanguageText(kTextModemNoManager);
        case ModemFault::kNoModem:
            return LanguageText(kTextModemNone);
        case ModemFault::kNoGnss:
            return LanguageText(kTextModemNoGnss);
        case ModemFault::kRefused:
            return LanguageText(kTextModemRefused);
    }
    return {};
}

bool ModemSerialDevice::Open(const std::string& name) {
    Close();
    reason_.clear();
    if (name != kModemPortName) {
        reason_ = ModemFaultText(ModemFault::kNoModem);
        return false;
    }
    const ModemFault fault = location_.Start();
    if (fault != ModemFault::kNone) {
        reason_ = ModemFaultText(fault);
        return false;
    }
    open_ = true;
    gone_ = false;
    last_.clear();
    pending_.clear();
    return true;
}

int ModemSerialDevice::Read(char* buffer, int size) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point until = Clock::now() + std::chrono::seconds(1);
    while (pending_.empty() && !gone_) {
        std::string sentences;
        if (!location_.ReadNmea(sentences)) {
            gone_ = true;
            return -1;
        }
        // A port of its own waits for the bytes itself, a second at most.
        if (location_.Streams()) {
            pending_ = std::move(sentences);
            break;
        }
        if (!sentences.empty() && sentences != last_) {
            last_ = sentences;
            // The modem hands the sentences without the last line's end.
            pending_ = sentences.ends_with('\n') ? sentences : sentences + "\r\n";
            break;
        }
        if (Clock::now() >= until) return 0;
        std::this_thread::sleep_for(std::chrono::milliseconds(kAskMilliseconds));
    }
    const std::size_t count = std::min(pending_.size(), static_cast<std::size_t>(std::max(0, size)));
    std::memcpy(buffer, pending_.data(), count);
    pending_.erase(0, count);
    return static_cast<int>(count);
}

void ModemSerialDevice::Close() {
    if (!open_) return;
    open_ = false;
    location_.Stop();
}

}  // namespace tolvane
