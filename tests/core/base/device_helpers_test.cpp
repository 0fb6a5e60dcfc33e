#include "core/base/device_helpers.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

class FakeDevice : public DeviceQueries {
  public:
    FakeDevice(int error, std::string name, int major)
        : error_(error), name_(std::move(name)), major_(major) {}
    int QueryPlatformName(std::string& name) const override {
        name = name_;
        return error_;
    }
    int OperatingSystemMajorVersion() const override { return major_; }

  private:
    int error_;
    std::string name_;
    int major_;
};

TEST(DeviceHelpersTest, DeviceTypeAndPlatformCode) {
    EXPECT_EQ(GetDeviceType(FakeDevice(0, "pocketpc", 5)), kDeviceTypeTouch);
    EXPECT_EQ(GetDeviceType(FakeDevice(0, "SmartPhone", 5)), kDeviceTypeKeys);
    EXPECT_EQ(GetDeviceType(FakeDevice(kErrorAccessDenied, "", 5)), kDeviceTypeKeys);
    EXPECT_EQ(GetDeviceType(FakeDevice(87, "PocketPC", 5)), kDeviceTypeUnknown);
    EXPECT_EQ(GetDeviceType(FakeDevice(0, "PocketPC2", 5)), kDeviceTypeUnknown);

    EXPECT_EQ(GetPlatformCode(FakeDevice(0, "Smartphone", 4)), 31);
    EXPECT_EQ(GetPlatformCode(FakeDevice(0, "PocketPC", 6)), 62);
    EXPECT_EQ(GetPlatformCode(FakeDevice(0, "PocketPC", 7)), 0);
    EXPECT_EQ(GetPlatformCode(FakeDevice(0, "", 6)), 0);
}

TEST(DeviceHelpersTest, SplitVersionNeedsFourNumbers) {
    std::string version = "unchanged", build = "unchanged";
    EXPECT_FALSE(SplitVersion("2.4.0", version, build));
    EXPECT_EQ(version, "unchanged");
    EXPECT_TRUE(SplitVersion("2.4.0.3151", version, build));
    EXPECT_EQ(version, "2.4.0");
    EXPECT_EQ(build, "3151");
}

TEST(DeviceHelpersTest, FormatDurationStyles) {
    const auto format = [](int seconds, int style) {
        std::string out = "untouched";
        FormatDuration(seconds, &out, style);
        return out;
    };
    EXPECT_EQ(format(0, 0), "00:00:00");
    EXPECT_EQ(format(0, 1), "-");
    EXPECT_EQ(format(0, 2), "-");
    EXPECT_EQ(format(3599, 1), "59m 59s");
    EXPECT_EQ(format(3600, 1), "1h 00m 00s");
    EXPECT_EQ(format(3600, 2), "1h 00m");
    EXPECT_EQ(format(3725, 0), "01:02:05");
    EXPECT_EQ(format(65, 2), "1m 05s");
    EXPECT_EQ(format(7, 1), "07s");
    EXPECT_EQ(format(7, 3), "untouched");
    FormatDuration(7, nullptr, 0);  // must not crash
}

}  // namespace
}  // namespace tolvane
