#include "platform/device_queries.h"

#include <fstream>
#include <string>

namespace tolvane::platform {
namespace {

std::string ChassisFromMachineInfo(const std::string& path) {
    std::ifstream in(path);
    std::string line;
    while (std::getline(in, line)) {
        if (line.rfind("CHASSIS=", 0) != 0) continue;
        std::string value = line.substr(8);
        if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'')) {
            value = value.substr(1, value.size() - 2);
        }
        return value;
    }
    return {};
}

// SMBIOS chassis types: 30 tablet, 31 convertible, 32 detachable.
std::string ChassisFromDmi(const std::string& path) {
    std::ifstream in(path);
    int type = 0;
    if (!(in >> type)) return {};
    return type == 30 || type == 32 ? "tablet" : "other";
}

}  // namespace

std::string ReadChassis(const std::string& machineInfoPath, const std::string& dmiChassisPath) {
    const std::string chassis = ChassisFromMachineInfo(machineInfoPath);
    return chassis.empty() ? ChassisFromDmi(dmiChassisPath) : chassis;
}

int LinuxDeviceQueries::QueryPlatformName(std::string& name) const {
    const std::string chassis = ReadChassis("/etc/machine-info", "/sys/class/dmi/id/chassis_type");
    name = chassis == "handset" || chassis == "tablet" ? "PocketPC" : "";
    return 0;
}

}  // namespace tolvane::platform
