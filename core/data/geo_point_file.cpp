#include "core/data/geo_point_file.h"

#include <cstdio>
#include <optional>
#include <vector>

#include "core/base/string_manager.h"
#include "core/base/text_encoding.h"

namespace tolvane {
namespace {

struct PoiCategory {
    const char* displayName;
    const char* code;
    const char* acceptedName;  // also the canonical name a lookup writes back
};

// Category 6 is shown misspelled but looked up by its right spelling; the
// two must stay different, files in the field depend on both.
constexpr PoiCategory kPoiCategories[kPoiCategoryCount] = {
    {"Swimming Area", "00163", "Swimming Area"},
    {"Post Office", "08214", "Post Office"},
    {"Drinking Water", "00153", "Drinking Water"},
    {"Bank", "00006", "Bank"},
    {"Medical Facility", "00156", "Medical Facility"},
    {"Informaion", "00157", "Information"},
    {"Danger Area", "00014", "Danger Area"},
    {"Parking Area", "00158", "Parking Area"},
    {"Tunnel", "08243", "Tunnel"},
    {"Forest", "08245", "Forest"},
    {"Bridge", "08233", "Bridge"},
    {"Car Repair", "08207", "Car Repair"},
    {"Car", "00170", "Car"},
    {"Cemetery", "08235", "Cemetery"},
    {"Bar", "00013", "Bar"},
    {"Military", "08241", "Military"},
    {"Restaurant", "00011", "Restaurant"},
    {"Church", "08236", "Church"},
    {"Gas Station", "00008", "Gas Station"},
    {"Tall Tower", "16391", "Tall Tower"},
    {"Airport", "16384", "Airport"},
    {"Heliport", "16388", "Heliport"},
    {"Short Tower", "16392", "Short Tower"},
    {"Fishing Area", "00007", "Fishing Area"},
    {"Telephone", "00155", "Telephone"},
    {"Fast Food", "08208", "Fast Food"},
    {"Beach", "08244", "Beach"},
    {"Shopping Center", "00172", "Shopping Center"},
    {"Waypoint", "00018", "Waypoint"},
    {"Park", "00159", "Park"},
};

// Column positions of a point line.
constexpr std::size_t kLongitudeColumn = 0;
constexpr std::size_t kLatitudeColumn = 1;
constexpr std::size_t kNameColumn = 2;
constexpr std::size_t kCategoryColumn = 3;
constexpr std::size_t kRangeColumn = 4;
constexpr std::size_t kVoiceColumn = 5;
constexpr std::size_t kCommentColumn = 8;
constexpr std::size_t kColumnCount = 9;

char AsciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (AsciiLower(a[i]) != AsciiLower(b[i])) return false;
    }
    return true;
}

// The characters replaced are all ASCII, which never occurs inside a
// multi-byte UTF-8 character, so a byte-wise replacement is safe.
std::string ReplaceWithBlanks(std::string_view text, std::string_view characters) {
    std::string out(text);
    for (char& c : out) {
        if (characters.find(c) != std::string_view::npos) c = ' ';
    }
    return out;
}

std::string PointLine(const GeoPoint& point) {
    constexpr std::string_view kLineBreaks = "\r\n";
    constexpr std::string_view kColumnBreakers = "\r\n,";
    const std::string name = ReplaceWithBlanks(point.name, kColumnBreakers);
    std::string line = FormatText("%f,%f,", point.longitude, point.latitude);
    line += point.speedLimit == 0 ? FormatText("%s,", name.c_str())
                                  : FormatText("%s@%d,", name.c_str(), point.speedLimit);
    line += ReplaceWithBlanks(point.category, kColumnBreakers) + ",";
    line += point.proximityRange != -1 ? FormatText("%d,", point.proximityRange) : ",";
    line += CleanVoiceGuide(point.voiceGuide) + ",,,";
    line += ReplaceWithBlanks(point.comment, kLineBreaks) + "\r\n";
    return line;
}

// "Home@50" is Home with a limit of 50; an at-sign followed by anything but
// a number belongs to the name.
void ReadNameAndLimit(std::string_view column, GeoPoint& point) {
    const std::size_t at = column.rfind('@');
    std::optional<std::int32_t> limit;
    if (at != std::string_view::npos) limit = ParseInt32(column.substr(at + 1));
    if (limit) column = column.substr(0, at);
    point.speedLimit = limit.value_or(0);
    point.name = TruncateToUtf16Units(column, kGeoPointNameLength - 1);
}

std::optional<GeoPoint> ParsePointLine(std::string_view line) {
    const std::vector<std::string_view> columns = SplitColumns(line, kColumnCount);
    if (columns.size() <= kNameColumn) return std::nullopt;
    const std::optional<double> longitude = ParseNumber(columns[kLongitudeColumn]);
    const std::optional<double> latitude = ParseNumber(columns[kLatitudeColumn]);
    if (!longitude || !latitude || *longitude < -180 || *longitude > 180 || *latitude < -90 ||
        *latitude > 90) {
        return std::nullopt;
    }
    const auto column = [&](std::size_t index) {
        return index < columns.size() ? columns[index] : std::string_view();
    };
    GeoPoint point;
    point.longitude = *longitude;
    point.latitude = *latitude;
    ReadNameAndLimit(columns[kNameColumn], point);
    point.category = TruncateToUtf16Units(column(kCategoryColumn), kGeoPointCategoryLength - 1);
    point.proximityRange = ParseInt32(column(kRangeColumn)).value_or(-1);
    point.voiceGuide =
        TruncateToUtf16Units(CleanVoiceGuide(column(kVoiceColumn)), kGeoPointVoiceLength - 1);
    point.comment = TruncateToUtf16Units(column(kCommentColumn), kGeoPointCommentLength - 1);
    return point;
}

}  // namespace

std::string CleanVoiceGuide(std::string_view text) {
    return ReplaceWithBlanks(text, "\r\n\",");
}

int CategoryFromText(std::string& text) {
    for (int index = 1; index <= kPoiCategoryCount; ++index) {
        const PoiCategory& category = kPoiCategories[index - 1];
        if (EqualsIgnoringCase(text, category.code) ||
            EqualsIgnoringCase(text, category.acceptedName)) {
            text = category.acceptedName;
            return index;
        }
    }
    return 0;
}

std::string CategoryName(int index) {
    if (index < 1 || index > kPoiCategoryCount) return {};
    return kPoiCategories[index - 1].displayName;
}

std::string CategoryCanonicalName(int index) {
    if (index < 1 || index > kPoiCategoryCount) return {};
    return kPoiCategories[index - 1].acceptedName;
}

bool SavePointFile(const std::string& path, DynamicList<GeoPoint>& points) {
    std::string text;
    points.ForEach([&](const GeoPoint& point) { text += PointLine(point); });
    const std::string bytes = Utf8ToWindows1252(text);
    FilePointer file(std::fopen(path.c_str(), "wb"));
    if (!file) return false;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
    // Closing flushes; a full disk may only show here.
    return std::fclose(file.release()) == 0 && written;
}

std::string PointFileNotSavedMessage(const std::string& path) {
    std::string text = LanguageText(kStringPointFileNotSaved);
    const std::size_t placeholder = text.find("%s");
    if (placeholder != std::string::npos) text.replace(placeholder, 2, path);
    return text;
}

CsvReadResult LoadPointFile(const std::string& path, DynamicList<GeoPoint>& points) {
    return ReadCsvRecords(path, points, [](std::string_view bytes) {
        return ParsePointLine(Windows1252ToUtf8(bytes));
    });
}

}  // namespace tolvane
