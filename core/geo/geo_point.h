#pragma once

#include <cstdint>
#include <string>

namespace tolvane {

// Limits of the text fields in UTF-16 code units, terminating NUL included.
inline constexpr std::size_t kGeoPointNameLength = 20;
inline constexpr std::size_t kGeoPointCategoryLength = 50;
inline constexpr std::size_t kGeoPointVoiceLength = 100;
inline constexpr std::size_t kGeoPointCommentLength = 256;

// A waypoint, point of interest or destination.
struct GeoPoint {
    double latitude = 0;   // degrees, north positive
    double longitude = 0;  // degrees, east positive
    std::string name;
    std::int32_t speedLimit = 0;       // 0 = none
    std::int32_t proximityRange = -1;  // metres or feet by unit system; -1 = use the default
    std::string category;
    std::string voiceGuide;  // spoken on arrival
    std::string comment;
    std::int32_t reached = 0;  // destinations: reached in this round
};

}  // namespace tolvane
