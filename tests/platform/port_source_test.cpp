#include "core/gps/port_source.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <sstream>

#include "core/app/gps_commands.h"
#include "core/base/string_manager.h"
#include "headless/port_run.h"
#include "platform/serial_device.h"
#include "tests/core/nmea_sentence.h"
#include "tests/core/test_support.h"
#include "tests/platform/pseudo_terminal.h"
#include "tests/platform/scoped_environment.h"

namespace tolvane {
namespace {

using namespace std::chrono_literals;
using testing::NmeaSentence;
using testing::WaitUntil;

std::string Rmc(int second) {
    char body[80];
    std::snprintf(body, sizeof body,
                  "GPRMC,1235%02d,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W", second);
    return NmeaSentence(body);
}

class FixedClock final : public Clock {
  public:
    FileTime NowUtc() const override { return now; }
    FileTime now = *CivilToFileTime({2011, 7, 4, 9, 30, 15, 0});
};

// The port source on a real pseudo-terminal, with its real reader thread;
// the tool's host holds the watchdog, which the tests fire by hand.
class PortSourceOnPty : public ::testing::Test {
  protected:
    PortSourceOnPty()
        : device_([this](int milliseconds) { slept_ += milliseconds; }),
          host_(clock_, quiet_, quiet_, quiet_, messages_) {
        ProgramPaths paths;
        paths.programFolder = TOLVANE_PROGRAM_DIR;
        SetProgramPaths(paths);
        CStringManager::GetInstance().Load(kLanguageEnglish, kSubLanguageEnglishUs);
        folder_.UseAsProgramFolder();

        ResetOptions(options_);
        options_.logNmea = 1;
        port_.links.device = &device_;
        port_.links.logNmeaSetting = &options_.logNmea;
        port_.links.nmeaFolder = folder_.Path();
        LinkPortSourceToHost(port_, host_);
        port_.links.lostGps = [this] { shown_ = StopLostPortGps(port_, host_); };
    }
    ~PortSourceOnPty() override { StopPortSource(port_); }

    void Start(const std::string& portName) {
        port_.portName = portName;
        ASSERT_TRUE(OpenPort(port_)) << port_.lastErrorCode;
        ASSERT_TRUE(StartReader(port_));
    }

    // Sends bytes and waits until the reader has read them all, which the
    // NMEA log shows: it receives each read before the read is used.
    void SendAndWaitForRead(const std::string& bytes) {
        sent_ += bytes;
        ASSERT_TRUE(receiver_.Send(bytes));
        ASSERT_TRUE(WaitUntil([&] { return LogBytes().size() == sent_.size(); }, 10s));
    }

    std::string LogBytes() const { return testing::ReadFileBytes(port_.NmeaLogPath()); }

    NmeaParseStats Stats() {
        std::lock_guard<std::mutex> guard(port_.lock);
        return port_.parseStats;
    }

    // Fires the watchdog until condition holds: a tick that lands inside a
    // parse is used up by it, so one tick may not be enough.
    bool TickUntil(const std::function<bool()>& condition) {
        for (int tick = 0; tick < 20; ++tick) {
            host_.FireTimers();
            const bool parsed = WaitUntil([&] { return port_.parseRequested == 0; }, 10s);
            if (parsed && condition()) return true;
        }
        return false;
    }

