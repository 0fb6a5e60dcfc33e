#include "platform/receiver_setup.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <termios.h>

#include <atomic>
#include <filesystem>
#include <sstream>
#include <thread>

#include "core/app/gps_commands.h"
#include "core/app/gps_setup_form.h"
#include "headless/port_run.h"
#include "platform/port_device.h"
#include "platform/receiver_probe.h"
#include "tests/core/nmea_sentence.h"
#include "tests/core/test_support.h"
#include "tests/platform/pseudo_terminal.h"

namespace tolvane {
namespace {

using namespace std::chrono_literals;
using testing::NmeaSentence;
using testing::WaitUntil;

const std::string kRmc =
    NmeaSentence("GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W");

class ZeroClock final : public Clock {
  public:
    FileTime NowUtc() const override { return 0; }
};

// The port source on the program's real port device, with the tool's quiet
// host, whose timers the tests fire by hand.
struct SourceOnPortDevice {
    SourceOnPortDevice() : host(clock, quiet, quiet, quiet, messages) {
        ResetOptions(options);
        port.links.device = &device;
        port.links.logNmeaSetting = &options.logNmea;
        LinkPortSourceToHost(port, host);
    }
    ~SourceOnPortDevice() { StopPortSource(port); }

    platform::PortDevice device;
    QuietServices quiet;
    std::ostringstream messages;
    ZeroClock clock;
    headless::HeadlessHost host;
    AppState app;
    Options& options = app.options;
    PortSource port;
};

// A receiver on a pseudo-terminal that talks at one baud rate: while the
// line is set to another, the program hears only noise, as on a real line.
class ReceiverAtRate {
  public:
    explicit ReceiverAtRate(speed_t rate)
        : feeder_([this, rate] {
              while (!stop_ && terminal_.IsOpen()) {
                  termios line{};
                  tcgetattr(terminal_.Master(), &line);
                  // One sentence a write: a write that races the probe's
                  // change of rate brings one stray sentence, never two.
                  terminal_.Send(cfgetospeed(&line) == rate ? kRmc : "\x93\xf1\x0f\xe1 $G\x80\r\n");
                  std::this_thread::sleep_for(50ms);
              }
          }) {}
    ~ReceiverAtRate() {
        stop_ = true;
        feeder_.join();
    }
    const std::string& Path() const { return terminal_.SlaveName(); }
    void Unplug() {
        stop_ = true;
        feeder_.join();
        feeder_ = std::thread([] {});
        terminal_.HangUp();
    }

