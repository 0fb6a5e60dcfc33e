#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <string>
#include <thread>

#include "core/gps/gid_records.h"
#include "gid/gpsd_reports.h"

namespace tolvane::gid {

// Where gpsd listens: GPSD_HOST and GPSD_PORT when set, else localhost:2947.
struct GpsdAddress {
    std::string host;
    std::string port;
};
GpsdAddress GpsdAddressFromEnvironment();

// Reports newer than this keep the receiver connected. gpsd keeps a receiver
// that died "activated" and simply stops reporting, so silence is the only
// sign of a lost receiver; receivers report at least once a second.
inline constexpr std::chrono::seconds kSilenceTimeout{5};

// How long a connection to gpsd may take to be made. A gpsd that has gone
// away on another machine, or one that no longer accepts, would otherwise
// keep the connect waiting for minutes, and with it the program's start.
inline constexpr std::chrono::milliseconds kConnectTimeout{1500};

// One watching client of gpsd. A worker thread connects, reads gpsd's JSON
// reports and keeps the records up to date; the program's calls copy them
// under the mutex. When gpsd goes away the worker connects again once a
// second. No wait of the worker lasts longer than kConnectTimeout, so
// opening and closing never hold the caller longer.
class GpsdSession {
  public:
    GpsdSession() = default;
    ~GpsdSession();
    GpsdSession(const GpsdSession&) = delete;
    GpsdSession& operator=(const GpsdSession&) = delete;

    // Connects to gpsd and starts watching; false when gpsd cannot be
    // reached within kConnectTimeout. True at once while already open.
    bool Open();
    // Stops the worker and leaves gpsd; the records stay as they are.
    void Close();
    // Empties both records.
    void Clear();

    GidPositionInfo Position() const;
    GidDeviceInfo Device() const;
    // Connected to gpsd, the receiver open and a report within the time-out.
    bool ReceiverConnected() const;

  private:
    using SteadyClock = std::chrono::steady_clock;

    bool Connect();
    void Disconnect();
    void Run(std::promise<bool> connected);
    // Waits a little for gpsd's next bytes and applies the reports they
    // complete.
    void ReadReports();
    void WaitBeforeReconnecting();

    // Only the worker touches these.
    int socket_ = -1;
    GpsdReportStream stream_;
    std::thread worker_;
    std::atomic<bool> stopping_{false};

    mutable std::mutex mutex_;
    std::condition_variable wakeUp_;
    GpsdRecords records_;
    bool gpsdReachable_ = false;
    SteadyClock::time_point lastReport_{};
};

}  // namespace tolvane::gid
