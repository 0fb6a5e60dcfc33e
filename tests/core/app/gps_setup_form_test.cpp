#include "core/app/gps_setup_form.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/app/commands.h"
#include "core/app/gid_commands.h"
#include "core/app/gps_commands.h"
#include "core/app/local_settings.h"
#include "core/app/startup.h"
#include "tests/core/app/program_fixture.h"
#include "tests/core/nmea_sentence.h"

namespace tolvane {
namespace {

using testing::NmeaSentence;

// Only sentences with a right checksum count, whether they come whole, in
// pieces, after noise or behind a broken start; the live line reports them.
TEST(GpsSetupTest, TheLiveLineCountsOnlyCheckedSentences) {
    NmeaListener listener;
    const std::string rmc =
        NmeaSentence("GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W");
    std::string badChecksum =
        NmeaSentence("GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,");
    badChecksum[badChecksum.size() - 3] ^= 1;
    const std::string noise = "\x93\xf1 garbage at a wrong rate $GPR\xfe\r\n";
    const std::string stream =
        noise + rmc + badChecksum + "$GPGS" + rmc + NmeaSentence("GPGSA,A,3,04,05");
    listener.Feed(stream.data(), 40, 1000);
    listener.Feed(stream.data() + 40, static_cast<int>(stream.size()) - 40, 3000);
    EXPECT_EQ(listener.Summary().sentences, 3);
    EXPECT_EQ(listener.Summary().badChecksums, 2);  // the noise's "$GPR" line and the GGA
    EXPECT_EQ(LiveLineText(listener.Summary(), 4800, 5400),
              "3 sentences, 4800 baud, last $GPGSA 2 s ago");
    EXPECT_EQ(OtherGnssAdvice(listener.Summary(), false), "");
    EXPECT_EQ(LiveLineText(NmeaListenSummary{}, 9600, 0), "Listening at 9600 baud, nothing yet.");
}

// A receiver that sends its fix as GN instead of GP gets no fix from the
// port source, although its GPS satellites come as GPGSV; GPS Setup says so
// with both ways out. One GP fix sentence means it is read as it is.
TEST(GpsSetupTest, AReceiverThatTalksOnlyOtherConstellationsIsRecognised) {
    NmeaListener listener;
    const std::string stream =
        NmeaSentence("GNRMC,083559.00,A,4717.11437,N,00833.91522,E,0.004,77.52,091202,,,A") +
        NmeaSentence("GPGSV,1,1,01,05,45,120,30") + NmeaSentence("GLGSV,1,1,01,65,12,300,22") +
        NmeaSentence("GNGGA,083559.00,4717.11437,N,00833.91522,E,1,08,1.0,499.6,M,48.0,M,,");
    listener.Feed(stream.data(), static_cast<int>(stream.size()), 0);
    ASSERT_TRUE(TalksOnlyOtherGnss(listener.Summary()));
    const std::string advice = OtherGnssAdvice(listener.Summary(), false);
    EXPECT_NE(advice.find("talks GN"), std::string::npos) << advice;
    EXPECT_NE(advice.find("gpsd"), std::string::npos) << advice;
    EXPECT_NE(advice.find("multi-GNSS"), std::string::npos) << advice;
    EXPECT_NE(OtherGnssAdvice(listener.Summary(), true), advice);

    const std::string gga =
        NmeaSentence("GPGGA,083559.00,4717.11437,N,00833.91522,E,1,08,1.0,499.6,M,48.0,M,,");
    listener.Feed(gga.data(), static_cast<int>(gga.size()), 0);
    EXPECT_FALSE(TalksOnlyOtherGnss(listener.Summary()));
}

// The live line puts the device's problem before all else, then that
// "Auto" found nothing, then the rate it tries; OK stores a found rate only
// once the probe has settled on it. gpsd is the page of a source the dialog
// does not offer, and a port without a link starts on "Auto".
TEST(GpsSetupTest, TheProbeLineAndTheDialogsChoicesFollowWhatTheProbeFound) {
    ProbeStatus status;
    status.baudRate = 9600;
    status.searching = true;
    EXPECT_EQ(ProbeLineText(status, 0), "Trying 9600 baud...");
    EXPECT_EQ(FoundBaudIndex(status), -1);
    status.summary.sentences = 2;
    status.summary.lastSentence = "$GPRMC";
    status.summary.lastMilliseconds = 1000;
    status.searching = false;
    EXPECT_EQ(ProbeLineText(status, 3500), "2 sentences, 9600 baud, last $GPRMC 2 s ago");
    EXPECT_EQ(FoundBaudIndex(status), BaudIndexForRate(9600));
    status.exhausted = true;
    EXPECT_EQ(ProbeLineText(status, 0),
              "No NMEA text at any baud rate. Is the receiver switched on?");
    status.problem = {DeviceFault::kCannotOpen, "/dev/ttyUSB0", {}, "Device or resource busy"};
    EXPECT_EQ(ProbeLineText(status, 0),
              "The device /dev/ttyUSB0 could not be opened: Device or resource busy");
    status.problem = {DeviceFault::kOther, "/dev/ttyUSB0", {}, "Input/output error"};
    EXPECT_EQ(ProbeLineText(status, 0), "Input/output error");

    EXPECT_EQ(ShownGpsSource(kGpsSourceBluetooth), kGpsSourceBluetooth);
    EXPECT_EQ(ShownGpsSource(7), kGpsSourceGid);
    EXPECT_TRUE(ActionsOfSource(kGpsSourceGid).asksGpsd);
    EXPECT_FALSE(ActionsOfSource(kGpsSourceBluetooth).probesDevice);
    EXPECT_EQ(ShownBaudIndex("", 3), kAutoBaudIndex);
    EXPECT_EQ(ShownBaudIndex("/dev/ttyACM0", 3), 3);

    EXPECT_EQ(SearchProblemText({true, 0, {}}),
              "No Bluetooth adapter was found, or Bluetooth (BlueZ) is not running. (0x08200a10)");
    EXPECT_EQ(SearchProblemText({false, 3, "Input/output error"}),
              "The Bluetooth search failed: Input/output error (0x08200a10, 3)");
}

// OK stores the choice in the settings record, saved at once, and in the
// run-time copies the start command reads; "Auto" stores the rate the probe
// found, or keeps the stored one when it found none.
TEST(GpsSetupTest, OkStoresTheChoiceInOptionsAndItsRuntimeCopies) {
    testing::ProgramFixture fixture;
    Program& program = fixture.program;
    program.app.runtime.storageLocation = "/media/card";
    program.app.options.baudIndex = 3;
    GpsSetupChoice choice = CurrentGpsSetup(program.app);
    choice.source = kGpsSourceBluetooth;
    choice.portIndex = 12;
    choice.baudIndex = -1;
    choice.bluetoothName = "Qstarz BT-Q818XT";
    choice.bluetoothAddress = 0x00'1C'88'30'A1'B2;
    choice.bluetoothChannel = 3;
    choice.autoBluetooth = true;
    choice.multiGnss = true;
    ApplyGpsSetup(program, choice, -1);
    EXPECT_EQ(program.app.options.baudIndex, 3);
    ApplyGpsSetup(program, choice, 4);

    Options saved{};
    ASSERT_TRUE(LoadOptions(fixture.folder.File("Options.dat"), saved, 1));
    EXPECT_EQ(saved.gpsSource, kGpsSourceBluetooth);
    EXPECT_EQ(saved.portIndex, 12);
    EXPECT_EQ(saved.baudIndex, 4);
    EXPECT_EQ(saved.bluetoothAddress[0], 0x8830A1B2u);
    EXPECT_EQ(saved.bluetoothAddress[1], 0x001Cu);
    EXPECT_EQ(saved.autoBluetooth, 1);
    EXPECT_EQ(ReadWideField(saved.bluetoothName), "Qstarz BT-Q818XT");
    const OptionsRuntime& runtime = program.app.runtime;
    EXPECT_TRUE(runtime.receiverChosen);
    EXPECT_EQ(runtime.bluetoothChannel, 3);
    EXPECT_EQ(runtime.storageLocation, "/media/card");
    EXPECT_TRUE(program.app.multiGnss);

    choice.bluetoothName.clear();
    ApplyGpsSetup(program, choice, 4);
    EXPECT_FALSE(program.app.runtime.receiverChosen);
}

// The receivers a daemon owns are stored as the serial port in the record
// and by name beside it; the next start lists them again, and Start GPS
// opens each by its own name.
TEST(GpsSetupTest, DaemonReceiversAreKeptBesideTheRecordAndOpenedByTheirNames) {
    testing::ProgramFixture fixture;
    Program& program = fixture.program;
    GpsSetupChoice choice = CurrentGpsSetup(program.app);
    choice.source = kSetupSourceGnssShare;
    choice.gnssShareSocket = "/run/user/1000/gnss.sock";
    ApplyGpsSetup(program, choice, -1);
    Options saved{};
    ASSERT_TRUE(LoadOptions(fixture.folder.File("Options.dat"), saved, 1));
    EXPECT_EQ(saved.gpsSource, kGpsSourcePort);

    testing::ProgramFixture next;
    testing::WriteFileBytes(next.folder.File("tolvane.conf"),
                            testing::ReadFileBytes(fixture.folder.File("tolvane.conf")));
    next.program.app.options.gpsSource = kGpsSourcePort;
    LoadLocalSettings(next.program);
    const GpsSetupChoice listed = CurrentGpsSetup(next.program.app);
    EXPECT_EQ(listed.source, kSetupSourceGnssShare);
    EXPECT_EQ(listed.gnssShareSocket, "/run/user/1000/gnss.sock");

    const auto opens = [&program, &fixture](int source) {
        GpsSetupChoice chosen = CurrentGpsSetup(program.app);
        chosen.source = source;
        ApplyGpsSetup(program, chosen, -1);
        fixture.device.opened.clear();
        OnCommand(program, kCommandStartGps);
        OnCommand(program, kCommandStopGps);
        return fixture.device.opened.empty() ? std::string() : fixture.device.opened.back();
    };
    EXPECT_EQ(opens(kSetupSourceGnssShare), "unix:/run/user/1000/gnss.sock");
    EXPECT_EQ(opens(kSetupSourceModemManager), "modem:");
    EXPECT_EQ(opens(kGpsSourcePort), PortDeviceName(program.app.options.portIndex) + ":");
}

// Start GPS links a chosen Bluetooth receiver through the port's device by
// its RFCOMM name, once: the open of the port takes the link as it is. A
// link that cannot be made is the Bluetooth message with its code and
// reason. "Auto turn on/off Bluetooth" switches on a radio that was off,
// and exit switches off only that one.
TEST(GpsSetupTest, BluetoothReceiverIsLinkedOnceAndTheRadioFollowsTheProgram) {
    testing::ProgramFixture fixture;
    Program& program = fixture.program;
    ASSERT_TRUE(StartAfterWindow(program));
    GpsSetupChoice choice = CurrentGpsSetup(program.app);
    choice.source = kGpsSourceBluetooth;
    choice.bluetoothName = "GPS";
    choice.bluetoothAddress = 0x00'1C'88'30'A1'B2;
    choice.bluetoothChannel = 3;
    choice.autoBluetooth = true;
    ApplyGpsSetup(program, choice, -1);

    fixture.device.refuses = true;
    fixture.host.radioMode = kRadioOff;
    fixture.host.events.clear();
    OnCommand(program, kCommandStartGps);
    EXPECT_FALSE(program.app.gpsRunning);
    ASSERT_EQ(fixture.host.events.size(), 2u);
    EXPECT_EQ(fixture.host.events[0], "radio 1");
    EXPECT_NE(fixture.host.events[1].find("0x08200a10 (Host is down)"), std::string::npos);

    fixture.device.refuses = false;
    fixture.device.opened.clear();
    OnCommand(program, kCommandStartGps);
    EXPECT_TRUE(program.app.gpsRunning);
    EXPECT_EQ(fixture.device.opened, std::vector<std::string>{"rfcomm:00:1C:88:30:A1:B2:3"});
    std::uint64_t address = 0;
    int channel = 0;
    ASSERT_TRUE(ParseBluetoothPortName(fixture.device.opened[0], address, channel));
    EXPECT_EQ(address, choice.bluetoothAddress);
    EXPECT_EQ(channel, 3);
    EXPECT_FALSE(ParseBluetoothPortName("rfcomm:00:1C:88:30:A1:B2:31", address, channel));
    EXPECT_FALSE(ParseBluetoothPortName("COM4:", address, channel));

    fixture.host.events.clear();
    OnCommand(program, kCommandExit);
    EXPECT_EQ(std::count(fixture.host.events.begin(), fixture.host.events.end(), "radio 0"), 1);

    // A radio that was on before is left on.
    testing::ProgramFixture second;
    ASSERT_TRUE(StartAfterWindow(second.program));
    ApplyGpsSetup(second.program, choice, -1);
    second.host.radioMode = kRadioConnectable;
    OnCommand(second.program, kCommandStartGps);
    OnCommand(second.program, kCommandExit);
    EXPECT_EQ(std::count_if(second.host.events.begin(), second.host.events.end(),
                            [](const std::string& event) { return event.rfind("radio", 0) == 0; }),
              0);
}

}  // namespace
}  // namespace tolvane
