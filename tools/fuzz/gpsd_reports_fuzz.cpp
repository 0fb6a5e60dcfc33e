// libFuzzer target of the companion library's reading of gpsd: the bytes
// gpsd sends, cut into reports and applied to the records the program
// reads. The first byte chooses how the stream is cut into reads.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "gid/gpsd_reports.h"

namespace {

void CheckFinite(double value) {
    if (!std::isfinite(value)) std::abort();
}

void CheckRecords(const tolvane::gid::GpsdRecords& records) {
    const tolvane::GidPositionInfo& position = records.position;
    for (const double value :
         {position.latitude, position.longitude, position.altitude, position.course,
          position.speedKnots, position.pdop, position.hdop, position.vdop}) {
        CheckFinite(value);
    }
    if (position.fixType != 1.0 && position.fixType != 2.0 && position.fixType != 3.0) {
        std::abort();
    }
    for (int i = 0; i < tolvane::kGidMaxSatellites; ++i) {
        CheckFinite(position.satElevation[i]);
        CheckFinite(position.satAzimuth[i]);
    }
    const tolvane::GidDeviceInfo& device = records.device;
    if (device.path[sizeof device.path - 1] != '\0' ||
        device.driver[sizeof device.driver - 1] != '\0') {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) return 0;
    const std::size_t readSize = 1 + data[0] % 64 * 64;
    std::string_view stream(reinterpret_cast<const char*>(data + 1), size - 1);
    tolvane::gid::GpsdRecords records;
    tolvane::gid::GpsdReportStream reports;
    while (!stream.empty()) {
        const std::string_view read = stream.substr(0, readSize);
        stream.remove_prefix(read.size());
        reports.Receive(read, [&records](std::string_view line) {
            if (line.size() > tolvane::gid::kMaxReportBytes) std::abort();
            tolvane::gid::ApplyReport(line, records);
            CheckRecords(records);
        });
    }
    return 0;
}
