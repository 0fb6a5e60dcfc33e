#include "core/gps/port_source.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "tests/core/nmea_sentence.h"

namespace tolvane {
namespace {

using testing::NmeaSentence;

const std::string kRmc =
    NmeaSentence("GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W");

// A device that hands out scripted reads, one per call, then nothing.
class ScriptedDevice final : public SerialDevice {
  public:
    bool Open(const std::string&) override { return open = true; }
    bool IsOpen() const override { return open; }
    bool Configure(const SerialSettings&) override { return true; }
    bool SetReadTimeouts() override { return true; }
    int Read(char* buffer, int size) override {
        if (reads.empty()) return 0;
        const std::string next = reads.front();
        reads.pop_front();
        EXPECT_LE(static_cast<int>(next.size()), size);
        next.copy(buffer, next.size());
        return static_cast<int>(next.size());
    }
    bool IsGone() override { return gone; }
    void Close() override { open = false; }

    std::deque<std::string> reads;
    bool open = false;
    bool gone = false;
};

class ManualTimers final : public TimerService {
  public:
    int StartTimer(int, std::function<void()> callback) override {
        tick = std::move(callback);
        return 1;
    }
    void KillTimer(int) override { tick = nullptr; }
    std::function<void()> tick;
};

class PortSourceTest : public ::testing::Test {
  protected:
    PortSourceTest() {
        port.links.device = &device;
        port.links.timers = &timers;
        port.portName = "COM1:";
        EXPECT_TRUE(OpenPort(port));
        EXPECT_TRUE(StartReader(port, ReaderDrive::kCaller));
    }
    void ReadAll() {
        while (ReaderPass(port) > 0) {
        }
    }

    ScriptedDevice device;
    ManualTimers timers;
    PortSource port;
};

TEST(PortTablesTest, TenComPortsThenNineGpdPorts) {
    EXPECT_EQ(PortDeviceName(9), "COM9");
    EXPECT_EQ(PortDeviceName(10), "GPD1");
    EXPECT_EQ(PortDeviceName(18), "GPD9");
    EXPECT_EQ(PortDeviceName(19), "");
    EXPECT_EQ(BaudRateForIndex(7), 0u);
}

// An NMEA log that cannot be written is passed over: the bytes are still
// parsed.
TEST_F(PortSourceTest, TextIsParsedOnlyWhenTheWatchdogAsksAndEachRmcIsAnnounced) {
    int announced = 0;
    port.links.rmcParsed = [&] { ++announced; };
    port.logNmea = true;
    port.SetNmeaLogPath("/nonexistent-folder/x_NMEA0183.log");
    device.reads = {kRmc, kRmc};
    ReadAll();
    EXPECT_EQ(announced, 0);
    EXPECT_EQ(port.bufferedBytes, static_cast<int>(2 * kRmc.size()));
    ASSERT_TRUE(timers.tick);
    timers.tick();
    ReaderPass(port);
    EXPECT_EQ(announced, 2);
    EXPECT_EQ(port.bufferedBytes, 0);
    EXPECT_EQ(port.parseRequested, 0);
}

TEST_F(PortSourceTest, RunawayTextLongerThanTheBufferIsDroppedAndLaterReadsAreParsed) {
    // A '$' followed by 1500 bytes without an end is handed back whole by
    // every parse; the read that finds the buffer full must not overrun it.
    const std::string runaway = "$" + std::string(1500, 'A');
    std::string sentences;
    while (sentences.size() + kRmc.size() <= 1024) sentences += kRmc;
    device.reads = {runaway.substr(0, 1024), runaway.substr(1024), sentences};
    ReadAll();
    EXPECT_EQ(std::string(port.buffer), sentences);
    timers.tick();
    ReaderPass(port);
    EXPECT_EQ(port.parseStats.rmc, static_cast<int>(sentences.size() / kRmc.size()));
}

TEST_F(PortSourceTest, AZeroByteBreaksOnlyTheSentenceItStandsInAndIsCounted) {
    const std::string zero(1, '\0');
    device.reads = {kRmc + zero + kRmc.substr(0, 20) + zero + kRmc.substr(20) + kRmc};
    ReadAll();
    timers.tick();
    ReaderPass(port);
    EXPECT_EQ(port.parseStats.rmc, 2);
    EXPECT_EQ(port.parseStats.brokenSentences, 1);
    EXPECT_EQ(port.parseStats.zeroBytes, 2);
}

TEST_F(PortSourceTest, WatchdogReportsAGoneDeviceFirstAndCallsTheCommandOutsideTheLock) {
    int reason = kStopReasonNone;
    port.links.lostGps = [&] {
        // The lost-GPS command takes the lock to clear the record.
        ASSERT_TRUE(port.lock.try_lock());
        port.lock.unlock();
        reason = StopPortSource(port);
    };
    port.silentSeconds = kSilentSecondsLimit;
    device.gone = true;
    EXPECT_EQ(WatchdogTick(port), kStopReasonDisconnected);
    EXPECT_EQ(reason, kStopReasonDisconnected);
    EXPECT_EQ(port.silentSeconds, 0);
    EXPECT_FALSE(IsPortOpen(port));
    EXPECT_FALSE(timers.tick);
}

// A device whose read never comes back, as a broken driver's does, until
// the test lets it go. The read holds its own share of the gate, so the
// device may go before the read returns.
class HangingDevice final : public SerialDevice {
  public:
    struct Gate {
        std::mutex lock;
        std::condition_variable signal;
        bool reading = false;
        bool released = false;
    };

    bool Open(const std::string&) override { return open = true; }
    bool IsOpen() const override { return open; }
    bool Configure(const SerialSettings&) override { return true; }
    bool SetReadTimeouts() override { return true; }
    int Read(char*, int) override {
        const std::shared_ptr<Gate> held = gate;
        std::unique_lock<std::mutex> guard(held->lock);
        held->reading = true;
        held->signal.notify_all();
        held->signal.wait(guard, [&held] { return held->released; });
        return 0;
    }
    bool IsGone() override { return false; }
    void Close() override { open = false; }

    std::shared_ptr<Gate> gate = std::make_shared<Gate>();
    bool open = false;
};

// Stop GPS and the exit wait about a second for a reader stuck in a read,
// then leave it behind with the stop error. The source may then go; the
// reader, once its read returns, touches nothing of it and ends.
TEST(PortSourceStopTest, AReadThatNeverReturnsHoldsTheStopForAboutASecond) {
    HangingDevice device;
    ManualTimers timers;
    auto port = std::make_unique<PortSource>();
    port->links.device = &device;
    port->links.timers = &timers;
    ASSERT_TRUE(OpenPort(*port));
    ASSERT_TRUE(StartReader(*port));
    const std::shared_ptr<HangingDevice::Gate> gate = device.gate;
    {
        std::unique_lock<std::mutex> guard(gate->lock);
        gate->signal.wait(guard, [&gate] { return gate->reading; });
    }
    const std::weak_ptr<ReaderLife> life = port->readerLife;

    const auto start = std::chrono::steady_clock::now();
    StopPortSource(*port);
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, std::chrono::milliseconds(kReaderStopMilliseconds));
    EXPECT_LT(waited, std::chrono::seconds(5));
    EXPECT_EQ(port->lastErrorCode, kErrorReaderStop);
    EXPECT_FALSE(port->readerThread.joinable());

    port.reset();
    {
        std::lock_guard<std::mutex> guard(gate->lock);
        gate->released = true;
    }
    gate->signal.notify_all();
    for (int wait = 0; wait < 500 && !life.expired(); ++wait) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_TRUE(life.expired());
}

}  // namespace
}  // namespace tolvane
