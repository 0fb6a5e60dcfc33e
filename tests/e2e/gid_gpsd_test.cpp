#include <gtest/gtest.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "core/app/gid_commands.h"
#include "core/base/string_manager.h"
#include "core/gps/gid_source.h"
#include "platform/device_queries.h"
#include "platform/dynamic_library.h"
#include "tests/core/app/recording_host.h"
#include "tests/core/test_support.h"
#include "tests/e2e/gpsd_fixture.h"
#include "tests/platform/scoped_environment.h"
#include "tests/tools/run_tool.h"
#include "tools/tolvane-tool/tool_commands.h"
#include "tools/tolvane-tool/watch_gid.h"

namespace tolvane {
namespace {

using namespace std::chrono_literals;

// The tests run in a zone two hours east of UTC without daylight saving, so
// the local time of a fix differs from its UTC time by exactly that.
constexpr char kTestZone[] = "XST-2";
constexpr FileTime kZoneOffset = 2 * 3600 * kFileTimeTicksPerSecond;

constexpr auto kGpsdLimit = 20s;
// gpsd reports speed in metres per second with three decimals.
constexpr double kSpeedToleranceKnots = 0.002;

void UseProgramFolder(const std::string& folder) {
    ProgramPaths paths;
    paths.programFolder = folder;
    SetProgramPaths(paths);
}

// The built library, the real loader and the English texts, as the program
// uses them.
class GidLibraryTest : public ::testing::Test {
  protected:
    void SetUp() override {
        UseProgramFolder(TOLVANE_PROGRAM_DIR);
        ASSERT_TRUE(CStringManager::GetInstance().Load(kLanguageEnglish, kSubLanguageEnglishUs));
    }
    void TearDown() override { StopGidSource(source_); }

    bool Start() { return StartGidSource(source_, {host_, machine_, loader_, nullptr, nullptr}); }

    void ExpectRefusedWith(int stringId) {
        ASSERT_EQ(host_.messages.size(), 1u);
        EXPECT_EQ(host_.messages[0].text, CStringManager::GetInstance().GetText(stringId));
        EXPECT_EQ(host_.messages[0].caption, "Tolvane GPS Utilities");
        EXPECT_EQ(host_.messages[0].icon, MessageIcon::kStop);
        EXPECT_EQ(source_.library, nullptr);
        EXPECT_EQ(source_.functions.getConnectionState, nullptr);
        host_.messages.clear();
    }

    testing::RecordingHost host_;
    platform::LinuxDeviceQueries machine_;
    platform::SystemLibraryLoader loader_;
    GidSource source_;
};

TEST_F(GidLibraryTest, ALibraryLackingAnyOneExportIsRefused) {
    for (const char* leftOut :
         {kGidInitName, kGidUnInitName, kGidOpenDeviceName, kGidCloseDeviceName,
          kGidPositionInfoName, kGidDeviceInfoName, kGidConnectionStateName}) {
        SCOPED_TRACE(leftOut);
        UseProgramFolder(std::string(TOLVANE_GID_TEST_LIBRARY_DIR) + "/" + leftOut);
        EXPECT_FALSE(Start());
        ExpectRefusedWith(kTextGidLibraryMissing);
    }
    UseProgramFolder(std::string(TOLVANE_GID_TEST_LIBRARY_DIR) + "/complete");
    EXPECT_TRUE(LoadGidLibrary(source_, loader_));
}

TEST_F(GidLibraryTest, WithoutGpsdTheDeviceDoesNotOpen) {
    const testing::ScopedEnvironment noGpsd("GPSD_PORT",
                                            std::to_string(testing::FreeLoopbackPort()).c_str());
    EXPECT_FALSE(Start());
    ExpectRefusedWith(kTextGidOpenFailed);
}

// gpsd on loopback reads the test's pseudo-terminal receiver; the program's
// side loads the built library and reads it as the per-second update does.
class GidWithGpsdTest : public GidLibraryTest {
  protected:
    void SetUp() override {
        GidLibraryTest::SetUp();
        ASSERT_TRUE(receiver_.IsOpen());
        ASSERT_NE(port_, 0);
        StartGpsd();
    }

