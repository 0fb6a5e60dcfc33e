#include "core/data/options.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "core/data/whole_file.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

std::string Bytes(const Options& options) {
    return std::string(reinterpret_cast<const char*>(&options), sizeof options);
}

template <typename T>
T At(const std::string& bytes, std::size_t offset) {
    T value;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

class OptionsTest : public ::testing::Test {
  protected:
    OptionsTest() { ResetOptions(defaults_); }

    // Loads what is on disk at start-up into a record that starts as garbage.
    Options LoadAtStartup() {
        Options options;
        std::memset(&options, 0x5A, sizeof options);
        LoadOptionsAtStartup(path_, options, runtime_);
        return options;
    }

    testing::TemporaryFolder folder_;
    std::string path_ = folder_.File("Options.dat");
    Options defaults_;
    OptionsRuntime runtime_;
};

TEST_F(OptionsTest, DefaultsSitAtTheirOffsets) {
    const std::string bytes = Bytes(defaults_);
    ASSERT_EQ(bytes.size(), 4904u);
    EXPECT_EQ(std::string(bytes.data()), "2.4.0.3151");
    EXPECT_EQ(std::string(bytes.data() + 10, 10), std::string(10, '\0'));
    for (const std::size_t offset :
         {20, 24, 28, 32, 604, 4820, 4824, 4828, 4832, 4836, 4864, 4880}) {
        EXPECT_EQ(At<std::int32_t>(bytes, offset), 1) << offset;
    }
    EXPECT_EQ(At<std::int32_t>(bytes, 56), -1);
    EXPECT_EQ(At<std::int32_t>(bytes, 3732), 50);
    EXPECT_EQ(At<std::int32_t>(bytes, 3760), 120);
    EXPECT_EQ(At<std::int32_t>(bytes, 3764), 10);
    EXPECT_EQ(At<std::int32_t>(bytes, 3776), 60);
    EXPECT_EQ(At<std::int32_t>(bytes, 4868), 200);
    EXPECT_EQ(At<double>(bytes, 4856), 0.0);
    for (const std::size_t offset : {36, 48, 60, 4840, 4884, 4892, 4896}) {
        EXPECT_EQ(At<std::int32_t>(bytes, offset), 0) << offset;
    }
}

TEST_F(OptionsTest, SaveTwiceIsByteIdenticalAndReservedBytesSurvive) {
    Options options = defaults_;
    std::memset(options.reserved64, 0xA1, sizeof options.reserved64);
    std::memset(options.reserved588, 0xB2, sizeof options.reserved588);
    std::memset(options.reserved4900, 0xC3, sizeof options.reserved4900);
    options.minimumSpeed = 12.5;
    WriteWideField(options.storageLocation, "/media/card");
    ASSERT_TRUE(SaveOptions(path_, options, 1));
    const std::string first = testing::ReadFileBytes(path_);
    ASSERT_TRUE(SaveOptions(path_, options, 1));
    EXPECT_EQ(testing::ReadFileBytes(path_), first);

    const Options loaded = LoadAtStartup();
    EXPECT_EQ(Bytes(loaded), Bytes(options));
    EXPECT_EQ(runtime_.storageLocation, "/media/card");
}

// A file that did not load is left alone until the next save, is marked,
// and its bytes can be kept; a missing file has nothing to keep.
TEST_F(OptionsTest, ShortMissingOrForeignFilesGiveTheDefaultsAndTheirBytesCanBeKept) {
    EXPECT_EQ(Bytes(LoadAtStartup()), Bytes(defaults_));
    EXPECT_FALSE(runtime_.unloadedFile);
    std::string failure;
    EXPECT_FALSE(KeepUnloadedOptions(path_, failure));
    EXPECT_EQ(failure, "");

    Options foreign = defaults_;
    foreign.showMap = 0;
    foreign.version[9] = '2';  // 2.4.0.3152
    for (const std::string& bytes :
         {Bytes(defaults_).substr(0, 4903), Bytes(foreign), std::string("\x01\x02 not a record")}) {
        testing::WriteFileBytes(path_, bytes);
        EXPECT_EQ(Bytes(LoadAtStartup()), Bytes(defaults_));
        EXPECT_EQ(testing::ReadFileBytes(path_), bytes);
        EXPECT_TRUE(runtime_.unloadedFile);
        ASSERT_TRUE(KeepUnloadedOptions(path_, failure));
        EXPECT_EQ(testing::ReadFileBytes(path_ + ".bak"), bytes);
        EXPECT_EQ(failure, "");
    }
}

TEST_F(OptionsTest, LoadValidatesIndexesAndCopiesTheReceiver) {
    Options stored = defaults_;
    stored.speedAlarmIndex = 8;
    stored.trackIntervalIndex = 4;
    stored.unitSystem = 9;
    stored.dataProcessor = 7;
    WriteWideField(stored.bluetoothName, "Receiver");
    ASSERT_TRUE(SaveOptions(path_, stored, 1));
    Options loaded = LoadAtStartup();
    EXPECT_EQ(loaded.speedAlarmIndex, -1);
    EXPECT_EQ(loaded.trackIntervalIndex, 0);
    EXPECT_EQ(loaded.unitSystem, 0);
    EXPECT_EQ(loaded.dataProcessor, 0);
    EXPECT_EQ(runtime_.bluetoothName, "Receiver");
    EXPECT_FALSE(runtime_.receiverChosen);  // both address words are zero

    stored.trackIntervalIndex = -1;
    stored.speedAlarmIndex = 7;
    stored.dataProcessor = -1;
    stored.bluetoothAddress[1] = 0x12;
    ASSERT_TRUE(SaveOptions(path_, stored, 1));
    loaded = LoadAtStartup();
    EXPECT_EQ(loaded.trackIntervalIndex, 0);
    EXPECT_EQ(loaded.speedAlarmIndex, 7);
    EXPECT_EQ(loaded.dataProcessor, 0);
    stored.dataProcessor = 2;
    ASSERT_TRUE(SaveOptions(path_, stored, 1));
    EXPECT_EQ(LoadAtStartup().dataProcessor, 2);
    EXPECT_TRUE(runtime_.receiverChosen);
    EXPECT_EQ(runtime_.bluetoothAddress, 0x12ull << 32);
}

TEST_F(OptionsTest, WideFieldsAreCutAndAlwaysTerminated) {
    Options options = defaults_;
    WriteWideField(options.storageLocation, std::string(300, 'a'));
    EXPECT_EQ(ReadWideField(options.storageLocation), std::string(259, 'a'));
    EXPECT_EQ(options.storageLocation[259], u'\0');

    // A record whose field fills its array is terminated by the loader.
    std::fill(std::begin(options.waypointFile), std::end(options.waypointFile), u'w');
    ASSERT_TRUE(SaveOptions(path_, options, 1));
    const Options loaded = LoadAtStartup();
    EXPECT_EQ(ReadWideField(loaded.waypointFile), std::string(259, 'w'));
}

TEST_F(OptionsTest, WholeFileRoutinesRetryAndReportTheError) {
    int lastError = 0;
    Options options;
    EXPECT_FALSE(LoadOptions(folder_.File("missing/Options.dat"), options, 2));
    EXPECT_FALSE(SaveOptions(folder_.File("missing/Options.dat"), defaults_, 1));
    char buffer[4];
    EXPECT_EQ(ReadWholeFile(folder_.File("nope"), buffer, 4, 1, &lastError), 0);
    EXPECT_EQ(lastError, ENOENT);

    // A larger file is read from its start; it is never truncated by a write.
    testing::WriteFileBytes(path_, Bytes(defaults_) + "tail");
    EXPECT_TRUE(LoadOptions(path_, options, 1));
    ASSERT_TRUE(SaveOptions(path_, defaults_, 1));
    EXPECT_EQ(testing::ReadFileBytes(path_).size(), 4908u);

    // A save that cannot be put in place leaves no temporary file.
    const std::string taken = folder_.File("taken.dat");
    std::filesystem::create_directory(taken);
    EXPECT_FALSE(SaveOptions(taken, defaults_, 1));
    EXPECT_FALSE(std::filesystem::exists(taken + ".new"));
}

}  // namespace
}  // namespace tolvane
