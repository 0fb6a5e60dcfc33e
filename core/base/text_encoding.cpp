#include "core/base/text_encoding.h"

#include <array>
#include <cstdint>

namespace tolvane {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

// Code points of Windows-1252 bytes 0x80..0x9F; the rest equal Latin-1.
constexpr std::array<char16_t, 32> kWindows1252High = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// Reads one code point at text[pos] and advances pos; malformed input gives
// U+FFFD and skips one byte.
char32_t DecodeUtf8(std::string_view text, std::size_t& pos) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(pos);
    int length = 0;
    char32_t code = 0;
    if (lead < 0x80) {
        ++pos;
        return lead;
    } else if ((lead & 0xE0) == 0xC0) {
        length = 2;
        code = lead & 0x1F;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3;
        code = lead & 0x0F;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4;
        code = lead & 0x07;
    } else {
        ++pos;
        return kReplacement;
    }
    if (pos + length > text.size()) {
        ++pos;
        return kReplacement;
    }
    for (int i = 1; i < length; ++i) {
        const unsigned char next = byte(pos + i);
        if ((next & 0xC0) != 0x80) {
            ++pos;
            return kReplacement;
        }
        code = (code << 6) | (next & 0x3F);
    }
    static constexpr char32_t kMinimum[5] = {0, 0, 0x80, 0x800, 0x10000};
    if (code < kMinimum[length] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
        ++pos;
        return kReplacement;
    }
    pos += length;
    return code;
}

void AppendUtf8(std::string& out, char32_t code) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (code >> 18));
        out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

std::size_t Utf16Units(char32_t code) {
    return code >= 0x10000 ? 2 : 1;
}

}  // namespace

std::u16string Utf8ToUtf16(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    for (std::size_t pos = 0; pos < text.size();) {
        const char32_t code = DecodeUtf8(text, pos);
        if (code >= 0x10000) {
            out += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
            out += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
        } else {
            out += static_cast<char16_t>(code);
        }
    }
    return out;
}

std::string Utf16ToUtf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t code = text[i];
        if (code >= 0xD800 && code <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
            text[i + 1] <= 0xDFFF) {
            code = 0x10000 + ((code - 0xD800) << 10) + (text[i + 1] - 0xDC00);
            ++i;
        } else if (code >= 0xD800 && code <= 0xDFFF) {
            code = kReplacement;
        }
        AppendUtf8(out, code);
    }
    return out;
}

std::string Utf8ToWindows1252(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t pos = 0; pos < text.size();) {
        const char32_t code = DecodeUtf8(text, pos);
        if (code < 0x80 || (code >= 0xA0 && code <= 0xFF)) {
            out += static_cast<char>(code);
            continue;
        }
        char mapped = '?';
        for (std::size_t i = 0; i < kWindows1252High.size(); ++i) {
            if (kWindows1252High[i] == code) {
                mapped = static_cast<char>(0x80 + i);
                break;
            }
        }
        out += mapped;
    }
    return out;
}

std::string Windows1252ToUtf8(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        AppendUtf8(out, byte >= 0x80 && byte < 0xA0 ? kWindows1252High[byte - 0x80] : byte);
    }
    return out;
}

std::string TruncateToUtf16Units(std::string_view text, std::size_t maxUnits) {
    std::size_t units = 0;
    std::size_t pos = 0;
    while (pos < text.size()) {
        std::size_t next = pos;
        const char32_t code = DecodeUtf8(text, next);
        if (units + Utf16Units(code) > maxUnits) break;
        units += Utf16Units(code);
        pos = next;
    }
    return std::string(text.substr(0, pos));
}

}  // namespace tolvane
