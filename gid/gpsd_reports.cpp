#include "gid/gpsd_reports.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <vector>

namespace tolvane::gid {
namespace {

constexpr double kKnotsPerMetrePerSecond = 3600.0 / 1852.0;
// Seconds between 1601-01-01 and the Unix epoch 1970-01-01.
constexpr std::int64_t kUnixEpochInFileTimeSeconds = 11'644'473'600;
constexpr std::int64_t kNanosecondsPerFileTimeTick = 100;

double Known(double value) {
    return std::isfinite(value) ? value : 0.0;
}

double FixTypeOfMode(int mode) {
    if (mode == MODE_3D) return 3.0;
    if (mode == MODE_2D) return 2.0;
    return 1.0;
}

// gpsd lists every satellite it hears; the record has room for twelve. The
// ones in the solution matter most, so they go first before the list is cut,
// and the kept ones are then ordered by PRN like the NMEA path's.
std::vector<const satellite_t*> ChooseSatellites(const gps_data_t& data) {
    const int count = std::clamp(data.satellites_visible, 0, MAXCHANNELS);
    std::vector<const satellite_t*> chosen;
    for (int i = 0; i < count; ++i) chosen.push_back(&data.skyview[i]);
    std::stable_partition(chosen.begin(), chosen.end(),
                          [](const satellite_t* satellite) { return satellite->used; });
    if (chosen.size() > static_cast<std::size_t>(kGidMaxSatellites)) {
        chosen.resize(kGidMaxSatellites);
    }
    std::sort(chosen.begin(), chosen.end(),
              [](const satellite_t* a, const satellite_t* b) { return a->PRN < b->PRN; });
    return chosen;
}

// Copies a NUL-terminated text, cut to the array and zero-filled behind it.
template <std::size_t N>
void CopyText(const char* from, char (&to)[N]) {
    std::memset(to, 0, N);
    std::memcpy(to, from, strnlen(from, N - 1));
}

// A Unix time as a local file time (100 ns since 1601), 0 for no time.
FileTime LocalFileTimeFromUnix(const timespec& time) {
    if (time.tv_sec <= 0) return 0;
    const FileTime utc = (static_cast<std::int64_t>(time.tv_sec) + kUnixEpochInFileTimeSeconds) *
                             kFileTimeTicksPerSecond +
                         time.tv_nsec / kNanosecondsPerFileTimeTick;
    return UtcToLocal(utc);
}

}  // namespace

GidPositionInfo EmptyPositionInfo() {
    GidPositionInfo info{};
    info.fixType = 1.0;
    return info;
}

void ApplyPositionReport(const gps_fix_t& fix, GidPositionInfo& info) {
    info.fixValid = fix.mode >= MODE_2D ? 1 : 0;
    info.latitude = Known(fix.latitude);
    info.longitude = Known(fix.longitude);
    info.altitude = Known(fix.altMSL);
    info.course = Known(fix.track);
    info.speedKnots = Known(fix.speed) * kKnotsPerMetrePerSecond;
    info.fixType = FixTypeOfMode(fix.mode);
    info.fixTime = LocalFileTimeFromUnix(fix.time);
}

void ApplySkyReport(const gps_data_t& data, GidPositionInfo& info) {
    info.satellitesInView = std::max(data.satellites_visible, 0);
    info.satellitesUsed = std::max(data.satellites_used, 0);
    std::fill(std::begin(info.satPrn), std::end(info.satPrn), 0);
    std::fill(std::begin(info.satSnr), std::end(info.satSnr), 0);
    std::fill(std::begin(info.satElevation), std::end(info.satElevation), 0.0);
    std::fill(std::begin(info.satAzimuth), std::end(info.satAzimuth), 0.0);
    const std::vector<const satellite_t*> chosen = ChooseSatellites(data);
    for (std::size_t i = 0; i < chosen.size(); ++i) {
        const satellite_t& satellite = *chosen[i];
        info.satPrn[i] = satellite.PRN;
        // gpsd gives -1 or NaN for a satellite that is not tracked.
        info.satSnr[i] =
            satellite.ss > 0 ? static_cast<std::int32_t>(std::lround(satellite.ss)) : 0;
        info.satElevation[i] = Known(satellite.elevation);
        info.satAzimuth[i] = Known(satellite.azimuth);
    }
    info.pdop = Known(data.dop.pdop);
    info.hdop = Known(data.dop.hdop);
    info.vdop = Known(data.dop.vdop);
}

void ApplyDeviceReport(const devconfig_t& device, GidDeviceInfo& info) {
    CopyText(device.path, info.path);
    if (device.driver[0] != '\0') CopyText(device.driver, info.driver);
    info.activated = device.activated.tv_sec > 0 ? 1 : 0;
    info.baudRate = device.baudrate;
}

bool ApplyReport(const gps_data_t& data, GpsdRecords& records) {
    const bool fromReceiver = (data.set & (MODE_SET | SATELLITE_SET)) != 0;
    if (fromReceiver) {
        records.receiverOpen = true;
        records.device.lastReportTime = UtcToLocal(SystemClock().NowUtc());
    }
    if ((data.set & MODE_SET) != 0) ApplyPositionReport(data.fix, records.position);
    if ((data.set & SATELLITE_SET) != 0) ApplySkyReport(data, records.position);
    if ((data.set & DEVICELIST_SET) != 0 && data.devices.ndevices > 0) {
        ApplyDeviceReport(data.devices.list[0], records.device);
    }
    if ((data.set & DEVICE_SET) != 0) {
        ApplyDeviceReport(data.dev, records.device);
        records.receiverOpen = records.device.activated != 0;
    }
    return fromReceiver;
}

void ClearGpsData(gps_data_t& data) {
    std::memset(&data, 0, sizeof data);
    data.gps_fd = -1;
    gps_clear_fix(&data.fix);
    gps_clear_dop(&data.dop);
    gps_clear_att(&data.attitude);
    gps_clear_log(&data.log);
}

void GpsdReportStream::Receive(std::string_view bytes, gps_data_t& data,
                               const std::function<void(const gps_data_t&)>& onReport) {
    while (!bytes.empty()) {
        const std::size_t end = bytes.find('\n');
        const std::string_view piece = bytes.substr(0, end);
        if (line_.size() + piece.size() > kMaxReportBytes) {
            overlong_ = true;
            line_.clear();
        } else if (!overlong_) {
            line_.append(piece);
        }
        if (end == std::string_view::npos) return;
        bytes.remove_prefix(end + 1);
        if (!overlong_ && !line_.empty()) {
            // The client library adds to the flags of what it decoded;
            // clearing them first leaves only those of this report.
            data.set = 0;
            if (gps_unpack(line_.data(), &data) == 0) onReport(data);
        }
        line_.clear();
        overlong_ = false;
    }
}

}  // namespace tolvane::gid
