#pragma once

#include <cstdint>
#include <string>

#include "core/geo/geo_point.h"

namespace tolvane {

// Language strings of the point editor's refusals.
inline constexpr std::uint32_t kTextPointNameMissing = 14201;
inline constexpr std::uint32_t kTextLatitudeUnreadable = 14202;   // %s: an example
inline constexpr std::uint32_t kTextLongitudeUnreadable = 14203;  // %s: an example
inline constexpr std::uint32_t kTextSpeedLimitInvalid = 14204;
inline constexpr std::uint32_t kTextRangeInvalid = 14205;  // %s: the unit

inline constexpr std::int32_t kMaxSpeedLimit = 999;
inline constexpr std::int32_t kMaxProximityRange = 99999;

// The point editor's fields as the user sees and types them.
struct PointEntry {
    std::string name;
    std::string latitude;
    std::string longitude;
    std::string category;        // a name of the POI category table or the user's own
    std::string speedLimit;      // empty: no limit
    std::string proximityRange;  // in the current unit; empty: the default range
    std::string voiceGuide;
    std::string comment;
};

// The editor's fields for a point, the coordinates in the current format;
// without a known position (a new point made with no fix) the coordinates
// are left empty for the user to type.
PointEntry EntryFromPoint(const GeoPoint& point, int coordFormat, bool positionKnown);

struct PointEntryResult {
    bool accepted = false;
    GeoPoint point;
    std::string refusal;  // what to tell the user when not accepted
};

// Checks the fields and makes the point of them. The name is cut to its 19
// characters, the voice text cleaned of the characters that would break its
// command line and file column, and the texts cut to their field limits; a
// missing name, an unreadable coordinate (the refusal shows an example in
// the current format), a speed limit outside 0..999 or a range outside
// 1..99999 is refused. The reached flag of base is kept.
PointEntryResult PointFromEntry(const PointEntry& entry, const GeoPoint& base, int coordFormat,
                                int unitSystem);

// The category a file stores for what the user chose or typed: a table
// entry, by its shown name, code or name, becomes the name the lookup by
// text gives back; any other text is the user's own category and kept.
std::string StoredCategory(const std::string& text);

// The index 1..30 of a category of the table by its shown name, code or
// name; 0 for the user's own categories.
int CategoryIndex(const std::string& text);

}  // namespace tolvane
