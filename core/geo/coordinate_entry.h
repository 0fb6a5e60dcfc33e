#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tolvane {

enum class CoordAxis { kLatitude, kLongitude };

// Reads a latitude or longitude as a user types it, in any of the three
// coordinate formats whatever the current one is, so that a position copied
// from another program or a map is taken as it stands:
//   "N 25°01'30.5\"", "25 1 30.5 N", "S 033°52.1234'", "-33.868", "151.2° E".
// The hemisphere letter may stand first or last (either case) or be replaced
// by a sign; without either the value is north or east. Degrees, minutes and
// seconds are separated by the degree, minute and second marks, colons or
// blanks; only the last of them may have a fraction, minutes and seconds
// stay below 60 (60.00 seconds are taken, the program prints them), and the
// value stays within ±90 or ±180. Anything else is nullopt.
std::optional<double> ParseCoordinate(std::string_view text, CoordAxis axis);

// An entry of the given coordinate format that ParseCoordinate reads, for
// the message that refuses a bad entry.
std::string CoordinateExample(int coordFormat, CoordAxis axis);

}  // namespace tolvane
