#include "core/gps/port_source.h"

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <system_error>

#include "core/gps/bluetooth_port.h"

namespace tolvane {
namespace {

constexpr const char* kPortDevices[kPortCount] = {
    "COM0", "COM1", "COM2", "COM3", "COM4", "COM5", "COM6", "COM7", "COM8", "COM9",
    "GPD1", "GPD2", "GPD3", "GPD4", "GPD5", "GPD6", "GPD7", "GPD8", "GPD9"};

constexpr std::uint32_t kBaudRates[kBaudCount] = {4800, 9600, 14400, 19200, 38400, 57600, 115200};

void AddParseStats(NmeaParseStats& total, const NmeaParseStats& more) {
    total.rmc += more.rmc;
    total.gga += more.gga;
    total.gsa += more.gsa;
    total.gsv += more.gsv;
    total.checksumFailures += more.checksumFailures;
    total.brokenSentences += more.brokenSentences;
    total.zeroBytes += more.zeroBytes;
    total.otherTalkerRmc += more.otherTalkerRmc;
    if (more.otherTalkerRmc > 0) std::memcpy(total.otherTalker, more.otherTalker, 2);
}

// A Bluetooth link lives only until the source stops or fails to open; the
// device is closed in both cases, so forgetting the link is all.
void DeregisterBluetoothPort(PortSource& port) {
    port.btDevice = 0;
}

bool FailStart(PortSource& port, const char* code) {
    port.lastErrorCode = code;
    port.lastErrorReason.clear();
    if (port.links.device != nullptr) {
        port.lastErrorReason = port.links.device->FailureReason();
        port.links.device->Close();
    }
    DeregisterBluetoothPort(port);
    return false;
}

void KillWatchdog(PortSource& port) {
    if (port.watchdogTimer == 0) return;
    if (port.links.timers != nullptr) port.links.timers->KillTimer(port.watchdogTimer);
    port.watchdogTimer = 0;
}

void ResetReaderBuffers(PortSource& port) {
    std::memset(port.buffer, 0, sizeof port.buffer);
    port.bufferedBytes = 0;
    port.parseRequested = 0;
}

}  // namespace

// What a reader thread shares with the stop. The thread holds it while it
// runs, so it stays valid for a thread that the stop had to leave behind in
// a read that never returns; once abandoned is set the thread returns as
// soon as it gets the lock, without touching the source again. The lock is
// held by the thread for everything but its read and its pause.
struct ReaderLife {
    std::mutex lock;
    std::condition_variable signal;  // a stop was asked for, or the reader ended
    bool stopAsked = false;
    bool ended = false;
    bool abandoned = false;
    char readBuffer[kPortReadSize] = {};
};

namespace {

// Hands a read to the source; the caller holds the life's lock.
int HandleRead(PortSource& port, int count);

// One read of the device into the life's own buffer, so that a read that
// comes back after the stop gave up writes nothing of the source. Returns
// the read's count, or nullopt when the thread has been left behind.
std::optional<int> ThreadReaderPass(PortSource& port, ReaderLife& life,
                                    std::unique_lock<std::mutex>& guard) {
    SerialDevice* const device = port.links.device;
    guard.unlock();
    const int count = device->Read(life.readBuffer, kPortReadSize);
    guard.lock();
    if (life.abandoned) return std::nullopt;
    if (count > 0) std::memcpy(port.readBuffer, life.readBuffer, static_cast<std::size_t>(count));
    return HandleRead(port, count);
}

void ReaderThreadMain(PortSource& port, std::shared_ptr<ReaderLife> life) {
    std::unique_lock<std::mutex> guard(life->lock);
    ResetReaderBuffers(port);
    const auto stopAsked = [&life] { return life->stopAsked; };
    const auto pause = std::chrono::milliseconds(kReaderPauseMilliseconds);
    // A read that fills the whole read buffer leaves more waiting: a
    // receiver at 115200 baud with ten fixes a second sends more than one
    // such read per pause, and the reader would fall further behind every
    // second. So a full read is followed by the next at once; the pause
    // comes after a read that emptied the line, which keeps an idle reader
    // from spinning.
    while (IsPortOpen(port) && !life->signal.wait_for(guard, pause, stopAsked)) {
        std::optional<int> count;
        do {
            count = ThreadReaderPass(port, *life, guard);
            if (!count) return;
        } while (*count == kPortReadSize && !life->stopAsked);
    }
    port.stopRequested = 0;
    life->ended = true;
    life->signal.notify_all();
}

// Asks the reader to end and waits for it, at most kReaderStopMilliseconds:
// the reader notices within one pause or one read time-out. A reader still
// inside a read after that is left behind to end by itself.
void EndReaderThread(PortSource& port) {
    port.stopRequested = 1;
    if (!port.readerThread.joinable()) return;
    const std::shared_ptr<ReaderLife> life = std::move(port.readerLife);
    if (port.readerThread.get_id() == std::this_thread::get_id()) {
        // A stop from the reader's own thread, which holds the lock, cannot
        // wait for itself.
        life->stopAsked = true;
        port.lastErrorCode = kErrorReaderStop;
        port.readerThread.detach();
        return;
    }
    std::unique_lock<std::mutex> guard(life->lock);
    life->stopAsked = true;
    life->signal.notify_all();
    const bool ended = life->signal.wait_for(
        guard, std::chrono::milliseconds(kReaderStopMilliseconds), [&life] { return life->ended; });
    life->abandoned = !ended;
    guard.unlock();
    if (ended) {
        port.readerThread.join();
        return;
    }
    port.lastErrorCode = kErrorReaderStop;
    port.readerThread.detach();
}

bool SpawnReaderThread(PortSource& port) {
    try {
        port.readerLife = std::make_shared<ReaderLife>();
        port.readerThread = std::thread(ReaderThreadMain, std::ref(port), port.readerLife);
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

// The file is opened for each read and closed again, so a log that is
// copied off while the source runs is always complete.
void AppendToNmeaLog(const PortSource& port, int count) {
    if (!port.logNmea) return;
    const std::string path = port.NmeaLogPath();
    if (path.empty()) return;
    std::FILE* file = std::fopen(path.c_str(), "ab");
    if (file == nullptr) return;
    std::fwrite(port.readBuffer, 1, static_cast<std::size_t>(count), file);
    std::fclose(file);
}

// Appends the read as text, every byte counted.
void AppendRead(PortSource& port, int count) {
    const int zeroBytes =
        CopyReadAsText(port.buffer + std::strlen(port.buffer), port.readBuffer, count);
    port.bufferedBytes += count;
    if (zeroBytes == 0) return;
    std::lock_guard<std::mutex> guard(port.lock);
    port.parseStats.zeroBytes += zeroBytes;
}

// Appends the read that waited for a full buffer to be parsed. A tail too
// long to leave room for it is no sentence a receiver sends: it is dropped
// rather than let the text run past the buffer.
void AppendHeldBackRead(PortSource& port, int count) {
    if (std::strlen(port.buffer) + static_cast<std::size_t>(count) >= sizeof port.buffer) {
        port.buffer[0] = '\0';
        port.bufferedBytes = 0;
    }
    AppendRead(port, count);
}

void ParseBuffer(PortSource& port) {
    int rmcParsed = 0;
    {
        std::lock_guard<std::mutex> guard(port.lock);
        NmeaParseStats stats;
        const char* tail =
            ParseNmeaBuffer(port.record, port.paging, port.buffer, &stats, port.talkers.load());
        if (tail != nullptr) {
            const int offset = static_cast<int>(tail - port.buffer);
            std::memmove(port.buffer, tail, std::strlen(tail) + 1);
            port.bufferedBytes -= offset;
        } else {
            port.buffer[0] = '\0';
            port.bufferedBytes = 0;
        }
        AddParseStats(port.parseStats, stats);
        rmcParsed = stats.rmc;
    }
    if (!port.links.rmcParsed) return;
    for (int i = 0; i < rmcParsed; ++i) port.links.rmcParsed();
}

}  // namespace

PortSource::~PortSource() {
    if (readerThread.joinable()) EndReaderThread(*this);
}

void PortSource::SetNmeaLogPath(const std::string& path) {
    std::lock_guard<std::mutex> guard(nmeaLogPathLock_);
    nmeaLogPath_ = path;
}

std::string PortSource::NmeaLogPath() const {
    std::lock_guard<std::mutex> guard(nmeaLogPathLock_);
    return nmeaLogPath_;
}

std::string PortDeviceName(int portIndex) {
    if (portIndex < 0 || portIndex >= kPortCount) return {};
    return kPortDevices[portIndex];
}

std::uint32_t BaudRateForIndex(int baudIndex) {
    if (baudIndex < 0 || baudIndex >= kBaudCount) return 0;
    return kBaudRates[baudIndex];
}

bool RegisterBluetoothPort(PortSource& port, std::uint64_t bluetoothAddress, int channel) {
    DeregisterBluetoothPort(port);
    SerialDevice* device = port.links.device;
    if (device == nullptr || bluetoothAddress == 0) return FailStart(port, kErrorBluetoothPort);
    device->Close();
    const std::string name = BluetoothPortName(bluetoothAddress, channel);
    if (!device->Open(name)) return FailStart(port, kErrorBluetoothPort);
    port.btDevice = 1;
    port.btPortIndex = channel > 0 ? channel : kDefaultRfcommChannel;
    port.portName = name;
    return true;
}

bool OpenPort(PortSource& port) {
    SerialDevice* device = port.links.device;
    if (device == nullptr) return FailStart(port, kErrorPortOpen);
    // A Bluetooth link was opened when it was registered; opening it again
    // would make the receiver connect twice.
    const bool linked = port.btDevice != 0 && device->IsOpen();
    if (!linked) {
        device->Close();
        if (!device->Open(port.portName)) return FailStart(port, kErrorPortOpen);
    }
    const SerialSettings settings{port.baudRate, port.byteSize, port.parity, port.stopBits};
    if (!device->Configure(settings)) return FailStart(port, kErrorPortSettings);
    if (!device->SetReadTimeouts()) return FailStart(port, kErrorPortTimeouts);
    port.silentSeconds = 0;
    port.stopRequested = 0;
    port.stopReason = kStopReasonNone;
    return true;
}

bool StartReader(PortSource& port, ReaderDrive drive) {
    port.logNmea = port.links.logNmeaSetting != nullptr && *port.links.logNmeaSetting != 0;
    if (port.logNmea) BuildNmeaLogPath(port);

    KillWatchdog(port);
    if (port.links.timers != nullptr) {
        port.watchdogTimer =
            port.links.timers->StartTimer(kWatchdogMilliseconds, [&port] { WatchdogTick(port); });
    }
    if (port.watchdogTimer == 0) return FailStart(port, kErrorWatchdogTimer);

    if (drive == ReaderDrive::kCaller) {
        ResetReaderBuffers(port);
        return true;
    }
    if (port.readerThread.joinable()) EndReaderThread(port);
    port.stopRequested = 0;
    if (!SpawnReaderThread(port)) {
        KillWatchdog(port);
        return FailStart(port, kErrorReaderThread);
    }
    return true;
}

int StopPortSource(PortSource& port) {
    KillWatchdog(port);
    EndReaderThread(port);
    if (port.links.device != nullptr) port.links.device->Close();
    DeregisterBluetoothPort(port);
    port.silentSeconds = 0;
    return port.stopReason;
}

bool IsPortOpen(const PortSource& port) {
    return port.links.device != nullptr && port.links.device->IsOpen();
}

std::string PortErrorText(const PortSource& port) {
    if (port.lastErrorReason.empty()) return port.lastErrorCode;
    return port.lastErrorCode + " (" + port.lastErrorReason + ")";
}

int CopyReadAsText(char* text, const char* bytes, int count) {
    int zeroBytes = 0;
    for (int i = 0; i < count; ++i) {
        text[i] = bytes[i] != '\0' ? bytes[i] : '$';
        if (bytes[i] == '\0') ++zeroBytes;
    }
    text[count] = '\0';
    return zeroBytes;
}

int ReaderPass(PortSource& port) {
    return HandleRead(port, port.links.device->Read(port.readBuffer, kPortReadSize));
}

namespace {

int HandleRead(PortSource& port, int count) {
    if (count < 0) return count;

    bool heldBack = false;
    if (count > 0) {
        AppendToNmeaLog(port, count);
        port.silentSeconds = 0;
        if (port.bufferedBytes + count >= kPortBufferSize) {
            port.parseRequested = 1;
            heldBack = true;
        } else {
            AppendRead(port, count);
        }
    }
    if (port.parseRequested && port.bufferedBytes > 0) {
        ParseBuffer(port);
        port.parseRequested = 0;
    }
    if (heldBack) AppendHeldBackRead(port, count);
    return count;
}

}  // namespace

int WatchdogTick(PortSource& port) {
    int reason = kStopReasonNone;
    {
        std::lock_guard<std::mutex> guard(port.lock);
        port.parseRequested = 1;
        const int silent = ++port.silentSeconds;
        if (port.links.device != nullptr && port.links.device->IsGone()) {
            reason = kStopReasonDisconnected;
        } else if (silent >= kSilentSecondsLimit) {
            reason = kStopReasonSilent;
        }
        if (reason != kStopReasonNone) port.stopReason = reason;
    }
    // The lost-GPS command stops the source and clears the record, which
    // takes the lock again: it runs after the lock is left.
    if (reason != kStopReasonNone && port.links.lostGps) port.links.lostGps();
    return reason;
}

void BuildNmeaLogPath(PortSource& port) {
    const SystemClock systemClock;
    const Clock& clock = port.links.clock != nullptr ? *port.links.clock : systemClock;
    const CivilTime local = FileTimeToCivil(UtcToLocal(clock.NowUtc()));
    char name[64];
    std::snprintf(name, sizeof name, "%d%02d%02d%02d%02d%02d_NMEA0183.log", local.year, local.month,
                  local.day, local.hour, local.minute, local.second);
    port.SetNmeaLogPath(port.links.nmeaFolder + "/" + name);
}

}  // namespace tolvane
