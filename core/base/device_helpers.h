#pragma once

#include <string>

namespace tolvane {

// What the device helpers need to know about the machine; platform/ answers
// from the machine's chassis, tests answer what they like.
class DeviceQueries {
  public:
    virtual ~DeviceQueries() = default;
    // The platform name ("PocketPC" for a touch device, "Smartphone" for a
    // keys-only one); returns 0 or the system error of the query.
    virtual int QueryPlatformName(std::string& name) const = 0;
    // The generation of the operating system, 3..6 as the GPS start checks
    // it; 0 when unknown.
    virtual int OperatingSystemMajorVersion() const = 0;
};

inline constexpr int kDeviceTypeUnknown = 0;
inline constexpr int kDeviceTypeTouch = 1;  // "PocketPC"
inline constexpr int kDeviceTypeKeys = 2;   // "Smartphone"
inline constexpr int kErrorAccessDenied = 5;

// 1 for a touch device, 2 for a keys-only one (also when the query is
// refused with access denied), 0 otherwise.
int GetDeviceType(const DeviceQueries& queries);

// The system generation combined with the device type: keys-only 3..6 give
// 21, 31, 51, 61; touch 3..6 give 22, 32, 52, 62; anything else 0.
int GetPlatformCode(const DeviceQueries& queries);

// "a.b.c.d" into "a.b.c" and "d"; false (and nothing written) unless four
// numbers are read.
bool SplitVersion(const std::string& text, std::string& version, std::string& build);

inline constexpr int kDurationClock = 0;    // 01:02:03
inline constexpr int kDurationPadded = 1;   // 1h 02m 03s
inline constexpr int kDurationCompact = 2;  // 1h 02m

// Writes the duration text of style 0, 1 or 2 into out; any other style, or
// a null out, writes nothing.
void FormatDuration(int seconds, std::string* out, int style);

}  // namespace tolvane
