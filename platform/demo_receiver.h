#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace tolvane::platform {

// A receiver that is not there: a pseudo-terminal whose far side a thread
// feeds with a recording, one recorded second of sentences each second, and
// from a chosen second on again when it ends. The program opens the terminal's device as
// it would a serial receiver, so the demo runs the same reader, parser and
// watchdog as a real receiver does.
class DemoReceiver {
  public:
    DemoReceiver() = default;
    ~DemoReceiver();
    DemoReceiver(const DemoReceiver&) = delete;
    DemoReceiver& operator=(const DemoReceiver&) = delete;

    // Opens the pseudo-terminal and starts feeding the seconds, all of them
    // once, then from loopFrom on over and over. False, with nothing
    // started, when there is nothing to play or no terminal to be had.
    bool Start(std::vector<std::string> seconds, std::size_t loopFrom = 0);
    // Stops the feeding thread and closes the terminal; the program's side
    // then sees the receiver hang up.
    void Stop();

    // The device the program opens, as "/dev/pts/N".
    const std::string& DevicePath() const { return devicePath_; }

  private:
    void Feed();
    // Waits one second, or less when the receiver is being stopped; false
    // when it is.
    bool WaitOneSecond();

    std::vector<std::string> seconds_;
    std::size_t loopFrom_ = 0;
    int master_ = -1;
    int slave_ = -1;  // kept open so the terminal outlives a closing reader
    std::string devicePath_;
    std::thread feeder_;
    std::mutex lock_;
    std::condition_variable wake_;
    bool stopping_ = false;
};

}  // namespace tolvane::platform
