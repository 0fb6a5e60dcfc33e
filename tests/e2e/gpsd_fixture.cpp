#include "tests/e2e/gpsd_fixture.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/base/csv_text.h"
#include "platform/process_runner.h"
#include "tests/core/nmea_sentence.h"

namespace tolvane::testing {
namespace {

constexpr auto kBatchInterval = std::chrono::milliseconds(500);
constexpr char kGpsdProgram[] = TOLVANE_GPSD_PROGRAM;

// "4807.0380,N": degrees and decimal minutes, then the hemisphere.
std::string NmeaCoordinate(double degrees, int degreeDigits, char positive, char negative) {
    const double magnitude = std::fabs(degrees);
    const int whole = static_cast<int>(magnitude);
    return FormatText("%0*d%07.4f,%c", degreeDigits, whole, (magnitude - whole) * 60.0,
                      degrees < 0 ? negative : positive);
}

// Receivers leave the position fields empty while they have no fix.
std::string Position(const SimulatedFix& fix) {
    if (!fix.valid) return ",,,";
    return NmeaCoordinate(fix.latitude, 2, 'N', 'S') + "," +
           NmeaCoordinate(fix.longitude, 3, 'E', 'W');
}

// The GSA and the four GSV sentences of the fourteen satellites.
std::string Satellites(bool valid) {
    std::string text =
        NmeaSentence(FormatText("GPGSA,A,%d,24,26,28,,,,,,,,,,2.5,1.3,2.1", valid ? 3 : 1));
    for (int message = 0; message < 4; ++message) {
        std::string body = FormatText("GPGSV,4,%d,14", message + 1);
        for (int prn = 2 + 8 * message; prn <= std::min(28, 8 + 8 * message); prn += 2) {
            body += FormatText(",%02d,%02d,%03d,%02d", prn, 10 + prn, 10 * prn, 20 + prn);
        }
        text += NmeaSentence(body);
    }
    return text;
}

// The RMC, GGA, GSA and GSV sentences of one fix at the given UTC time.
std::string NmeaBatch(const SimulatedFix& fix, const CivilTime& utc) {
    const std::string time = FormatText("%02d%02d%02d.00", utc.hour, utc.minute, utc.second);
    const std::string date = FormatText("%02d%02d%02d", utc.day, utc.month, utc.year % 100);
    const char status = fix.valid ? 'A' : 'V';
    return NmeaSentence(FormatText("GPRMC,%s,%c,", time.c_str(), status) + Position(fix) +
                        FormatText(",22.4,84.4,%s,,,%c", date.c_str(), fix.valid ? 'A' : 'N')) +
           NmeaSentence(FormatText("GPGGA,%s,", time.c_str()) + Position(fix) +
                        FormatText(",%d,03,1.3,545.4,M,46.9,M,,", fix.valid ? 1 : 0)) +
           Satellites(fix.valid);
}

sockaddr_in LoopbackAddress(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

}  // namespace

PseudoTerminalReceiver::PseudoTerminalReceiver() {
    if (!terminal_.IsOpen()) return;
    // The test keeps the far side open, so the terminal never hangs up while
    // gpsd restarts; writes must not block while nobody reads.
    fcntl(terminal_.Master(), F_SETFL, fcntl(terminal_.Master(), F_GETFL) | O_NONBLOCK);
    nextFixUtc_ = *CivilToFileTime(kFirstFixUtc);
    writer_ = std::thread(&PseudoTerminalReceiver::Run, this);
}

PseudoTerminalReceiver::~PseudoTerminalReceiver() {
    stopping_ = true;
    if (writer_.joinable()) writer_.join();
}

void PseudoTerminalReceiver::SetFix(const SimulatedFix& fix) {
    std::lock_guard<std::mutex> lock(mutex_);
    fix_ = fix;
}

FileTime PseudoTerminalReceiver::NextFixUtc() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return nextFixUtc_;
}

void PseudoTerminalReceiver::Run() {
    while (!stopping_) {
        if (!silent_) {
            std::lock_guard<std::mutex> lock(mutex_);
            const std::string batch = NmeaBatch(fix_, FileTimeToCivil(nextFixUtc_));
            // A full buffer (gpsd not reading) drops the batch, as a serial
            // line would; the receiver's time moves on with what was sent.
            if (terminal_.Send(batch)) nextFixUtc_ += kFileTimeTicksPerSecond;
        }
        std::this_thread::sleep_for(kBatchInterval);
    }
}

int FreeLoopbackPort() {
    const int socketFd = socket(AF_INET, SOCK_STREAM, 0);
    if (socketFd < 0) return 0;
    sockaddr_in address = LoopbackAddress(0);
    socklen_t length = sizeof address;
    int port = 0;
    if (bind(socketFd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        getsockname(socketFd, reinterpret_cast<sockaddr*>(&address), &length) == 0) {
        port = ntohs(address.sin_port);
    }
    close(socketFd);
    return port;
}

GpsdProcess::GpsdProcess(int port, const std::string& devicePath, const std::string& folder)
    : port_(port) {
    // -N foreground, -n read the device without clients, -b never write to
    // the device (no probing, which a pseudo-terminal never answers). Its
    // messages go to the test's standard error.
    pid_ = platform::StartProcess(
        kGpsdProgram,
        {"-N", "-n", "-b", "-S", std::to_string(port), "-F", folder + "/gpsd.sock", devicePath},
        {});
}

GpsdProcess::~GpsdProcess() {
    Stop();
}

bool GpsdProcess::WaitUntilListening(std::chrono::milliseconds limit) const {
    if (pid_ < 0) return false;
    return WaitUntil(
        [this] {
            const int socketFd = socket(AF_INET, SOCK_STREAM, 0);
            sockaddr_in address = LoopbackAddress(port_);
            const bool accepted =
                connect(socketFd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
            close(socketFd);
            return accepted;
        },
        limit);
}

void GpsdProcess::Stop() {
    if (pid_ < 0) return;
    kill(pid_, SIGTERM);
    const bool ended = WaitUntil([this] { return waitpid(pid_, nullptr, WNOHANG) == pid_; },
                                 std::chrono::seconds(5));
    if (!ended) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    pid_ = -1;
}

}  // namespace tolvane::testing
