#include "core/data/point_entry.h"

#include <optional>

#include "core/base/csv_text.h"
#include "core/base/string_manager.h"
#include "core/base/text_encoding.h"
#include "core/data/geo_point_file.h"
#include "core/geo/coordinate_entry.h"
#include "core/geo/formatting.h"

namespace tolvane {
namespace {

std::string WithArgument(std::uint32_t id, const std::string& argument) {
    std::string text = LanguageText(id);
    const std::size_t placeholder = text.find("%s");
    if (placeholder != std::string::npos) text.replace(placeholder, 2, argument);
    return text;
}

// An empty field gives fallback; otherwise a whole number within
// [low, high], or nullopt.
std::optional<std::int32_t> WholeNumber(const std::string& field, std::int32_t fallback,
                                        std::int32_t low, std::int32_t high) {
    if (field.find_first_not_of(" \t") == std::string::npos) return fallback;
    const std::optional<std::int32_t> value = ParseInt32(field);
    if (!value || *value < low || *value > high) return std::nullopt;
    return value;
}

std::string Cut(const std::string& text, std::size_t limit) {
    return TruncateToUtf16Units(text, limit - 1);
}

}  // namespace

// The shown name of category 6 is misspelled and not a name the lookup by
// text takes, so the shown names are compared first.
int CategoryIndex(const std::string& text) {
    for (int index = 1; index <= kPoiCategoryCount; ++index) {
        if (CategoryName(index) == text) return index;
    }
    std::string name = text;
    return CategoryFromText(name);
}

std::string StoredCategory(const std::string& text) {
    const int index = CategoryIndex(text);
    if (index == 0) return Cut(text, kGeoPointCategoryLength);
    return CategoryCanonicalName(index);
}

PointEntry EntryFromPoint(const GeoPoint& point, int coordFormat, bool positionKnown) {
    PointEntry entry;
    entry.name = point.name;
    if (positionKnown) {
        FormatLatitude(coordFormat, HemisphereStyle::kHemisphereFirst, point.latitude,
                       &entry.latitude);
        FormatLongitude(coordFormat, HemisphereStyle::kHemisphereFirst, point.longitude,
                        &entry.longitude);
    }
    entry.category = point.category;
    if (point.speedLimit != 0) entry.speedLimit = std::to_string(point.speedLimit);
    if (point.proximityRange != -1) entry.proximityRange = std::to_string(point.proximityRange);
    entry.voiceGuide = point.voiceGuide;
    entry.comment = point.comment;
    return entry;
}

PointEntryResult PointFromEntry(const PointEntry& entry, const GeoPoint& base, int coordFormat,
                                int unitSystem) {
    PointEntryResult result;
    GeoPoint& point = result.point = base;
    point.name = Cut(entry.name, kGeoPointNameLength);
    const std::optional<double> latitude = ParseCoordinate(entry.latitude, CoordAxis::kLatitude);
    const std::optional<double> longitude = ParseCoordinate(entry.longitude, CoordAxis::kLongitude);
    const std::optional<std::int32_t> limit = WholeNumber(entry.speedLimit, 0, 0, kMaxSpeedLimit);
    const std::optional<std::int32_t> range =
        WholeNumber(entry.proximityRange, -1, 1, kMaxProximityRange);
    if (point.name.find_first_not_of(' ') == std::string::npos) {
        result.refusal = LanguageText(kTextPointNameMissing);
    } else if (!latitude) {
        result.refusal = WithArgument(kTextLatitudeUnreadable,
                                      CoordinateExample(coordFormat, CoordAxis::kLatitude));
    } else if (!longitude) {
        result.refusal = WithArgument(kTextLongitudeUnreadable,
                                      CoordinateExample(coordFormat, CoordAxis::kLongitude));
    } else if (!limit) {
        result.refusal = LanguageText(kTextSpeedLimitInvalid);
    } else if (!range) {
        result.refusal = WithArgument(kTextRangeInvalid, AltitudeUnitText(unitSystem));
    } else {
        point.latitude = *latitude;
        point.longitude = *longitude;
        point.speedLimit = *limit;
        point.proximityRange = *range;
        point.category = StoredCategory(entry.category);
        point.voiceGuide = Cut(CleanVoiceGuide(entry.voiceGuide), kGeoPointVoiceLength);
        point.comment = Cut(entry.comment, kGeoPointCommentLength);
        result.accepted = true;
    }
    return result;
}

}  // namespace tolvane
