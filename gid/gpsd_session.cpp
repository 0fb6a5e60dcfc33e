#include "gid/gpsd_session.h"

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "core/base/debug_trace.h"

namespace tolvane::gid {
namespace {

// How long the worker waits for gpsd's bytes before it looks at the stop
// flag.
constexpr int kWaitMilliseconds = 250;
constexpr std::chrono::seconds kReconnectInterval{1};
// What gpsd is asked for: every report, as JSON.
constexpr char kDefaultPort[] = "2947";
constexpr char kWatchRequest[] = "?WATCH={\"enable\":true,\"json\":true};\n";

std::string EnvironmentOr(const char* name, const char* fallback) {
    const char* value = std::getenv(name);
    return value != nullptr && value[0] != '\0' ? value : fallback;
}

// Waits until the socket's connect under way ends, at most timeout; true
// when it succeeded.
bool FinishConnect(int socket, std::chrono::milliseconds timeout) {
    pollfd poller{socket, POLLOUT, 0};
    if (poll(&poller, 1, static_cast<int>(timeout.count())) != 1) return false;
    int error = 0;
    socklen_t length = sizeof error;
    return getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &length) == 0 && error == 0;
}

// A socket connected to one of the addresses of address, each tried within
// kConnectTimeout; -1 when none answers. The socket stays non-blocking: the
// worker only reads what poll says has come.
int ConnectWithin(const GpsdAddress& address) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(address.host.c_str(), address.port.c_str(), &hints, &found) != 0) return -1;
    int connected = -1;
    for (const addrinfo* each = found; each != nullptr && connected < 0; each = each->ai_next) {
        const int fd = socket(each->ai_family, each->ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC,
                              each->ai_protocol);
        if (fd < 0) continue;
        const bool done = connect(fd, each->ai_addr, each->ai_addrlen) == 0 ||
                          (errno == EINPROGRESS && FinishConnect(fd, kConnectTimeout));
        if (done) {
            connected = fd;
        } else {
            close(fd);
        }
    }
    freeaddrinfo(found);
    return connected;
}

}  // namespace

GpsdAddress GpsdAddressFromEnvironment() {
    return {EnvironmentOr("GPSD_HOST", "localhost"), EnvironmentOr("GPSD_PORT", kDefaultPort)};
}

GpsdSession::~GpsdSession() {
    Close();
}

bool GpsdSession::Open() {
    if (worker_.joinable()) return true;
    stopping_ = false;
    std::promise<bool> connected;
    std::future<bool> firstConnection = connected.get_future();
    worker_ = std::thread(&GpsdSession::Run, this, std::move(connected));
    if (firstConnection.get()) return true;
    worker_.join();
    return false;
}

void GpsdSession::Close() {
    if (!worker_.joinable()) return;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    wakeUp_.notify_all();
    worker_.join();
}

void GpsdSession::Clear() {
    std::lock_guard<std::mutex> lock(mutex_);
    records_.position = EmptyPositionInfo();
    records_.device = GidDeviceInfo{};
}

GidPositionInfo GpsdSession::Position() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return records_.position;
}

GidDeviceInfo GpsdSession::Device() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return records_.device;
}

bool GpsdSession::ReceiverConnected() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return gpsdReachable_ && records_.receiverOpen &&
           SteadyClock::now() - lastReport_ < kSilenceTimeout;
}

bool GpsdSession::Connect() {
    const GpsdAddress address = GpsdAddressFromEnvironment();
    socket_ = ConnectWithin(address);
    // The request is far smaller than any socket buffer, so it goes at once
    // or not at all; MSG_NOSIGNAL keeps a gpsd that has just gone away from
    // ending the program with SIGPIPE.
    const std::size_t length = sizeof kWatchRequest - 1;
    if (socket_ < 0 ||
        send(socket_, kWatchRequest, length, MSG_NOSIGNAL) != static_cast<ssize_t>(length)) {
        DebugTrace("GID: gpsd at " + address.host + ":" + address.port + " cannot be reached\n");
        Disconnect();
        return false;
    }
    stream_ = GpsdReportStream();
    std::lock_guard<std::mutex> lock(mutex_);
    gpsdReachable_ = true;
    return true;
}

void GpsdSession::Disconnect() {
    if (socket_ >= 0) close(socket_);
    socket_ = -1;
    std::lock_guard<std::mutex> lock(mutex_);
    gpsdReachable_ = false;
}

void GpsdSession::Run(std::promise<bool> connected) {
    const bool opened = Connect();
    connected.set_value(opened);
    if (!opened) return;
    while (!stopping_) {
        if (socket_ < 0 && !Connect()) {
            WaitBeforeReconnecting();
        } else if (socket_ >= 0) {
            ReadReports();
        }
    }
    Disconnect();
}

void GpsdSession::ReadReports() {
    pollfd poller{socket_, POLLIN, 0};
    if (poll(&poller, 1, kWaitMilliseconds) <= 0) return;
    char bytes[4096];
    const ssize_t count = recv(socket_, bytes, sizeof bytes, 0);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (count <= 0) {
        DebugTrace("GID: the connection to gpsd was lost\n");
        Disconnect();
        return;
    }
    stream_.Receive({bytes, static_cast<std::size_t>(count)}, [this](std::string_view line) {
        std::lock_guard<std::mutex> lock(mutex_);
        if (ApplyReport(line, records_)) lastReport_ = SteadyClock::now();
    });
}

void GpsdSession::WaitBeforeReconnecting() {
    std::unique_lock<std::mutex> lock(mutex_);
    wakeUp_.wait_for(lock, kReconnectInterval, [this] { return stopping_.load(); });
}

}  // namespace tolvane::gid
