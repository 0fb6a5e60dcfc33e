#include "platform/socket_device.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

#include "core/gps/bluetooth_port.h"
#include "core/gps/daemon_ports.h"

namespace tolvane::platform {
namespace {

// BlueZ's socket constants and address record, as its kernel interface
// defines them; the development headers of libbluetooth are not needed for
// these few.
constexpr int kAddressFamilyBluetooth = 31;  // AF_BLUETOOTH
constexpr int kProtocolRfcomm = 3;           // BTPROTO_RFCOMM

struct RfcommAddress {
    sa_family_t family;
    std::uint8_t address[6];  // least significant byte first
    std::uint8_t channel;
};

RfcommAddress MakeAddress(std::uint64_t address, int channel) {
    RfcommAddress socketAddress{};
    socketAddress.family = kAddressFamilyBluetooth;
    for (int i = 0; i < 6; ++i)
        socketAddress.address[i] = static_cast<std::uint8_t>(address >> (8 * i));
    socketAddress.channel = static_cast<std::uint8_t>(channel);
    return socketAddress;
}

// Connects without blocking for longer than the limit: a receiver that is
// switched off or out of reach would otherwise hold the caller for as long
// as the kernel's own time-out. Returns 0 or the error.
int ConnectWithin(int fd, const void* address, unsigned addressLength, int milliseconds) {
    const int flags = fcntl(fd, F_GETFL);
    fcntl(fd, F_SETFL, flags | O_NONBLOCK);
    if (connect(fd, static_cast<const sockaddr*>(address), addressLength) != 0 &&
        errno != EINPROGRESS) {
        return errno;
    }
    pollfd poller{fd, POLLOUT, 0};
    const int ready = poll(&poller, 1, milliseconds);
    if (ready == 0) return ETIMEDOUT;
    if (ready < 0) return errno;
    int error = 0;
    socklen_t length = sizeof error;
    getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &length);
    fcntl(fd, F_SETFL, flags);
    return error;
}

}  // namespace

bool SocketDevice::Connect(int family, int protocol, const void* address, unsigned addressLength,
                           int milliseconds) {
    Close();
    reason_.clear();
    const int fd = socket(family, SOCK_STREAM | SOCK_CLOEXEC, protocol);
    if (fd < 0) return Fail(errno);
    const int error = ConnectWithin(fd, address, addressLength, milliseconds);
    if (error != 0) {
        ::close(fd);
        return Fail(error);
    }
    fd_ = fd;
    return true;
}

bool SocketDevice::SetReadTimeouts() {
    // As on a serial line: a read waits up to one second for the first byte.
    const timeval second{1, 0};
    if (setsockopt(fd_, SOL_SOCKET, SO_RCVTIMEO, &second, sizeof second) != 0) return Fail(errno);
    return true;
}

int SocketDevice::Read(char* buffer, int size) {
    const ssize_t count = recv(fd_, buffer, static_cast<std::size_t>(size), 0);
    if (count > 0) return static_cast<int>(count);
    // An orderly end of the stream is the receiver switched off or gone.
    if (count == 0) {
        hungUp_ = true;
        return 0;
    }
    if (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR) return 0;
    hungUp_ = true;
    return -1;
}

bool SocketDevice::IsGone() {
    if (fd_ < 0) return false;
    if (hungUp_) return true;
    pollfd poller{fd_, POLLIN, 0};
    return poll(&poller, 1, 0) > 0 && (poller.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
}

void SocketDevice::Close() {
    const int fd = fd_.exchange(-1);
    if (fd >= 0) ::close(fd);
    hungUp_ = false;
}

bool SocketDevice::Fail(int error) {
    reason_ = std::strerror(error);
    return false;
}

bool RfcommSerialDevice::Open(const std::string& name) {
    std::uint64_t address = 0;
    int channel = 0;
    if (!ParseBluetoothPortName(name, address, channel)) return Fail(EINVAL);
    const RfcommAddress socketAddress = MakeAddress(address, channel);
    return Connect(kAddressFamilyBluetooth, kProtocolRfcomm, &socketAddress, sizeof socketAddress,
                   kConnectMilliseconds);
}

bool UnixSocketDevice::Open(const std::string& name) {
    const std::string path = SocketPathOf(name);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path) return Fail(EINVAL);
    std::memcpy(address.sun_path, path.data(), path.size());
    return Connect(AF_UNIX, 0, &address, sizeof address, kConnectMilliseconds);
}

}  // namespace tolvane::platform