  private:
    testing::PseudoTerminal terminal_;
    std::atomic<bool> stop_{false};
    std::thread feeder_;
};

// "Auto" tries the rates of the table until checked NMEA text arrives and
// stays at the receiver's rate; pulling the receiver out while the probe
// listens gives the plain message.
TEST(GpsSetupOnPty, AutoFindsTheReceiversRateAndAnUnpluggedDeviceIsNamed) {
    for (const auto& [rate, baud] : {std::pair{B4800, 4800u}, std::pair{B38400, 38400u}}) {
        ReceiverAtRate receiver(rate);
        platform::ReceiverProbe probe(400);
        probe.Start(receiver.Path(), 0);
        ASSERT_TRUE(WaitUntil(
            [&] {
                const ProbeStatus status = probe.Status();
                return !status.searching && status.summary.sentences >= 2;
            },
            20s))
            << baud;
        EXPECT_EQ(probe.Status().baudRate, baud);
        EXPECT_EQ(probe.Status().problem.fault, DeviceFault::kNone);

        receiver.Unplug();
        ASSERT_TRUE(
            WaitUntil([&] { return probe.Status().problem.fault != DeviceFault::kNone; }, 10s));
        EXPECT_EQ(DeviceProblemText(probe.Status().problem),
                  "The device " + receiver.Path() +
                      " is no longer there. Plug the receiver in again, "
                      "or choose another device.");
    }
}

// The link GPS Setup writes in the port folder is the device Start GPS
// opens for the port name, and a second choice replaces the first.
TEST(GpsSetupOnPty, TheWrittenLinkIsWhatStartGpsReads) {
    testing::TemporaryFolder folder;
    folder.UseAsProgramFolder();
    testing::PseudoTerminal receiver;
    std::string reason;
    ASSERT_TRUE(platform::WritePortLink("COM7", "/dev/null", reason)) << reason;
    ASSERT_TRUE(platform::WritePortLink("COM7", receiver.SlaveName(), reason)) << reason;
    EXPECT_EQ(platform::ReadPortLink("COM7"), receiver.SlaveName());

    SourceOnPortDevice source;
    source.options.gpsSource = kGpsSourcePort;
    source.options.portIndex = 7;
    ASSERT_TRUE(StartPortGps(source.app, source.port, source.host)) << source.messages.str();
    ASSERT_TRUE(receiver.Send(kRmc));
    ASSERT_TRUE(WaitUntil(
        [&] {
            source.host.FireTimers();
            std::lock_guard<std::mutex> guard(source.port.lock);
            return source.port.parseStats.rmc == 1;
        },
        10s));
}

// This machine has no Bluetooth adapter: the real RFCOMM link fails at once
// with the Bluetooth code and the system's reason, and Start GPS says so.
TEST(GpsSetupOnPty, WithoutAnAdapterTheBluetoothLinkFailsWithItsCode) {
    SourceOnPortDevice source;
    source.options.gpsSource = kGpsSourceBluetooth;
    source.app.runtime.receiverChosen = true;
    source.app.runtime.bluetoothAddress = 0x00'1C'88'30'A1'B2;
    EXPECT_FALSE(StartPortGps(source.app, source.port, source.host));
    EXPECT_EQ(source.port.lastErrorCode, kErrorBluetoothPort);
    EXPECT_FALSE(source.port.lastErrorReason.empty());
    EXPECT_NE(source.messages.str().find("0x08200a10 ("), std::string::npos)
        << source.messages.str();
    EXPECT_FALSE(source.device.IsOpen());
}

// The list shows the receivers' own names for the devices they stand for,
// the other USB devices by their node, and no ttyS without a port behind
// it; a device the user may not read names the group to join.
TEST(GpsSetupOnPty, DevicesAreListedByTheirNamesAndAPermissionProblemNamesTheGroup) {
    testing::TemporaryFolder dev;
    namespace fs = std::filesystem;
    fs::create_directories(dev.File("serial/by-id"));
    for (const char* node : {"ttyACM0", "ttyUSB1", "ttyS0"})
        testing::WriteFileBytes(dev.File(node), "");
    fs::create_symlink("../../ttyACM0", dev.File("serial/by-id/usb-u-blox_GNSS_receiver-if00"));
    const std::vector<platform::SerialPortEntry> ports = platform::ListSerialPorts(dev.Path());
    ASSERT_EQ(ports.size(), 2u);
    EXPECT_EQ(ports[0].path, dev.File("serial/by-id/usb-u-blox_GNSS_receiver-if00"));
    EXPECT_EQ(ports[0].label, "usb-u-blox_GNSS_receiver-if00 (ttyACM0)");
    EXPECT_EQ(ports[1].path, dev.File("ttyUSB1"));

    struct stat node;
    ASSERT_EQ(stat(dev.File("ttyUSB1").c_str(), &node), 0);
    const std::string group = getgrgid(node.st_gid)->gr_name;
    EXPECT_NE(DeviceProblemText(platform::ProblemOfError(dev.File("ttyUSB1"), EACCES))
                  .find("Join the group \"" + group + "\""),
              std::string::npos);
    EXPECT_EQ(platform::ProblemOpening(dev.File("ttyUSB1")).fault, DeviceFault::kNone);
}

}  // namespace
}  // namespace tolvane
