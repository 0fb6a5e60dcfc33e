#include "core/geo/coordinate_entry.h"

#include <cmath>
#include <vector>

#include "core/base/csv_text.h"
#include "core/geo/formatting.h"

namespace tolvane {
namespace {

// The degree, minute and second marks a user may type or paste, in UTF-8:
// the degree sign, the prime and double prime, and the typographic quotes
// that word processors put in their place.
constexpr std::string_view kMarks[] = {"\xC2\xB0",     "\xE2\x80\xB2", "\xE2\x80\xB3",
                                       "\xE2\x80\x99", "\xE2\x80\x9D", "\xC2\xBA"};
constexpr std::string_view kAsciiSeparators = " \t'\":";

constexpr double kMaxLatitude = 90;
constexpr double kMaxLongitude = 180;
constexpr double kMinutesPerDegree = 60;
constexpr double kMaxSeconds = 60;  // the printing can show 60.00 seconds

struct Signed {
    std::string_view body;
    int sign = 1;
};

char Upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::string_view Trim(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
    return text;
}

// The hemisphere letter at either end, or a leading sign, becomes the sign
// of the value; a letter of the other axis or two of them is nullopt.
std::optional<Signed> TakeHemisphere(std::string_view text, CoordAxis axis) {
    const char positive = axis == CoordAxis::kLatitude ? 'N' : 'E';
    const char negative = axis == CoordAxis::kLatitude ? 'S' : 'W';
    Signed result{Trim(text)};
    if (result.body.empty()) return std::nullopt;
    const auto hemisphere = [&](char c) { return Upper(c) == positive || Upper(c) == negative; };
    const char first = result.body.front();
    const char last = result.body.back();
    char letter = 0;
    if (hemisphere(first)) {
        letter = first;
        result.body.remove_prefix(1);
    } else if (hemisphere(last)) {
        letter = last;
        result.body.remove_suffix(1);
    } else if (first == '-' || first == '+') {
        result.sign = first == '-' ? -1 : 1;
        result.body.remove_prefix(1);
    }
    if (letter != 0) result.sign = Upper(letter) == negative ? -1 : 1;
    result.body = Trim(result.body);
    return result;
}

// Splits at the marks and separators into the numbers' texts.
std::vector<std::string_view> NumberTexts(std::string_view body) {
    std::vector<std::string_view> parts;
    std::size_t start = 0;
    std::size_t at = 0;
    const auto close = [&](std::size_t end) {
        if (end > start) parts.push_back(body.substr(start, end - start));
    };
    while (at < body.size()) {
        std::size_t separatorLength = kAsciiSeparators.find(body[at]) != std::string_view::npos;
        for (const std::string_view mark : kMarks) {
            if (body.substr(at, mark.size()) == mark) separatorLength = mark.size();
        }
        if (separatorLength == 0) {
            ++at;
            continue;
        }
        close(at);
        at += separatorLength;
        start = at;
    }
    close(body.size());
    return parts;
}

bool IsPlainNumber(std::string_view text, bool fractionAllowed) {
    int digits = 0;
    int points = 0;
    for (const char c : text) {
        if (c >= '0' && c <= '9') {
            ++digits;
        } else if (c == '.' && fractionAllowed) {
            ++points;
        } else {
            return false;
        }
    }
    return digits > 0 && points <= 1;
}

// Degrees, degrees and minutes, or degrees, minutes and seconds.
std::optional<double> Magnitude(const std::vector<std::string_view>& parts) {
    if (parts.empty() || parts.size() > 3) return std::nullopt;
    double value = 0;
    double scale = 1;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (!IsPlainNumber(parts[i], i + 1 == parts.size())) return std::nullopt;
        const double number = *ParseNumber(parts[i]);
        const double limit = i == 2 ? kMaxSeconds : kMinutesPerDegree;
        if (i > 0 && (i == 2 ? number > limit : number >= limit)) return std::nullopt;
        value += number / scale;
        scale *= kMinutesPerDegree;
    }
    return value;
}

}  // namespace

std::optional<double> ParseCoordinate(std::string_view text, CoordAxis axis) {
    const std::optional<Signed> hemisphere = TakeHemisphere(text, axis);
    if (!hemisphere) return std::nullopt;
    const std::optional<double> magnitude = Magnitude(NumberTexts(hemisphere->body));
    const double limit = axis == CoordAxis::kLatitude ? kMaxLatitude : kMaxLongitude;
    if (!magnitude || *magnitude > limit) return std::nullopt;
    return hemisphere->sign * *magnitude;
}

std::string CoordinateExample(int coordFormat, CoordAxis axis) {
    // Sydney Opera House, a place whose coordinates are well known.
    constexpr double kExampleLatitude = -33.856784;
    constexpr double kExampleLongitude = 151.215297;
    std::string text;
    if (axis == CoordAxis::kLatitude) {
        FormatLatitude(coordFormat, HemisphereStyle::kHemisphereFirst, kExampleLatitude, &text);
    } else {
        FormatLongitude(coordFormat, HemisphereStyle::kHemisphereFirst, kExampleLongitude, &text);
    }
    return text;
}

}  // namespace tolvane
