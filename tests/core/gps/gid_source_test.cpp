#include "core/gps/gid_source.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <set>

#include "core/app/gid_commands.h"
#include "core/base/language_file.h"
#include "core/base/string_manager.h"
#include "tests/core/app/recording_host.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

// What the fake library's exports saw and what they answer. The exports are
// plain functions, so they share this one record.
struct FakeGidState {
    std::vector<std::string> calls;
    void* openInstance = nullptr;
    void* openWindow = nullptr;
    std::int32_t openFlags = -1;
    std::int32_t openResult = 1;
    std::int32_t connectionState = 1;
    GidPositionInfo position{};
    GidDeviceInfo device{};
    int librariesAlive = 0;
};
FakeGidState fake;

std::int32_t FakeInit() {
    fake.calls.push_back("init");
    return 1;
}
std::int32_t FakeUnInit() {
    fake.calls.push_back("uninit");
    return 1;
}
std::int32_t FakeOpen(void* instance, void* window, std::int32_t flags) {
    fake.calls.push_back("open");
    fake.openInstance = instance;
    fake.openWindow = window;
    fake.openFlags = flags;
    return fake.openResult;
}
std::int32_t FakeClose() {
    fake.calls.push_back("close");
    return 1;
}
std::int32_t FakePosition(GidPositionInfo* info) {
    *info = fake.position;
    return 1;
}
std::int32_t FakeDevice(GidDeviceInfo* info) {
    *info = fake.device;
    return 1;
}
std::int32_t FakeConnectionState() {
    return fake.connectionState;
}

class FakeLibrary : public DynamicLibrary {
  public:
    explicit FakeLibrary(std::set<std::string> missing) : missing_(std::move(missing)) {
        ++fake.librariesAlive;
    }
    ~FakeLibrary() override { --fake.librariesAlive; }

    LibraryFunction Resolve(const std::string& name) const override {
        static const std::map<std::string, LibraryFunction> kExports = {
            {kGidInitName, reinterpret_cast<LibraryFunction>(&FakeInit)},
            {kGidUnInitName, reinterpret_cast<LibraryFunction>(&FakeUnInit)},
            {kGidOpenDeviceName, reinterpret_cast<LibraryFunction>(&FakeOpen)},
            {kGidCloseDeviceName, reinterpret_cast<LibraryFunction>(&FakeClose)},
            {kGidPositionInfoName, reinterpret_cast<LibraryFunction>(&FakePosition)},
            {kGidDeviceInfoName, reinterpret_cast<LibraryFunction>(&FakeDevice)},
            {kGidConnectionStateName, reinterpret_cast<LibraryFunction>(&FakeConnectionState)},
        };
        if (missing_.count(name) != 0) return nullptr;
        const auto found = kExports.find(name);
        return found != kExports.end() ? found->second : nullptr;
    }

  private:
    std::set<std::string> missing_;
};

class FakeLoader : public DynamicLibraryLoader {
  public:
    bool present = true;
    std::set<std::string> missing;
    std::vector<std::string> loadedPaths;

    std::unique_ptr<DynamicLibrary> Load(const std::string& path) override {
        loadedPaths.push_back(path);
        if (!present) return nullptr;
        return std::make_unique<FakeLibrary>(missing);
    }
};

class FakeMachine : public DeviceQueries {
  public:
    std::string platformName;
    int major = 6;
    int QueryPlatformName(std::string& name) const override {
        name = platformName;
        return 0;
    }
    int OperatingSystemMajorVersion() const override { return major; }
};

class GidSourceTest : public ::testing::Test {
  protected:
    void SetUp() override {
        fake = FakeGidState{};
        folder_.UseAsProgramFolder();
        testing::WriteFileBytes(folder_.File("tolvane_ENU.dat"),
                                EncodeLanguageFile({{10000, "Tolvane GPS Utilities"},
                                                    {10700, "choose first"},
                                                    {12000, "library missing"},
                                                    {12001, "cannot open"}}));
        ASSERT_TRUE(CStringManager::GetInstance().Load(kLanguageEnglish, kSubLanguageEnglishUs));
    }

    bool Start() {
        return StartGidSource(source_, {host_, device_, loader_, &instance_, &window_});
    }

    void ExpectOneMessage(const std::string& text, MessageIcon icon) const {
        ASSERT_EQ(host_.messages.size(), 1u);
        EXPECT_EQ(host_.messages[0].text, text);
        EXPECT_EQ(host_.messages[0].caption, "Tolvane GPS Utilities");
        EXPECT_EQ(host_.messages[0].icon, icon);
    }

    void ExpectUnloaded() const {
        EXPECT_EQ(source_.library, nullptr);
        EXPECT_EQ(fake.librariesAlive, 0);
        EXPECT_EQ(source_.functions.init, nullptr);
        EXPECT_EQ(source_.functions.getConnectionState, nullptr);
    }

    testing::TemporaryFolder folder_;
    testing::RecordingHost host_;
    FakeMachine device_;
    FakeLoader loader_;
    GidSource source_;
    int instance_ = 0;
    int window_ = 0;
};

TEST_F(GidSourceTest, StartLoadsTheLibraryFromTheProgramFolderAndOpensTheDevice) {
    ASSERT_TRUE(Start());
    EXPECT_EQ(loader_.loadedPaths, std::vector<std::string>{folder_.File("GID.QX.so")});
    EXPECT_EQ(fake.calls, (std::vector<std::string>{"init", "open"}));
    EXPECT_EQ(fake.openInstance, &instance_);
    EXPECT_EQ(fake.openWindow, &window_);
    EXPECT_EQ(fake.openFlags, 0);
    EXPECT_TRUE(host_.messages.empty());
    EXPECT_NE(source_.functions.closeDevice, nullptr);

    fake.connectionState = 7;
    EXPECT_EQ(GidConnectionState(source_), 7);
}

