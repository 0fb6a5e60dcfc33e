#include "platform/receiver_probe.h"

#include <cerrno>
#include <chrono>
#include <vector>

#include "core/gps/port_source.h"
#include "platform/receiver_setup.h"
#include "platform/serial_device.h"

namespace tolvane::platform {
namespace {

// Two checked sentences at a rate make it the receiver's: one could, very
// rarely, be noise that happens to add up.
constexpr int kSentencesToTrust = 2;

// A short read wait lets Stop return at once when the dialog moves on.
constexpr int kReadWaitTenths = 1;

std::vector<std::uint32_t> RatesToTry(std::uint32_t baudRate) {
    if (baudRate != 0) return {baudRate};
    std::vector<std::uint32_t> rates;
    for (int index = 0; index < kBaudCount; ++index) rates.push_back(BaudRateForIndex(index));
    return rates;
}

// Why the device failed: what opening it again finds, or else the device's
// own words.
DeviceProblem ProblemOf(const TermiosSerialDevice& device, const std::string& devicePath) {
    DeviceProblem problem = ProblemOpening(ResolvePortPath(devicePath));
    if (problem.fault == DeviceFault::kNone && !device.FailureReason().empty()) {
        problem = {DeviceFault::kOther, devicePath, {}, device.FailureReason()};
    }
    return problem;
}

}  // namespace

std::int64_t ReceiverProbe::Now() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

void ReceiverProbe::Start(const std::string& devicePath, std::uint32_t baudRate) {
    Stop();
    stopping_ = false;
    Update(ProbeStatus{});
    worker_ = std::thread(&ReceiverProbe::Run, this, devicePath, baudRate);
}

void ReceiverProbe::Stop() {
    stopping_ = true;
    if (worker_.joinable()) worker_.join();
}

ProbeStatus ReceiverProbe::Status() const {
    std::lock_guard<std::mutex> guard(mutex_);
    return status_;
}

void ReceiverProbe::Update(const ProbeStatus& status) {
    std::lock_guard<std::mutex> guard(mutex_);
    status_ = status;
}

void ReceiverProbe::Run(std::string devicePath, std::uint32_t baudRate) {
    ProbeStatus status;
    TermiosSerialDevice device;
    if (!device.Open(devicePath)) {
        status.problem = ProblemOf(device, devicePath);
        return Update(status);
    }
    const bool automatic = baudRate == 0;
    const std::vector<std::uint32_t> rates = RatesToTry(baudRate);
    NmeaListener listener;
    char buffer[kPortReadSize];
    for (std::size_t rate = 0; rate < rates.size() && !stopping_; ++rate) {
        status.baudRate = rates[rate];
        status.searching = automatic;
        listener.Reset();
        if (!device.Configure({rates[rate]}) || !device.SetReadWait(kReadWaitTenths)) {
            status.problem = ProblemOf(device, devicePath);
            return Update(status);
        }
        device.DiscardInput();
        const std::int64_t giveUp = Now() + listenMilliseconds_;
        while (!stopping_) {
            const int count = device.Read(buffer, sizeof buffer);
            if (count > 0) listener.Feed(buffer, count, Now());
            if (count < 0 || device.IsGone()) {
                status.problem = ProblemOfError(devicePath, ENODEV);
                status.summary = listener.Summary();
                return Update(status);
            }
            status.summary = listener.Summary();
            if (status.summary.sentences >= kSentencesToTrust) status.searching = false;
            Update(status);
            if (status.searching && Now() >= giveUp) break;
        }
        // Once the receiver is heard, the probe stays at its rate.
        if (!status.searching) break;
    }
    status.exhausted = automatic && status.searching;
    status.searching = false;
    Update(status);
}

}  // namespace tolvane::platform
