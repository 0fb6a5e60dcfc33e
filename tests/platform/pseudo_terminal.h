#pragma once

#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>

namespace tolvane::testing {

// A receiver on the far side of a pseudo-terminal in raw mode: the test
// writes the receiver's bytes into the master side and the program opens the
// slave by its name, as it would a serial device.
class PseudoTerminal {
  public:
    PseudoTerminal() {
        // openpty would copy the name into a caller's buffer without knowing
        // its size, so the slave's name is asked of the terminal itself.
        if (openpty(&master_, &slave_, nullptr, nullptr, nullptr) != 0) {
            master_ = slave_ = -1;
            return;
        }
        if (const char* name = ttyname(slave_)) slaveName_ = name;
        termios line{};
        tcgetattr(slave_, &line);
        cfmakeraw(&line);
        tcsetattr(slave_, TCSANOW, &line);
    }
    ~PseudoTerminal() {
        HangUp();
        if (slave_ >= 0) close(slave_);
    }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    bool IsOpen() const { return master_ >= 0; }
    const std::string& SlaveName() const { return slaveName_; }
    int Master() const { return master_; }
    // True when every byte went out.
    bool Send(const std::string& bytes) {
        return write(master_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    }
    // The program's side then sees the receiver hang up.
    void HangUp() {
        if (master_ >= 0) close(master_);
        master_ = -1;
    }

  private:
    int master_ = -1;
    int slave_ = -1;
    std::string slaveName_;
};

// Polls condition until it holds or limit has passed.
inline bool WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

}  // namespace tolvane::testing