TEST_F(GidSourceTest, GenerationFourDevicesAreRefusedBeforeAnythingIsLoaded) {
    device_.major = 4;
    for (const char* name : {"Smartphone", "PocketPC"}) {
        device_.platformName = name;
        host_.messages.clear();
        EXPECT_FALSE(Start());
        ExpectOneMessage("choose first", MessageIcon::kInformation);
    }
    EXPECT_TRUE(loader_.loadedPaths.empty());
}

TEST_F(GidSourceTest, AMissingLibraryOrCloseExportShowsTheLibraryMessage) {
    loader_.present = false;
    EXPECT_FALSE(Start());
    ExpectOneMessage("library missing", MessageIcon::kStop);
    ExpectUnloaded();

    // The close export is never called, yet a library without it is refused.
    loader_.present = true;
    loader_.missing = {kGidCloseDeviceName};
    host_.messages.clear();
    EXPECT_FALSE(Start());
    ExpectOneMessage("library missing", MessageIcon::kStop);
    ExpectUnloaded();
    EXPECT_TRUE(fake.calls.empty());
}

TEST_F(GidSourceTest, ADeviceThatWillNotOpenIsUninitialisedAndUnloaded) {
    fake.openResult = 0;
    EXPECT_FALSE(Start());
    EXPECT_EQ(fake.calls, (std::vector<std::string>{"init", "open", "uninit"}));
    ExpectOneMessage("cannot open", MessageIcon::kStop);
    ExpectUnloaded();
    EXPECT_EQ(GidConnectionState(source_), 0);
}

TEST_F(GidSourceTest, StopUninitialisesUnloadsAndClearsBothRecords) {
    ASSERT_TRUE(Start());
    std::memset(&source_.positionInfo, 0x5a, sizeof source_.positionInfo);
    std::memset(&source_.deviceInfo, 0x5a, sizeof source_.deviceInfo);
    StopGidSource(source_);
    EXPECT_EQ(fake.calls.back(), "uninit");
    ExpectUnloaded();
    const GidPositionInfo zeroPosition{};
    const GidDeviceInfo zeroDevice{};
    EXPECT_EQ(std::memcmp(&source_.positionInfo, &zeroPosition, sizeof zeroPosition), 0);
    EXPECT_EQ(std::memcmp(&source_.deviceInfo, &zeroDevice, sizeof zeroDevice), 0);
    const std::size_t callsBefore = fake.calls.size();
    StopGidSource(source_);  // a second stop finds nothing to call
    EXPECT_EQ(fake.calls.size(), callsBefore);
}

// Every field of the record reaches the snapshot, each with its own value so
// that a field copied into the wrong place shows.
TEST_F(GidSourceTest, SnapshotCopiesEveryFieldOfThePositionRecord) {
    GidPositionInfo& p = fake.position;
    p = {1,  99, 48.5, -11.25, 545.5, 84.5, 12.25, 14,  5,
         {}, {}, {},   {},     2.5,   1.5,  2.25,  3.0, 133'000'000'000'000'000};
    for (int i = 0; i < kGidMaxSatellites; ++i) {
        p.satPrn[i] = 100 + i;
        p.satSnr[i] = 20 + i;
        p.satElevation[i] = 1.5 * i;
        p.satAzimuth[i] = 300.0 - i;
    }
    std::strcpy(fake.device.path, "/dev/ttyACM0");

    GpsFix snapshot;
    EXPECT_FALSE(GidReadSnapshot(source_, snapshot));  // nothing loaded
    EXPECT_EQ(snapshot.fixType, 1.0);
    ASSERT_TRUE(Start());
    ASSERT_TRUE(GidReadSnapshot(source_, snapshot));

    EXPECT_EQ(snapshot.fixValid, 1);
    EXPECT_EQ(snapshot.latitude, 48.5);
    EXPECT_EQ(snapshot.longitude, -11.25);
    EXPECT_EQ(snapshot.altitude, 545.5);
    EXPECT_EQ(snapshot.course, 84.5);
    EXPECT_EQ(snapshot.speedKnots, 12.25);
    EXPECT_EQ(snapshot.satellitesInView, 14);
    EXPECT_EQ(snapshot.satellitesUsed, 5);
    for (int i = 0; i < kGidMaxSatellites; ++i) {
        EXPECT_EQ(snapshot.satPrn[i], 100 + i);
        EXPECT_EQ(snapshot.satSnr[i], 20 + i);
        EXPECT_EQ(snapshot.satElevation[i], 1.5 * i);
        EXPECT_EQ(snapshot.satAzimuth[i], 300.0 - i);
    }
    EXPECT_EQ(snapshot.pdop, 2.5);
    EXPECT_EQ(snapshot.hdop, 1.5);
    EXPECT_EQ(snapshot.vdop, 2.25);
    EXPECT_EQ(snapshot.fixType, 3.0);
    EXPECT_EQ(snapshot.fixTime, 133'000'000'000'000'000);
    EXPECT_STREQ(source_.deviceInfo.path, "/dev/ttyACM0");
}

TEST_F(GidSourceTest, ASnapshotNeedsBothThePositionAndTheDeviceSlot) {
    ASSERT_TRUE(Start());
    source_.functions.getDeviceInfo = nullptr;
    fake.position.fixValid = 1;
    GpsFix snapshot;
    EXPECT_FALSE(GidReadSnapshot(source_, snapshot));
    EXPECT_EQ(snapshot.fixValid, 0);
}

}  // namespace
}  // namespace tolvane
