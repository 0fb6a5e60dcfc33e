#include "core/base/csv_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdio>

namespace tolvane {
namespace {

std::string_view TrimBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    const std::size_t last = text.find_last_not_of(" \t");
    return text.substr(first, last - first + 1);
}

// Runs from_chars over the trimmed column and accepts only a parse that
// consumes all of it.
template <typename Number>
std::optional<Number> ParseWhole(std::string_view column) {
    const std::string_view text = TrimBlanks(column);
    if (text.empty()) return std::nullopt;
    // from_chars takes no plus sign, which printf-style writers may put.
    const std::size_t skip = text.size() > 1 && text[0] == '+' && text[1] != '-' ? 1 : 0;
    Number value{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data() + skip, end, value);
    if (error != std::errc() || stop != end) return std::nullopt;
    return value;
}

}  // namespace

std::string FormatText(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list measuring;
    va_copy(measuring, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measuring);
    va_end(measuring);
    std::string text;
    if (length > 0) {
        text.resize(static_cast<std::size_t>(length) + 1);
        std::vsnprintf(text.data(), text.size(), format, arguments);
        text.pop_back();
    }
    va_end(arguments);
    return text;
}

bool ReadTextLines(const std::string& path, const std::function<void(std::string_view)>& onLine) {
    return ReadTextLinesWhile(path, [&onLine](std::string_view line, double) {
        onLine(line);
        return true;
    });
}

bool ReadTextLinesWhile(const std::string& path,
                        const std::function<bool(std::string_view line, double shareRead)>& onLine) {
    const FilePointer file(std::fopen(path.c_str(), "rb"));
    if (!file) return false;
    // A pipe or a device has no size; its share stays at 0.
    double fileBytes = 0;
    if (std::fseek(file.get(), 0, SEEK_END) == 0) {
        fileBytes = static_cast<double>(std::max(0L, std::ftell(file.get())));
        std::rewind(file.get());
    }
    std::string line;
    char chunk[8192];
    double bytesRead = 0;
    std::size_t read = 0;
    while ((read = std::fread(chunk, 1, sizeof chunk, file.get())) > 0) {
        bytesRead += static_cast<double>(read);
        const double share = fileBytes > 0 ? std::min(1.0, bytesRead / fileBytes) : 0.0;
        for (std::size_t i = 0; i < read; ++i) {
            const char c = chunk[i];
            if (c == '\r' || c == '\n') {
                if (!line.empty() && !onLine(line, share)) return true;
                line.clear();
            } else if (line.size() < kMaxCsvLineBytes) {
                line += c;
            }
        }
    }
    if (!line.empty()) onLine(line, 1.0);
    return true;
}

std::vector<std::string_view> SplitColumns(std::string_view line, std::size_t maxColumns) {
    std::vector<std::string_view> columns;
    while (columns.size() + 1 < maxColumns) {
        const std::size_t comma = line.find(',');
        if (comma == std::string_view::npos) break;
        columns.push_back(line.substr(0, comma));
        line.remove_prefix(comma + 1);
    }
    columns.push_back(line);
    return columns;
}

std::optional<double> ParseNumber(std::string_view column) {
    const std::optional<double> value = ParseWhole<double>(column);
    if (value && !std::isfinite(*value)) return std::nullopt;
    return value;
}

std::optional<std::int32_t> ParseInt32(std::string_view column) {
    return ParseWhole<std::int32_t>(column);
}

}  // namespace tolvane