    testing::TemporaryFolder folder_;
    testing::PseudoTerminal receiver_;
    int slept_ = 0;
    platform::TermiosSerialDevice device_;
    FixedClock clock_;
    QuietServices quiet_;
    std::ostringstream messages_;
    headless::HeadlessHost host_;
    AppState app_;
    Options& options_ = app_.options;
    PortSource port_;
    std::uint32_t shown_ = 0;
    std::string sent_;
};

TEST_F(PortSourceOnPty, SentenceSplitAcrossReadsIsParsedWholeOnceItsSecondHalfArrives) {
    Start(receiver_.SlaveName());
    const std::string rmc = Rmc(19);
    SendAndWaitForRead(rmc.substr(0, 30));
    ASSERT_TRUE(TickUntil([] { return true; }));
    EXPECT_EQ(Stats().rmc, 0);
    SendAndWaitForRead(rmc.substr(30));
    ASSERT_TRUE(TickUntil([&] { return Stats().rmc == 1; }));
    EXPECT_EQ(Stats().brokenSentences, 0);
    EXPECT_EQ(StopPortSource(port_), kStopReasonNone);
}

TEST_F(PortSourceOnPty, MoreThan2048BytesBetweenTicksForceAParseAndLoseNothing) {
    Start(receiver_.SlaveName());
    std::string burst;
    for (int second = 0; second < 40; ++second) burst += Rmc(second);
    ASSERT_GT(burst.size(), 2048u);
    SendAndWaitForRead(burst);
    // No watchdog tick yet: only the full buffer can have caused a parse.
    EXPECT_TRUE(WaitUntil([&] { return Stats().rmc > 0; }, 10s));
    EXPECT_LT(Stats().rmc, 40);
    ASSERT_TRUE(TickUntil([&] { return Stats().rmc == 40; }));
    std::lock_guard<std::mutex> guard(port_.lock);
    EXPECT_STREQ(port_.record.rmc.utcTime, "123539");
    EXPECT_EQ(port_.parseStats.checksumFailures + port_.parseStats.brokenSentences, 0);
}

TEST_F(PortSourceOnPty, AFastReceiverIsReadAsFastAsItSends) {
    Start(receiver_.SlaveName());
    // Six seconds of a receiver at 115200 baud in one burst. At one read of
    // 1024 bytes a pause the reader would need thirteen seconds, and the
    // data it shows would grow older every second.
    std::string burst;
    while (burst.size() < 64 * 1024) burst += Rmc(static_cast<int>(burst.size() % 60));
    const auto start = std::chrono::steady_clock::now();
    SendAndWaitForRead(burst);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 6s);
}

TEST_F(PortSourceOnPty, ThirtySilentSecondsStopTheSourceWithReasonTwo) {
    Start(receiver_.SlaveName());
    SendAndWaitForRead(Rmc(1));
    ASSERT_TRUE(TickUntil([&] { return Stats().rmc == 1; }));
    port_.silentSeconds = 0;
    for (int second = 1; second < 30; ++second) host_.FireTimers();
    EXPECT_EQ(shown_, 0u);
    EXPECT_TRUE(IsPortOpen(port_));
    host_.FireTimers();
    EXPECT_EQ(shown_, kTextGpsSilent);
    EXPECT_EQ(port_.stopReason, kStopReasonSilent);
    EXPECT_FALSE(IsPortOpen(port_));
    EXPECT_NE(messages_.str().find("for 30 seconds"), std::string::npos);
    std::lock_guard<std::mutex> guard(port_.lock);
    EXPECT_EQ(port_.record.rmc.status, '\0');  // the record was cleared
}

TEST_F(PortSourceOnPty, FarSideHangingUpStopsTheSourceWithReasonOne) {
    Start(receiver_.SlaveName());
    SendAndWaitForRead(Rmc(1));
    host_.FireTimers();
    EXPECT_EQ(shown_, 0u);
    receiver_.HangUp();
    host_.FireTimers();
    EXPECT_EQ(shown_, kTextGpsDisconnected);
    EXPECT_EQ(port_.stopReason, kStopReasonDisconnected);
    EXPECT_FALSE(IsPortOpen(port_));
    EXPECT_NE(messages_.str().find("disconnected"), std::string::npos);
}

TEST_F(PortSourceOnPty, NmeaLogHoldsEveryByteReadAndASecondStartInTheSameSecondAppends) {
    Start(receiver_.SlaveName());
    const std::string path = port_.NmeaLogPath();
    EXPECT_EQ(path, folder_.File("20110704093015_NMEA0183.log"));
    std::string dropped = Rmc(1);
    dropped[dropped.size() - 3] ^= 1;  // a wrong checksum digit
    const std::string first = "garbage\r\n" + Rmc(2) + dropped + NmeaSentence("GPVTG,054.7,T,,M") +
                              std::string("\0\x7f\xff", 3) + Rmc(3).substr(0, 20);
    SendAndWaitForRead(first);
    ASSERT_TRUE(TickUntil([&] { return Stats().checksumFailures == 1; }));
    StopPortSource(port_);

    Start(receiver_.SlaveName());
    EXPECT_EQ(port_.NmeaLogPath(), path);
    SendAndWaitForRead(Rmc(4));
    EXPECT_EQ(testing::ReadFileBytes(path), sent_);

    // Switching the option off stops the writes at the next read.
    port_.logNmea = false;
    ASSERT_TRUE(receiver_.Send(Rmc(5)));
    ASSERT_TRUE(TickUntil([&] { return Stats().rmc >= 3; }));
    EXPECT_EQ(testing::ReadFileBytes(path), sent_);
}

TEST(NmeaLogNameTest, IsTheLocalTimeOfTheStartNotUtc) {
    PortSource port;
    FixedClock clock;
    clock.now = *CivilToFileTime({2011, 7, 4, 7, 30, 15, 0});
    port.links.clock = &clock;
    port.links.nmeaFolder = "/data/My GPS/NMEA0183";
    {
        const testing::ScopedTimeZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
        BuildNmeaLogPath(port);
    }
    EXPECT_EQ(port.NmeaLogPath(), "/data/My GPS/NMEA0183/20110704093015_NMEA0183.log");
}

class NoTimers final : public TimerService {
  public:
    int StartTimer(int, std::function<void()>) override { return 0; }
    void KillTimer(int) override {}
};

TEST_F(PortSourceOnPty, StartFailuresLeaveTheirCodesAndTheStartCommandShowsThem) {
    NoTimers noTimers;
    port_.links.timers = &noTimers;
    options_.gpsSource = kGpsSourcePort;
    options_.portIndex = 5;  // COM5, not linked
    EXPECT_FALSE(StartPortGps(app_, port_, host_));
    EXPECT_EQ(port_.portName, "COM5:");
    EXPECT_NE(messages_.str().find("could not be opened: 0x08200a06"), std::string::npos);

    std::filesystem::create_directory(folder_.File("ports"));
    std::filesystem::create_symlink(receiver_.SlaveName(), folder_.File("ports/COM5"));
    // The link resolves and the port opens; the watchdog timer fails.
    EXPECT_FALSE(StartPortGps(app_, port_, host_));
    EXPECT_EQ(port_.lastErrorCode, "0x08200a0d");
    EXPECT_NE(messages_.str().find("could not be started: 0x08200a0d"), std::string::npos);
    EXPECT_FALSE(IsPortOpen(port_));

    options_.gpsSource = kGpsSourceBluetooth;
    EXPECT_FALSE(StartPortGps(app_, port_, host_));
    EXPECT_NE(messages_.str().find("No GPS receiver has been chosen"), std::string::npos);
}

TEST_F(PortSourceOnPty, SettingsThatNeverComeAreAskedForSixteenTimesThenTheSetupFails) {
    ASSERT_TRUE(device_.Open(receiver_.SlaveName()));
    ASSERT_TRUE(device_.Configure({14400, 8, 0, 0}));  // a rate without a termios constant
    EXPECT_EQ(slept_, 0);
    receiver_.HangUp();
    EXPECT_FALSE(device_.Configure({4800, 8, 0, 0}));
    EXPECT_EQ(slept_, 15 * 1000);
    EXPECT_TRUE(device_.IsGone());
}

}  // namespace
}  // namespace tolvane
