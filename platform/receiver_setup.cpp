#include "platform/receiver_setup.h"

#include <fcntl.h>
#include <grp.h>
#include <linux/serial.h>
#include <netdb.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <set>

#include "platform/serial_device.h"

namespace tolvane::platform {
namespace {

namespace fs = std::filesystem;

constexpr int kGpsdConnectMilliseconds = 1000;

std::vector<std::string> SortedEntries(const std::string& folder, const std::string& prefix) {
    std::vector<std::string> paths;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename().string();
        if (name.rfind(prefix, 0) == 0) paths.push_back(entry.path().string());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

// A /dev/ttyS* node exists for every port the kernel could drive; only
// those with a UART behind them answer with a known port type.
bool HasSerialPortBehind(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) return false;
    serial_struct info{};
    const bool answers = ioctl(fd, TIOCGSERIAL, &info) == 0 && info.type != PORT_UNKNOWN;
    ::close(fd);
    return answers;
}

std::string CanonicalPath(const std::string& path) {
    std::error_code error;
    const fs::path canonical = fs::canonical(path, error);
    return error ? path : canonical.string();
}

std::string GroupName(gid_t group) {
    const struct group* entry = getgrgid(group);
    return entry != nullptr ? entry->gr_name : std::to_string(group);
}

std::string EnvironmentOr(const char* name, const char* fallback) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0' ? value : fallback;
}

bool ConnectsWithin(const addrinfo& address, int milliseconds) {
    const int fd = socket(address.ai_family, address.ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC,
                          address.ai_protocol);
    if (fd < 0) return false;
    bool connected = connect(fd, address.ai_addr, address.ai_addrlen) == 0;
    if (!connected && errno == EINPROGRESS) {
        pollfd poller{fd, POLLOUT, 0};
        int error = 0;
        socklen_t length = sizeof error;
        connected = poll(&poller, 1, milliseconds) == 1 &&
                    getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &length) == 0 && error == 0;
    }
    ::close(fd);
    return connected;
}

}  // namespace

bool IsUsbSerialPort(const SerialPortEntry& entry) {
    return entry.path.find("/serial/by-id/") != std::string::npos ||
           entry.path.find("/ttyACM") != std::string::npos ||
           entry.path.find("/ttyUSB") != std::string::npos;
}

bool BluetoothAdapterPresent(const std::string& sysRoot) {
    std::error_code error;
    std::filesystem::directory_iterator adapters(sysRoot + "/class/bluetooth", error);
    return !error && adapters != std::filesystem::directory_iterator();
}

std::vector<SerialPortEntry> ListSerialPorts(const std::string& devRoot) {
    std::vector<SerialPortEntry> ports;
    std::set<std::string> covered;
    for (const std::string& path : SortedEntries(devRoot + "/serial/by-id", "")) {
        const std::string device = CanonicalPath(path);
        covered.insert(device);
        ports.push_back({path, fs::path(path).filename().string() + " (" +
                                   fs::path(device).filename().string() + ")"});
    }
    for (const char* prefix : {"ttyACM", "ttyUSB"}) {
        for (const std::string& path : SortedEntries(devRoot, prefix)) {
            if (covered.count(CanonicalPath(path)) == 0) {
                ports.push_back({path, fs::path(path).filename().string()});
            }
        }
    }
    for (const std::string& path : SortedEntries(devRoot, "ttyS")) {
        if (HasSerialPortBehind(path)) ports.push_back({path, fs::path(path).filename().string()});
    }
    return ports;
}

std::string ReadPortLink(const std::string& portName) {
    std::error_code error;
    const fs::path target = fs::read_symlink(ResolvePortPath(portName), error);
    return error ? std::string() : target.string();
}

bool WritePortLink(const std::string& portName, const std::string& devicePath,
                   std::string& reason) {
    const fs::path link = ResolvePortPath(portName);
    std::error_code error;
    fs::create_directories(link.parent_path(), error);
    if (!error) {
        fs::remove(link, error);
        if (!error) fs::create_symlink(devicePath, link, error);
    }
    if (!error) return true;
    reason = error.message();
    return false;
}

DeviceProblem ProblemOfError(const std::string& devicePath, int error) {
    struct stat node;
    if (error == ENOENT || error == ENODEV || error == ENXIO || error == EIO ||
        ::stat(devicePath.c_str(), &node) != 0) {
        return {DeviceFault::kGone, devicePath, {}, {}};
    }
    if (error == EACCES || error == EPERM) {
        return {DeviceFault::kNoPermission, devicePath, GroupName(node.st_gid), {}};
    }
    return {DeviceFault::kCannotOpen, devicePath, {}, std::strerror(error)};
}

DeviceProblem ProblemOpening(const std::string& devicePath) {
    const int fd = ::open(devicePath.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd >= 0) {
        ::close(fd);
        return {};
    }
    return ProblemOfError(devicePath, errno);
}

std::string GpsdAddressText() {
    return EnvironmentOr("GPSD_HOST", "localhost") + ":" + EnvironmentOr("GPSD_PORT", "2947");
}

bool GpsdAnswers() {
    addrinfo wanted{};
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(EnvironmentOr("GPSD_HOST", "localhost").c_str(),
                    EnvironmentOr("GPSD_PORT", "2947").c_str(), &wanted, &found) != 0) {
        return false;
    }
    bool answers = false;
    for (const addrinfo* each = found; each != nullptr && !answers; each = each->ai_next) {
        answers = ConnectsWithin(*each, kGpsdConnectMilliseconds);
    }
    freeaddrinfo(found);
    return answers;
}

}  // namespace tolvane::platform
