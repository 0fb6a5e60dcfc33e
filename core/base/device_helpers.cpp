#include "core/base/device_helpers.h"

#include <cstdio>

namespace tolvane {
namespace {

bool EqualsIgnoringCase(const std::string& a, const char* b) {
    std::size_t i = 0;
    for (; i < a.size() && b[i] != '\0'; ++i) {
        const auto lower = [](char c) {
            return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
        };
        if (lower(a[i]) != lower(b[i])) return false;
    }
    return i == a.size() && b[i] == '\0';
}

std::string Printf(const char* format, int a, int b, int c) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, format, a, b, c);
    return buffer;
}

}  // namespace

int GetDeviceType(const DeviceQueries& queries) {
    std::string name;
    const int error = queries.QueryPlatformName(name);
    if (error == kErrorAccessDenied) return kDeviceTypeKeys;
    if (error != 0) return kDeviceTypeUnknown;
    if (EqualsIgnoringCase(name, "PocketPC")) return kDeviceTypeTouch;
    if (EqualsIgnoringCase(name, "Smartphone")) return kDeviceTypeKeys;
    return kDeviceTypeUnknown;
}

int GetPlatformCode(const DeviceQueries& queries) {
    const int type = GetDeviceType(queries);
    if (type != kDeviceTypeTouch && type != kDeviceTypeKeys) return 0;
    static constexpr int kGenerationCodes[4] = {20, 30, 50, 60};  // for systems 3, 4, 5, 6
    const int major = queries.OperatingSystemMajorVersion();
    if (major < 3 || major > 6) return 0;
    return kGenerationCodes[major - 3] + (type == kDeviceTypeKeys ? 1 : 2);
}

bool SplitVersion(const std::string& text, std::string& version, std::string& build) {
    int major = 0, minor = 0, revision = 0, buildNumber = 0;
    if (std::sscanf(text.c_str(), "%d.%d.%d.%d", &major, &minor, &revision, &buildNumber) != 4) {
        return false;
    }
    version = Printf("%d.%d.%d", major, minor, revision);
    build = std::to_string(buildNumber);
    return true;
}

void FormatDuration(int seconds, std::string* out, int style) {
    if (out == nullptr || style < kDurationClock || style > kDurationCompact) return;
    const int hours = seconds / 3600;
    const int minutes = (seconds - 3600 * hours) / 60;
    const int rest = seconds - 3600 * hours - 60 * minutes;
    if (style == kDurationClock) {
        *out = Printf("%02d:%02d:%02d", hours, minutes, rest);
    } else if (hours >= 1) {
        *out = Printf(style == kDurationPadded ? "%dh %02dm %02ds" : "%dh %02dm", hours, minutes,
                      rest);
    } else if (minutes >= 1) {
        *out = Printf(style == kDurationPadded ? "%02dm %02ds" : "%dm %02ds", minutes, rest, 0);
    } else if (rest >= 1) {
        *out = Printf(style == kDurationPadded ? "%02ds" : "%ds", rest, 0, 0);
    } else {
        *out = "-";
    }
}

}  // namespace tolvane
