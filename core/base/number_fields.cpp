#include "core/base/number_fields.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tolvane {

std::int64_t ReadUnsignedField(std::string_view text, std::int64_t limit) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return 0;
    text = text.substr(first, text.find_last_not_of(' ') - first + 1);
    std::int64_t value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') return 0;
        // Anything past the limit reads the same, so counting stops there.
        value = std::min<std::int64_t>(value * 10 + (c - '0'), limit);
    }
    return value;
}

double ReadDecimalField(std::string_view text, std::size_t maxLength) {
    text = text.substr(0, maxLength);
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return 0;
    text.remove_prefix(first);
    // from_chars takes no plus sign, which a typed number may carry.
    if (text.starts_with('+')) text.remove_prefix(1);
    double value = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    // "inf" and "nan" are numbers to from_chars but not to a user.
    if (error != std::errc() || !std::isfinite(value)) return 0;
    return value;
}

}  // namespace tolvane
