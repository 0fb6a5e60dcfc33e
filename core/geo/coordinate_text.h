#pragma once

#include <optional>
#include <string_view>

namespace tolvane {

// A latitude or longitude as the user types it or as the program shows it:
// decimal degrees with a sign ("-27.2109"), or degrees, minutes and
// seconds with any separators and a hemisphere letter before or after
// ("S 27 12.6546", "27°12'39.28\" S", "153°03.1201' E"). nullopt for text
// that is none of these, a letter of the other axis, or a value beyond
// 90 (latitude) or 180 (longitude) degrees.
std::optional<double> ParseCoordinate(std::string_view text, bool latitude);

}  // namespace tolvane
