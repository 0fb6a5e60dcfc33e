#include "platform/serial_device.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include "core/base/program_paths.h"

namespace tolvane::platform {
namespace {

constexpr char kPortFolder[] = "ports";

void SleepMilliseconds(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

// The termios constant of a rate; 0 for a rate without one.
speed_t SpeedConstant(std::uint32_t baudRate) {
    switch (baudRate) {
        case 4800:
            return B4800;
        case 9600:
            return B9600;
        case 19200:
            return B19200;
        case 38400:
            return B38400;
        case 57600:
            return B57600;
        case 115200:
            return B115200;
        case 230400:
            return B230400;
        default:
            return 0;
    }
}

tcflag_t CharacterSize(std::uint8_t byteSize) {
    switch (byteSize) {
        case 5:
            return CS5;
        case 6:
            return CS6;
        case 7:
            return CS7;
        default:
            return CS8;
    }
}

// Parity codes: 0 none, 1 odd, 2 even, 3 mark, 4 space.
tcflag_t ParityFlags(std::uint8_t parity) {
    switch (parity) {
        case 1:
            return PARENB | PARODD;
        case 2:
            return PARENB;
        case 3:
            return PARENB | PARODD | CMSPAR;
        case 4:
            return PARENB | CMSPAR;
        default:
            return 0;
    }
}

// Raw bytes in and out, the character format of settings, software flow
// control in both directions and no hardware flow control. The modem lines
// are ignored, so a receiver without them is read all the same.
void ApplyLineSettings(termios& line, const SerialSettings& settings) {
    line.c_iflag &= ~(IGNBRK | BRKINT | PARMRK | ISTRIP | INLCR | IGNCR | ICRNL | IXANY | INPCK);
    line.c_iflag |= IXON | IXOFF;
    if (settings.parity != 0) line.c_iflag |= INPCK;
    line.c_oflag &= ~OPOST;
    line.c_lflag &= ~(ECHO | ECHONL | ICANON | ISIG | IEXTEN);
    line.c_cflag &= ~(CSIZE | PARENB | PARODD | CMSPAR | CSTOPB | CRTSCTS);
    line.c_cflag |=
        CharacterSize(settings.byteSize) | ParityFlags(settings.parity) | CREAD | CLOCAL;
    if (settings.stopBits != 0) line.c_cflag |= CSTOPB;
    const speed_t speed = SpeedConstant(settings.baudRate);
    // A rate without a constant is set afterwards; B38400 stands in for it.
    cfsetispeed(&line, speed != 0 ? speed : B38400);
    cfsetospeed(&line, speed != 0 ? speed : B38400);
}

// An error that can pass while a device comes up: a Bluetooth or USB
// receiver that is still settling, or a line another program has just left.
bool CanPass(int error) {
    return error == EIO || error == ENXIO || error == EAGAIN || error == EBUSY || error == EINTR;
}

}  // namespace

std::string ResolvePortPath(const std::string& name) {
    if (name.find('/') != std::string::npos) return name;
    std::string port = name;
    if (!port.empty() && port.back() == ':') port.pop_back();
    return SettingsFile(std::string(kPortFolder) + "/" + port);
}

TermiosSerialDevice::TermiosSerialDevice() : sleep_(SleepMilliseconds) {}

TermiosSerialDevice::TermiosSerialDevice(Sleeper sleep) : sleep_(std::move(sleep)) {}

TermiosSerialDevice::~TermiosSerialDevice() {
    Close();
}

bool TermiosSerialDevice::Open(const std::string& name) {
    Close();
    reason_.clear();
    path_ = ResolvePortPath(name);
    const int fd = ::open(path_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) return Fail();
    // No other program shares the receiver while it is ours; a device that
    // cannot be made exclusive is read all the same.
    ioctl(fd, TIOCEXCL);
    fd_ = fd;
    return true;
}

bool TermiosSerialDevice::Configure(const SerialSettings& settings) {
    // Some drivers answer the first queries only after the device has
    // settled, so the settings are asked for again, a second apart, while
    // the error is one that can pass; when they never come, the line is set
    // up from cleared settings. Something that is no terminal at all
    // (/dev/null, a regular file) never answers, and fails at once.
    termios line{};
    for (int attempt = 0; tcgetattr(fd_, &line) != 0; ++attempt) {
        if (!CanPass(errno)) return Fail();
        if (attempt == kSettingsRetries) {
            line = termios{};
            break;
        }
        sleep_(kSettingsRetryMilliseconds);
    }
    ApplyLineSettings(line, settings);
    if (tcsetattr(fd_, TCSANOW, &line) != 0) return Fail();
    if (SpeedConstant(settings.baudRate) == 0 && !SetCustomBaudRate(fd_, settings.baudRate)) {
        return Fail();
    }
    // DTR and RTS stay low. A pseudo-terminal has no modem lines and
    // refuses this, which is fine.
    const int modemLines = TIOCM_DTR | TIOCM_RTS;
    ioctl(fd_, TIOCMBIC, &modemLines);
    return true;
}

bool TermiosSerialDevice::SetReadWait(int tenths) {
    termios line{};
    if (tcgetattr(fd_, &line) != 0) return Fail();
    line.c_cc[VMIN] = 0;                           // return with whatever has arrived ...
    line.c_cc[VTIME] = static_cast<cc_t>(tenths);  // ... or when the wait is over
    return tcsetattr(fd_, TCSANOW, &line) == 0 || Fail();
}

void TermiosSerialDevice::DiscardInput() {
    tcflush(fd_, TCIFLUSH);
}

int TermiosSerialDevice::Read(char* buffer, int size) {
    const ssize_t count = ::read(fd_, buffer, static_cast<std::size_t>(size));
    if (count >= 0) return static_cast<int>(count);
    if (errno == EINTR || errno == EAGAIN) return 0;
    if (errno == EIO || errno == ENXIO || errno == ENODEV) hungUp_ = true;
    return -1;
}

bool TermiosSerialDevice::IsGone() {
    if (fd_ < 0) return false;
    if (hungUp_) return true;
    pollfd poller{fd_, POLLIN, 0};
    if (poll(&poller, 1, 0) > 0 && (poller.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0) {
        return true;
    }
    struct stat node;
    return stat(path_.c_str(), &node) != 0 && errno == ENOENT;
}

bool TermiosSerialDevice::Fail() {
    reason_ = std::strerror(errno);
    return false;
}

void TermiosSerialDevice::Close() {
    const int fd = fd_.exchange(-1);
    if (fd >= 0) ::close(fd);
    hungUp_ = false;
}

}  // namespace tolvane::platform