    void TearDown() override {
        GidLibraryTest::TearDown();
        gpsd_.reset();
    }

    void StartGpsd() {
        gpsd_ =
            std::make_unique<testing::GpsdProcess>(port_, receiver_.DevicePath(), folder_.Path());
        ASSERT_TRUE(gpsd_->WaitUntilListening(10s));
    }

    GpsFix Snapshot() {
        GpsFix snapshot;
        GidReadSnapshot(source_, snapshot);
        return snapshot;
    }

    bool Connected() { return GidConnectionState(source_) != 0; }

    // Waits until the library is connected and reports the receiver's
    // current latitude with the given validity, and all its satellites.
    bool WaitForReport(bool valid) {
        return testing::WaitUntil(
            [&] {
                const GpsFix snapshot = Snapshot();
                return Connected() && snapshot.fixValid == (valid ? 1 : 0) &&
                       (!valid || std::abs(snapshot.latitude - fix_.latitude) < 1e-6) &&
                       snapshot.satellitesInView == 14;
            },
            kGpsdLimit);
    }

    void Feed(const testing::SimulatedFix& fix) {
        fix_ = fix;
        receiver_.SetFix(fix);
    }

    const testing::ScopedTimeZone zone_{kTestZone};
    testing::TemporaryFolder folder_;
    testing::PseudoTerminalReceiver receiver_;
    testing::SimulatedFix fix_;
    const int port_ = testing::FreeLoopbackPort();
    const testing::ScopedEnvironment gpsdPort_{"GPSD_PORT", std::to_string(port_).c_str()};
    std::unique_ptr<testing::GpsdProcess> gpsd_;
};

TEST_F(GidWithGpsdTest, TheRecordCarriesTheFedFixSatellitesAndLocalTime) {
    ASSERT_TRUE(Start());
    ASSERT_TRUE(WaitForReport(true));
    GpsFix snapshot = Snapshot();
    EXPECT_NEAR(snapshot.latitude, 48.1173, 1e-6);
    EXPECT_NEAR(snapshot.longitude, 11.51667, 1e-6);
    EXPECT_NEAR(snapshot.altitude, 545.4, 1e-6);
    EXPECT_NEAR(snapshot.course, 84.4, 1e-6);
    EXPECT_NEAR(snapshot.speedKnots, 22.4, kSpeedToleranceKnots);
    EXPECT_EQ(snapshot.fixType, 3.0);
    EXPECT_NEAR(snapshot.pdop, 2.5, 1e-9);
    EXPECT_NEAR(snapshot.hdop, 1.3, 1e-9);
    EXPECT_NEAR(snapshot.vdop, 2.1, 1e-9);

    // Of fourteen satellites the three used ones (24, 26, 28) are kept, the
    // rest filled up from the lowest PRN, all in PRN order.
    EXPECT_EQ(snapshot.satellitesInView, 14);
    EXPECT_EQ(snapshot.satellitesUsed, 3);
    const int expectedPrns[kMaxSatellites] = {2, 4, 6, 8, 10, 12, 14, 16, 18, 24, 26, 28};
    for (int i = 0; i < kMaxSatellites; ++i) {
        const int prn = expectedPrns[i];
        EXPECT_EQ(snapshot.satPrn[i], prn) << i;
        EXPECT_EQ(snapshot.satSnr[i], 20 + prn) << i;
        EXPECT_EQ(snapshot.satElevation[i], 10 + prn) << i;
        EXPECT_EQ(snapshot.satAzimuth[i], 10 * prn) << i;
    }

    // The time is the receiver's, in whole seconds, moved into local time.
    const FileTime utc = snapshot.fixTime - kZoneOffset;
    EXPECT_EQ(utc % kFileTimeTicksPerSecond, 0);
    EXPECT_GE(utc, *CivilToFileTime(testing::PseudoTerminalReceiver::kFirstFixUtc));
    EXPECT_LT(utc, receiver_.NextFixUtc());

    EXPECT_EQ(source_.deviceInfo.path, receiver_.DevicePath());
    EXPECT_STREQ(source_.deviceInfo.driver, "NMEA0183");
    EXPECT_EQ(source_.deviceInfo.activated, 1);

    // The receiver moves to the southern and western hemispheres.
    testing::SimulatedFix moved = fix_;
    moved.latitude = -33.8568;
    moved.longitude = -70.6483;
    Feed(moved);
    ASSERT_TRUE(WaitForReport(true));
    snapshot = Snapshot();
    EXPECT_NEAR(snapshot.longitude, -70.6483, 1e-6);

    // It loses the fix but still sees its satellites.
    moved.valid = false;
    Feed(moved);
    ASSERT_TRUE(WaitForReport(false));
    snapshot = Snapshot();
    EXPECT_EQ(snapshot.fixType, 1.0);
    EXPECT_EQ(snapshot.satPrn[11], 28);
}

TEST_F(GidWithGpsdTest, ASilentReceiverOrAStoppedGpsdShowAsNotConnectedUntilTheyReturn) {
    ASSERT_TRUE(Start());
    ASSERT_TRUE(WaitForReport(true));

    receiver_.SetSilent(true);
    // A gap of a second is no lost receiver.
    std::this_thread::sleep_for(1s);
    EXPECT_TRUE(Connected());
    EXPECT_TRUE(testing::WaitUntil([&] { return !Connected(); }, kGpsdLimit));
    EXPECT_EQ(Snapshot().fixValid, 1);  // the last report stays readable
    receiver_.SetSilent(false);
    EXPECT_TRUE(WaitForReport(true));

    gpsd_->Stop();
    EXPECT_TRUE(testing::WaitUntil([&] { return !Connected(); }, kGpsdLimit));
    testing::SimulatedFix moved = fix_;
    moved.latitude = 51.4778;
    Feed(moved);
    StartGpsd();
    EXPECT_TRUE(WaitForReport(true));
}

// The tool's watch runs the program's own start and per-second update over
// the library, one JSON object a second.
TEST_F(GidWithGpsdTest, TheWatchPrintsTheTicksOfTheSharedService) {
    tool::GidWatch watch;
    ResetOptions(watch.options);
    watch.settings.json = true;
    watch.seconds = 4;
    watch.home = TOLVANE_PROGRAM_DIR;
    std::ostringstream out, err;
    ASSERT_EQ(tool::RunGidWatch(watch, out, err), tool::kExitOk) << err.str();

    const std::vector<nlohmann::json> ticks = tool::JsonLines(out.str());
    ASSERT_EQ(ticks.size(), 4u);
    const nlohmann::json& last = ticks.back();
    EXPECT_EQ(last["connected"], 1) << last;
    EXPECT_EQ(last["fixValid"], 1);
    EXPECT_NEAR(last["latitude"].get<double>(), 48.1173, 1e-6);
    EXPECT_EQ(last["satPrn"][11], 28);
    EXPECT_TRUE(err.str().empty()) << err.str();
}

TEST(GidWatchTest, WithoutTheLibraryTheWatchFailsWithTheProgramsMessage) {
    testing::TemporaryFolder empty;
    testing::WriteFileBytes(
        empty.File("tolvane_ENU.dat"),
        testing::ReadFileBytes(std::string(TOLVANE_PROGRAM_DIR) + "/tolvane_ENU.dat"));
    tool::GidWatch watch;
    watch.seconds = 1;
    watch.home = empty.Path();
    std::ostringstream out, err;
    EXPECT_EQ(tool::RunGidWatch(watch, out, err), tool::kExitFailure);
    EXPECT_NE(
        err.str().find("Tolvane GPS Utilities: The GPS service companion library (GID.QX.so)"),
        std::string::npos)
        << err.str();
    EXPECT_TRUE(out.str().empty());
}

}  // namespace
}  // namespace tolvane
