#include "core/base/language_file.h"

#include <charconv>

#include "core/base/text_encoding.h"

namespace tolvane {
namespace {

std::uint32_t ReadUint32(std::string_view bytes, std::size_t at) {
    const auto byte = [&](std::size_t i) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + i]));
    };
    return byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24;
}

void AppendUint32(std::string& out, std::uint32_t value) {
    for (int i = 0; i < 4; ++i) out += static_cast<char>((value >> (8 * i)) & 0xFF);
}

bool Unescape(std::string_view text, std::string& out) {
    out.clear();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            out += text[i];
            continue;
        }
        if (++i == text.size()) return false;
        switch (text[i]) {
            case 'n':
                out += '\n';
                break;
            case 't':
                out += '\t';
                break;
            case '\\':
                out += '\\';
                break;
            default:
                return false;
        }
    }
    return true;
}

}  // namespace

bool DecodeLanguageFile(std::string_view bytes, std::vector<LanguageEntry>& entries) {
    entries.clear();
    std::size_t at = 0;
    while (at < bytes.size()) {
        if (bytes.size() - at < 8) return false;
        const std::uint32_t id = ReadUint32(bytes, at);
        const std::uint32_t length = ReadUint32(bytes, at + 4);
        at += 8;
        if (length == 0 || bytes.size() - at < 2 * static_cast<std::size_t>(length)) return false;
        std::u16string text;
        text.reserve(length);
        for (std::uint32_t i = 0; i < length; ++i, at += 2) {
            const char16_t unit =
                static_cast<char16_t>(static_cast<unsigned char>(bytes[at]) |
                                      static_cast<unsigned char>(bytes[at + 1]) << 8);
            text += unit;
        }
        // The stored text is NUL-terminated in memory, so an embedded NUL ends it.
        const std::size_t terminator = text.find(u'\0');
        if (terminator != std::u16string::npos) text.resize(terminator);
        entries.push_back({id, Utf16ToUtf8(text)});
    }
    return true;
}

std::string EncodeLanguageFile(const std::vector<LanguageEntry>& entries) {
    std::string out;
    for (const LanguageEntry& entry : entries) {
        const std::u16string text = Utf8ToUtf16(entry.text);
        AppendUint32(out, entry.id);
        AppendUint32(out, static_cast<std::uint32_t>(text.size()));
        for (const char16_t unit : text) {
            out += static_cast<char>(unit & 0xFF);
            out += static_cast<char>(unit >> 8);
        }
    }
    return out;
}

bool ParseLanguageSource(std::string_view source, std::vector<LanguageEntry>& entries,
                         std::string& error) {
    entries.clear();
    int lineNumber = 0;
    while (!source.empty()) {
        const std::size_t end = source.find('\n');
        std::string_view line = source.substr(0, end);
        source = end == std::string_view::npos ? std::string_view() : source.substr(end + 1);
        ++lineNumber;
        // Carriage returns at a line's end are the line end of another
        // system, however many an editor left there.
        while (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (line.empty() || line.front() == '#') continue;

        const std::string where = "line " + std::to_string(lineNumber) + ": ";
        const std::size_t tab = line.find('\t');
        if (tab == std::string_view::npos) {
            error = where + "expected an id, a tab and a text";
            return false;
        }
        LanguageEntry entry;
        const auto [next, status] = std::from_chars(line.data(), line.data() + tab, entry.id);
        if (status != std::errc() || next != line.data() + tab) {
            error = where + "the id is not a whole number";
            return false;
        }
        if (!Unescape(line.substr(tab + 1), entry.text)) {
            error = where + "a backslash must be followed by n, t or another backslash";
            return false;
        }
        if (entry.text.empty()) {
            error = where + "the text is empty";
            return false;
        }
        entries.push_back(std::move(entry));
    }
    return true;
}

std::string FormatLanguageSourceLine(const LanguageEntry& entry) {
    std::string line = std::to_string(entry.id) + '\t';
    for (const char c : entry.text) {
        switch (c) {
            case '\n':
                line += "\\n";
                break;
            case '\t':
                line += "\\t";
                break;
            case '\\':
                line += "\\\\";
                break;
            default:
                line += c;
        }
    }
    return line;
}

}  // namespace tolvane
