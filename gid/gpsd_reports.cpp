#include "gid/gpsd_reports.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <vector>

#include "gid/json_value.h"

namespace tolvane::gid {
namespace {

constexpr double kKnotsPerMetrePerSecond = 3600.0 / 1852.0;
// gpsd's modes: 2 for a 2D fix, 3 for a 3D fix, less for none.
constexpr double kMode2d = 2;
constexpr double kMode3d = 3;

// A number as a 32-bit whole number, cut to the type's range.
std::int32_t ToInt32(double value) {
    constexpr double kLow = std::numeric_limits<std::int32_t>::min();
    constexpr double kHigh = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(value, kLow, kHigh));
}

// Copies text, cut to the array and zero-filled behind it.
template <std::size_t N>
void CopyText(const std::string& from, char (&to)[N]) {
    std::memset(to, 0, N);
    std::memcpy(to, from.data(), std::min(from.size(), N - 1));
}

// The digits of text at [at, at + count) as a number; nullopt when they are
// not all digits.
std::optional<int> Digits(std::string_view text, std::size_t at, std::size_t count) {
    int value = 0;
    if (text.size() < at + count) return std::nullopt;
    const char* begin = text.data() + at;
    const auto [end, error] = std::from_chars(begin, begin + count, value);
    if (error != std::errc() || end != begin + count) return std::nullopt;
    return value;
}

// gpsd's times, "2011-07-04T09:30:00.000Z", as a local file time; 0 for
// anything else.
FileTime LocalFileTimeOf(std::string_view text) {
    const auto year = Digits(text, 0, 4), month = Digits(text, 5, 2), day = Digits(text, 8, 2);
    const auto hour = Digits(text, 11, 2), minute = Digits(text, 14, 2);
    const auto second = Digits(text, 17, 2);
    if (!year || !month || !day || !hour || !minute || !second) return 0;
    int millisecond = 0;
    if (text.size() > 19 && text[19] == '.') millisecond = Digits(text, 20, 3).value_or(0);
    const std::optional<FileTime> utc =
        CivilToFileTime({*year, *month, *day, *hour, *minute, *second, millisecond});
    return utc ? UtcToLocal(*utc) : 0;
}

void ApplyPositionReport(const JsonValue& report, GidPositionInfo& info) {
    const double mode = report.NumberOf("mode");
    info.fixValid = mode >= kMode2d ? 1 : 0;
    info.fixType = mode >= kMode3d ? 3.0 : (mode >= kMode2d ? 2.0 : 1.0);
    info.latitude = report.NumberOf("lat");
    info.longitude = report.NumberOf("lon");
    info.altitude = report.NumberOf("altMSL", report.NumberOf("alt"));
    info.course = report.NumberOf("track");
    info.speedKnots = report.NumberOf("speed") * kKnotsPerMetrePerSecond;
    info.fixTime = LocalFileTimeOf(report.TextOf("time"));
}

struct Satellite {
    std::int32_t prn = 0;
    std::int32_t snr = 0;
    double elevation = 0;
    double azimuth = 0;
    bool used = false;
};

Satellite ReadSatellite(const JsonValue& entry) {
    Satellite satellite;
    satellite.prn = ToInt32(entry.NumberOf("PRN"));
    // gpsd gives a negative strength, or none, for a satellite that is
    // not tracked.
    const double strength = entry.NumberOf("ss");
    satellite.snr = strength > 0 ? ToInt32(std::round(strength)) : 0;
    satellite.elevation = entry.NumberOf("el");
    satellite.azimuth = entry.NumberOf("az");
    const JsonValue* used = entry.Member("used");
    satellite.used = used != nullptr && used->boolean;
    return satellite;
}

// gpsd lists every satellite it hears; the record has room for twelve. The
// ones in the solution matter most, so they go first before the list is
// cut, and the kept ones are then ordered by PRN like the NMEA path's.
void ApplySatellites(const JsonValue& list, GidPositionInfo& info) {
    std::vector<Satellite> satellites;
    for (const JsonValue& entry : list.elements) satellites.push_back(ReadSatellite(entry));
    info.satellitesInView = static_cast<std::int32_t>(satellites.size());
    info.satellitesUsed = static_cast<std::int32_t>(std::count_if(
        satellites.begin(), satellites.end(), [](const Satellite& s) { return s.used; }));
    std::stable_partition(satellites.begin(), satellites.end(),
                          [](const Satellite& s) { return s.used; });
    if (satellites.size() > static_cast<std::size_t>(kGidMaxSatellites)) {
        satellites.resize(kGidMaxSatellites);
    }
    std::sort(satellites.begin(), satellites.end(),
              [](const Satellite& a, const Satellite& b) { return a.prn < b.prn; });
    std::fill(std::begin(info.satPrn), std::end(info.satPrn), 0);
    std::fill(std::begin(info.satSnr), std::end(info.satSnr), 0);
    std::fill(std::begin(info.satElevation), std::end(info.satElevation), 0.0);
    std::fill(std::begin(info.satAzimuth), std::end(info.satAzimuth), 0.0);
    for (std::size_t i = 0; i < satellites.size(); ++i) {
        info.satPrn[i] = satellites[i].prn;
        info.satSnr[i] = satellites[i].snr;
        info.satElevation[i] = satellites[i].elevation;
        info.satAzimuth[i] = satellites[i].azimuth;
    }
}

void ApplySkyReport(const JsonValue& report, GidPositionInfo& info) {
    const JsonValue* list = report.Member("satellites");
    if (list != nullptr && list->kind == JsonValue::Kind::kArray) ApplySatellites(*list, info);
    info.pdop = report.NumberOf("pdop");
    info.hdop = report.NumberOf("hdop");
    info.vdop = report.NumberOf("vdop");
}

// A receiver is open from the time in "activated"; gpsd reports 0 there,
// or leaves it out, once it has closed it.
bool IsActivated(const JsonValue& device) {
    const JsonValue* activated = device.Member("activated");
    if (activated == nullptr) return false;
    if (activated->kind == JsonValue::Kind::kNumber) return activated->number > 0;
    return activated->kind == JsonValue::Kind::kString && LocalFileTimeOf(activated->text) != 0;
}

void ApplyDeviceReport(const JsonValue& device, GidDeviceInfo& info) {
    CopyText(device.TextOf("path"), info.path);
    const std::string driver = device.TextOf("driver");
    if (!driver.empty()) CopyText(driver, info.driver);
    info.activated = IsActivated(device) ? 1 : 0;
    info.baudRate = static_cast<std::uint32_t>(std::clamp(device.NumberOf("bps"), 0.0, 4e9));
}

}  // namespace

