#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

#include "core/gps/nmea_listener.h"

namespace tolvane::platform {

// Listens to a device on a thread of its own, so that GPS Setup stays
// responsive while a receiver is slow to talk or a device hangs. With a
// baud rate of 0 ("Auto") it tries the seven rates of the baud table in
// turn until checked NMEA text arrives, then stays at that rate.
class ReceiverProbe {
  public:
    static constexpr int kDefaultListenMilliseconds = 2500;

    // listenMilliseconds: how long "Auto" listens at each rate.
    explicit ReceiverProbe(int listenMilliseconds = kDefaultListenMilliseconds)
        : listenMilliseconds_(listenMilliseconds) {}
    ~ReceiverProbe() { Stop(); }
    ReceiverProbe(const ReceiverProbe&) = delete;
    ReceiverProbe& operator=(const ReceiverProbe&) = delete;

    // Stops a probe that runs and starts listening to devicePath.
    void Start(const std::string& devicePath, std::uint32_t baudRate);
    // Returns within a tenth of a second, the longest a read of the probe
    // waits.
    void Stop();
    ProbeStatus Status() const;

    // The steady clock the summary's times are taken on, in milliseconds.
    static std::int64_t Now();

  private:
    void Run(std::string devicePath, std::uint32_t baudRate);
    void Update(const ProbeStatus& status);

    const int listenMilliseconds_;
    std::thread worker_;
    std::atomic<bool> stopping_{false};
    mutable std::mutex mutex_;
    ProbeStatus status_;
};

}  // namespace tolvane::platform
