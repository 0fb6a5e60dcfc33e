#pragma once

#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "core/base/file_time.h"
#include "tests/platform/pseudo_terminal.h"

// Real parts for the end-to-end tests of the shared GPS service: a receiver
// on a pseudo-terminal that the test writes, and gpsd on loopback reading it.

namespace tolvane::testing {

struct SimulatedSatellite {
    int prn = 0;
    int elevation = 0;
    int azimuth = 0;
    int snr = 0;
    bool used = false;
};

// What the simulated receiver reports in each batch of sentences.
struct SimulatedFix {
    bool valid = true;
    double latitude = 48.1173;    // degrees, north positive
    double longitude = 11.51667;  // degrees, east positive
    double altitude = 545.4;      // metres above mean sea level
    double speedKnots = 22.4;
    double course = 84.4;
    double pdop = 2.5;
    double hdop = 1.3;
    double vdop = 2.1;
    std::vector<SimulatedSatellite> satellites;
};

// A GPS receiver on a pseudo-terminal: a thread writes a batch of sentences
// every half second, each batch one second of receiver time later than the
// one before, starting at kFirstFixUtc.
class PseudoTerminalReceiver {
  public:
    static constexpr CivilTime kFirstFixUtc{2024, 5, 17, 10, 20, 30, 0};

    PseudoTerminalReceiver();
    ~PseudoTerminalReceiver();
    PseudoTerminalReceiver(const PseudoTerminalReceiver&) = delete;
    PseudoTerminalReceiver& operator=(const PseudoTerminalReceiver&) = delete;

    bool IsOpen() const { return terminal_.IsOpen(); }
    const std::string& DevicePath() const { return terminal_.SlaveName(); }
    void SetFix(const SimulatedFix& fix);
    // A silent receiver stays connected but sends nothing.
    void SetSilent(bool silent) { silent_ = silent; }
    // The receiver time (UTC) of the next batch.
    FileTime NextFixUtc() const;

  private:
    void Run();

    PseudoTerminal terminal_;
    mutable std::mutex mutex_;
    SimulatedFix fix_;
    FileTime nextFixUtc_ = 0;
    std::atomic<bool> silent_{false};
    std::atomic<bool> stopping_{false};
    std::thread writer_;
};

// A free TCP port on the loopback interface, 0 when none could be found.
int FreeLoopbackPort();

// gpsd in the foreground on a loopback port, reading one device. Stopped
// (and waited for) when destroyed, also when a test fails half-way.
class GpsdProcess {
  public:
    GpsdProcess(int port, const std::string& devicePath, const std::string& folder);
    ~GpsdProcess();
    GpsdProcess(const GpsdProcess&) = delete;
    GpsdProcess& operator=(const GpsdProcess&) = delete;

    // True once gpsd accepts connections on its port.
    bool WaitUntilListening(std::chrono::milliseconds limit) const;
    void Stop();
    // gpsd's own messages, for a failing test's report.
    std::string Log() const;

  private:
    int port_;
    std::string logPath_;
    pid_t pid_ = -1;
};

}  // namespace tolvane::testing
