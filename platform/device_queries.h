#pragma once

#include "core/base/device_helpers.h"

namespace tolvane::platform {

// Answers the device helpers from the machine's chassis: a handset or a
// tablet (from /etc/machine-info, else the DMI chassis type) is a touch
// device; anything else has no platform name.
class LinuxDeviceQueries final : public DeviceQueries {
  public:
    int QueryPlatformName(std::string& name) const override;
    // Every Linux system has the shared GPS daemon, which the GPS start
    // checks through this generation; report the newest.
    int OperatingSystemMajorVersion() const override { return 6; }
};

// "handset", "tablet", "laptop", ... or empty.
std::string ReadChassis(const std::string& machineInfoPath, const std::string& dmiChassisPath);

}  // namespace tolvane::platform
