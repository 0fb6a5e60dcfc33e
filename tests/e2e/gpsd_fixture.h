#pragma once

#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <string>
#include <thread>

#include "core/base/file_time.h"
#include "tests/platform/pseudo_terminal.h"

// Real parts for the end-to-end tests of the shared GPS service: a receiver
// on a pseudo-terminal that the test writes, and gpsd on loopback reading it.

namespace tolvane::testing {

// What the simulated receiver reports besides its position: 22.4 knots at
// 84.4 degrees, 545.4 m above sea level, PDOP 2.5, HDOP 1.3, VDOP 2.1, and
// fourteen satellites, PRN 2 to 28 in steps of two, each at elevation
// 10 + PRN, azimuth 10 x PRN and SNR 20 + PRN, of which 24, 26 and 28 are
// used. Without a fix it leaves the position empty and still sees them.
struct SimulatedFix {
    bool valid = true;
    double latitude = 48.1173;    // degrees, north positive
    double longitude = 11.51667;  // degrees, east positive
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

  private:
    int port_;
    pid_t pid_ = -1;
};

}  // namespace tolvane::testing
