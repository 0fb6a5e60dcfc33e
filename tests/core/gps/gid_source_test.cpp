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
    int librariesAlive = 0;
};
FakeGidState fake;

template <typename Function>
LibraryFunction Export(Function function) {
    return reinterpret_cast<LibraryFunction>(function);
}

class FakeLibrary : public DynamicLibrary {
  public:
    explicit FakeLibrary(std::set<std::string> missing) : missing_(std::move(missing)) {
        ++fake.librariesAlive;
    }
    ~FakeLibrary() override { --fake.librariesAlive; }

    LibraryFunction Resolve(const std::string& name) const override {
        static const std::map<std::string, LibraryFunction> kExports = {
            {kGidInitName, Export(+[]() -> std::int32_t {
                 fake.calls.push_back("init");
                 return 1;
             })},
            {kGidUnInitName, Export(+[]() -> std::int32_t {
                 fake.calls.push_back("uninit");
                 return 1;
             })},
            {kGidOpenDeviceName,
             Export(+[](void* instance, void* window, std::int32_t flags) -> std::int32_t {
                 fake.calls.push_back("open");
                 fake.openInstance = instance;
                 fake.openWindow = window;
                 fake.openFlags = flags;
                 return fake.openResult;
             })},
            {kGidCloseDeviceName, Export(+[]() -> std::int32_t {
                 fake.calls.push_back("close");
                 return 1;
             })},
            {kGidPositionInfoName, Export(+[](GidPositionInfo*) -> std::int32_t { return 1; })},
            {kGidDeviceInfoName, Export(+[](GidDeviceInfo*) -> std::int32_t { return 1; })},
            {kGidConnectionStateName, Export(+[]() -> std::int32_t { return 7; })},
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

    // Exactly one message box, and the library is not left loaded.
    void ExpectRefusal(const std::string& text, MessageIcon icon) {
        ASSERT_EQ(host_.messages.size(), 1u);
        EXPECT_EQ(host_.messages[0].text, text);
        EXPECT_EQ(host_.messages[0].caption, "Tolvane GPS Utilities");
        EXPECT_EQ(host_.messages[0].icon, icon);
        EXPECT_EQ(source_.library, nullptr);
        EXPECT_EQ(fake.librariesAlive, 0);
        EXPECT_EQ(source_.functions.getConnectionState, nullptr);
        host_.messages.clear();
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
    EXPECT_EQ(GidConnectionState(source_), 7);
}

// An installed program keeps the library apart from its data files.
TEST_F(GidSourceTest, StartLoadsTheLibraryFromTheLibraryFolderWhenThereIsOne) {
    ProgramPaths paths = GetProgramPaths();
    paths.libraryFolder = folder_.File("lib");
    SetProgramPaths(paths);
    ASSERT_TRUE(Start());
    EXPECT_EQ(loader_.loadedPaths, std::vector<std::string>{folder_.File("lib/GID.QX.so")});
}

TEST_F(GidSourceTest, RefusalsShowTheirMessagesAndLeaveNothingLoaded) {
    // Generation-four devices are refused before anything is loaded.
    device_.major = 4;
    for (const char* name : {"Smartphone", "PocketPC"}) {
        device_.platformName = name;
        EXPECT_FALSE(Start());
        ExpectRefusal("choose first", MessageIcon::kInformation);
    }
    EXPECT_TRUE(loader_.loadedPaths.empty());
    device_.major = 6;

    loader_.present = false;
    EXPECT_FALSE(Start());
    ExpectRefusal("library missing", MessageIcon::kStop);
    // The close export is never called, yet a library without it is refused.
    loader_.present = true;
    loader_.missing = {kGidCloseDeviceName};
    EXPECT_FALSE(Start());
    ExpectRefusal("library missing", MessageIcon::kStop);
    EXPECT_TRUE(fake.calls.empty());

    // A device that will not open is uninitialised and unloaded.
    loader_.missing.clear();
    fake.openResult = 0;
    EXPECT_FALSE(Start());
    EXPECT_EQ(fake.calls, (std::vector<std::string>{"init", "open", "uninit"}));
    ExpectRefusal("cannot open", MessageIcon::kStop);
    EXPECT_EQ(GidConnectionState(source_), 0);
}

TEST_F(GidSourceTest, StopUninitialisesUnloadsAndClearsBothRecords) {
    GpsFix snapshot;
    EXPECT_FALSE(GidReadSnapshot(source_, snapshot));  // nothing loaded: left alone
    EXPECT_EQ(snapshot.fixType, 1.0);
    ASSERT_TRUE(Start());
    std::memset(&source_.positionInfo, 0x5a, sizeof source_.positionInfo);
    std::memset(&source_.deviceInfo, 0x5a, sizeof source_.deviceInfo);
    StopGidSource(source_);
    EXPECT_EQ(fake.calls.back(), "uninit");
    EXPECT_EQ(fake.librariesAlive, 0);
    const GidPositionInfo zeroPosition{};
    const GidDeviceInfo zeroDevice{};
    EXPECT_EQ(std::memcmp(&source_.positionInfo, &zeroPosition, sizeof zeroPosition), 0);
    EXPECT_EQ(std::memcmp(&source_.deviceInfo, &zeroDevice, sizeof zeroDevice), 0);
    const std::size_t callsBefore = fake.calls.size();
    StopGidSource(source_);  // a second stop finds nothing to call
    EXPECT_EQ(fake.calls.size(), callsBefore);
}

}  // namespace
}  // namespace tolvane
