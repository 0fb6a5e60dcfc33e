#include "platform/demo_receiver.h"

#include <fcntl.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>

namespace tolvane::platform {
namespace {

// Writes all of bytes, going on after interruptions; a terminal whose reader
// lags behind only drops what does not fit, as a real line would.
void WriteAll(int fd, const std::string& bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t written = write(fd, bytes.data() + done, bytes.size() - done);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        done += static_cast<std::size_t>(written);
    }
}

}  // namespace

DemoReceiver::~DemoReceiver() {
    Stop();
}

bool DemoReceiver::Start(std::vector<std::string> seconds, std::size_t loopFrom) {
    if (seconds.empty() || loopFrom >= seconds.size() || master_ >= 0) return false;
    char name[256] = {};
    if (openpty(&master_, &slave_, name, nullptr, nullptr) != 0) {
        master_ = slave_ = -1;
        return false;
    }
    // The master side must not block when nobody reads: the feeder would
    // then hang on a full terminal and never see the stop.
    fcntl(master_, F_SETFL, fcntl(master_, F_GETFL) | O_NONBLOCK);
    termios line{};
    tcgetattr(slave_, &line);
    cfmakeraw(&line);
    tcsetattr(slave_, TCSANOW, &line);
    devicePath_ = name;
    seconds_ = std::move(seconds);
    loopFrom_ = loopFrom;
    stopping_ = false;
    feeder_ = std::thread([this] { Feed(); });
    return true;
}

void DemoReceiver::Stop() {
    {
        std::lock_guard<std::mutex> guard(lock_);
        stopping_ = true;
    }
    wake_.notify_all();
    if (feeder_.joinable()) feeder_.join();
    if (master_ >= 0) close(master_);
    if (slave_ >= 0) close(slave_);
    master_ = slave_ = -1;
}

bool DemoReceiver::WaitOneSecond() {
    std::unique_lock<std::mutex> guard(lock_);
    return !wake_.wait_for(guard, std::chrono::seconds(1), [this] { return stopping_; });
}

void DemoReceiver::Feed() {
    for (std::size_t next = 0;; next = next + 1 < seconds_.size() ? next + 1 : loopFrom_) {
        WriteAll(master_, seconds_[next]);
        if (!WaitOneSecond()) return;
    }
}

}  // namespace tolvane::platform
