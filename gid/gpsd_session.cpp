#include "gid/gpsd_session.h"

#include <pthread.h>

#include <csignal>
#include <cstdlib>

#include "core/base/debug_trace.h"
#include "gid/gpsd_reports.h"

namespace tolvane::gid {
namespace {

// How long the worker waits for a report before it looks at the stop flag.
constexpr int kWaitMicroseconds = 250'000;
constexpr std::chrono::seconds kReconnectInterval{1};

std::string EnvironmentOr(const char* name, const char* fallback) {
    const char* value = std::getenv(name);
    return value != nullptr && value[0] != '\0' ? value : fallback;
}

}  // namespace

GpsdAddress GpsdAddressFromEnvironment() {
    return {EnvironmentOr("GPSD_HOST", "localhost"), EnvironmentOr("GPSD_PORT", DEFAULT_GPSD_PORT)};
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
    position_ = EmptyPositionInfo();
    device_ = GidDeviceInfo{};
}

GidPositionInfo GpsdSession::Position() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return position_;
}

GidDeviceInfo GpsdSession::Device() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return device_;
}

bool GpsdSession::ReceiverConnected() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return gpsdReachable_ && receiverOpen_ && SteadyClock::now() - lastReport_ < kSilenceTimeout;
}

bool GpsdSession::Connect() {
    const GpsdAddress address = GpsdAddressFromEnvironment();
    data_ = std::make_unique<gps_data_t>();
    if (gps_open(address.host.c_str(), address.port.c_str(), data_.get()) != 0) {
        DebugTrace("GID: gpsd at " + address.host + ":" + address.port + " cannot be reached\n");
        data_.reset();
        return false;
    }
    // Sends ?WATCH={"enable":true,"json":true}.
    if (gps_stream(data_.get(), WATCH_ENABLE | WATCH_JSON, nullptr) != 0) {
        gps_close(data_.get());
        data_.reset();
        return false;
    }
    std::lock_guard<std::mutex> lock(mutex_);
    gpsdReachable_ = true;
    return true;
}

void GpsdSession::Disconnect() {
    if (data_ == nullptr) return;
    // Closing the socket ends the watch; gpsd needs no goodbye.
    gps_close(data_.get());
    data_.reset();
    std::lock_guard<std::mutex> lock(mutex_);
    gpsdReachable_ = false;
}

void GpsdSession::Run(std::promise<bool> connected) {
    // A write to a gpsd that has just gone away must fail with EPIPE rather
    // than end the whole program with SIGPIPE; the signal goes to the thread
    // that writes, and every exchange with gpsd happens on this one.
    sigset_t pipe;
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipe, nullptr);

    const bool opened = Connect();
    connected.set_value(opened);
    if (!opened) return;
    while (!stopping_) {
        if (data_ == nullptr && !Connect()) {
            WaitBeforeReconnecting();
        } else if (gps_waiting(data_.get(), kWaitMicroseconds)) {
            ReadReport();
        }
    }
    Disconnect();
}

void GpsdSession::ReadReport() {
    // The client library adds to the flags of what it decoded; clearing
    // them first leaves only those of this report.
    data_->set = 0;
    if (gps_read(data_.get(), nullptr, 0) < 0) {
        DebugTrace("GID: the connection to gpsd was lost\n");
        Disconnect();
        return;
    }
    const gps_data_t& data = *data_;
    std::lock_guard<std::mutex> lock(mutex_);
    if ((data.set & (MODE_SET | SATELLITE_SET)) != 0) {
        lastReport_ = SteadyClock::now();
        receiverOpen_ = true;
        device_.lastReportTime = UtcToLocal(SystemClock().NowUtc());
    }
    if ((data.set & MODE_SET) != 0) ApplyPositionReport(data.fix, position_);
    if ((data.set & SATELLITE_SET) != 0) ApplySkyReport(data, position_);
    if ((data.set & DEVICELIST_SET) != 0 && data.devices.ndevices > 0) {
        ApplyDeviceReport(data.devices.list[0], device_);
    }
    if ((data.set & DEVICE_SET) != 0) {
        ApplyDeviceReport(data.dev, device_);
        receiverOpen_ = device_.activated != 0;
    }
}

void GpsdSession::WaitBeforeReconnecting() {
    std::unique_lock<std::mutex> lock(mutex_);
    wakeUp_.wait_for(lock, kReconnectInterval, [this] { return stopping_.load(); });
}

}  // namespace tolvane::gid
