#include "core/geo/coordinate_text.h"

#include <cctype>
#include <cmath>
#include <vector>

#include "core/base/csv_text.h"

namespace tolvane {
namespace {

bool IsNumberChar(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) || c == '.';
}

}  // namespace

std::optional<double> ParseCoordinate(std::string_view text, bool latitude) {
    const char positive = latitude ? 'N' : 'E';
    const char negative = latitude ? 'S' : 'W';
    std::vector<double> parts;
    bool south = false;
    int letters = 0;
    for (std::size_t i = 0; i < text.size();) {
        const char c = text[i];
        if (IsNumberChar(c)) {
            std::size_t end = i;
            while (end < text.size() && IsNumberChar(text[end])) ++end;
            const std::optional<double> number = ParseNumber(text.substr(i, end - i));
            if (!number) return std::nullopt;
            parts.push_back(*number);
            i = end;
            continue;
        }
        if (std::isalpha(static_cast<unsigned char>(c))) {
            const char upper = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
            if (upper != positive && upper != negative) return std::nullopt;
            south = upper == negative;
            ++letters;
        } else if (c == '-') {
            if (!parts.empty()) return std::nullopt;
            south = !south;
        }
        ++i;
    }
    if (parts.empty() || parts.size() > 3 || letters > 1) return std::nullopt;
    double value = 0;
    double unit = 1;
    for (const double part : parts) {
        // The program prints up to 60.00 without a carry, so 60 itself reads.
        if (unit < 1 && part > 60) return std::nullopt;
        value += part * unit;
        unit /= 60;
    }
    if (value > (latitude ? 90.0 : 180.0)) return std::nullopt;
    return south ? -value : value;
}

}  // namespace tolvane