GidPositionInfo EmptyPositionInfo() {
    GidPositionInfo info{};
    info.fixType = 1.0;
    return info;
}

bool ApplyReport(std::string_view line, GpsdRecords& records) {
    const std::optional<JsonValue> report = ReadJsonObject(line);
    if (!report) return false;
    const std::string kind = report->TextOf("class");
    const bool fromReceiver = kind == "TPV" || kind == "SKY";
    if (fromReceiver) {
        records.receiverOpen = true;
        records.device.lastReportTime = UtcToLocal(SystemClock().NowUtc());
    }
    if (kind == "TPV") ApplyPositionReport(*report, records.position);
    if (kind == "SKY") ApplySkyReport(*report, records.position);
    const JsonValue* devices = report->Member("devices");
    if (kind == "DEVICES" && devices != nullptr && devices->kind == JsonValue::Kind::kArray &&
        !devices->elements.empty()) {
        ApplyDeviceReport(devices->elements.front(), records.device);
    }
    if (kind == "DEVICE") {
        ApplyDeviceReport(*report, records.device);
        records.receiverOpen = records.device.activated != 0;
    }
    return fromReceiver;
}

void GpsdReportStream::Receive(std::string_view bytes,
                               const std::function<void(std::string_view)>& onLine) {
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
        if (!overlong_ && !line_.empty()) onLine(line_);
        line_.clear();
        overlong_ = false;
    }
}

}  // namespace tolvane::gid
