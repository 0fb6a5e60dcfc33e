#include "tools/tolvane-tool/recording_device.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <optional>

namespace tolvane::tool {
namespace {

constexpr std::string_view kRmcHeader = "$GPRMC,";

std::string_view LineAt(std::string_view recording, std::size_t start) {
    const std::size_t end = recording.find('\n', start);
    return recording.substr(start, end == std::string_view::npos ? recording.npos : end - start);
}

// Field n (0 is the header) of a sentence line.
std::string_view Field(std::string_view line, int n) {
    std::size_t start = 0;
    for (int i = 0; i < n; ++i) {
        start = line.find(',', start);
        if (start == std::string_view::npos) return {};
        ++start;
    }
    const std::size_t end = line.find_first_of(",*\r", start);
    return line.substr(start, end == std::string_view::npos ? line.npos : end - start);
}

std::optional<int> TwoDigits(std::string_view text, std::size_t at) {
    int value = 0;
    if (text.size() < at + 2) return std::nullopt;
    const auto [end, error] = std::from_chars(text.data() + at, text.data() + at + 2, value);
    if (error != std::errc() || end != text.data() + at + 2) return std::nullopt;
    return value;
}

// The UTC time of "$GPRMC,hhmmss.sss,...,ddmmyy,..."; years are 2000-2099.
std::optional<FileTime> RmcUtc(std::string_view line) {
    const std::string_view time = Field(line, 1);
    const std::string_view date = Field(line, 9);
    const auto hour = TwoDigits(time, 0), minute = TwoDigits(time, 2), second = TwoDigits(time, 4);
    const auto day = TwoDigits(date, 0), month = TwoDigits(date, 2), year = TwoDigits(date, 4);
    if (!hour || !minute || !second || !day || !month || !year) return std::nullopt;
    return CivilToFileTime({2000 + *year, *month, *day, *hour, *minute, *second, 0});
}

}  // namespace

std::vector<RecordedSecond> SplitIntoSeconds(std::string_view recording) {
    std::vector<RecordedSecond> seconds;
    std::string_view currentTime;
    for (std::size_t start = 0; start < recording.size();) {
        const std::string_view line = LineAt(recording, start);
        if (line.starts_with(kRmcHeader) && (seconds.empty() || Field(line, 1) != currentTime)) {
            const FileTime previous = seconds.empty() ? 0 : seconds.back().utc;
            if (!seconds.empty()) seconds.back().end = start;
            const std::size_t begin = seconds.empty() ? 0 : start;
            seconds.push_back({begin, recording.size(),
                               RmcUtc(line).value_or(previous + kFileTimeTicksPerSecond)});
            currentTime = Field(line, 1);
        }
        start += line.size() + 1;
    }
    if (seconds.empty() && !recording.empty()) seconds.push_back({0, recording.size(), 0});
    return seconds;
}

int RecordingDevice::Read(char* buffer, int size) {
    const std::size_t count = std::min(pending_.size(), static_cast<std::size_t>(size));
    std::memcpy(buffer, pending_.data(), count);
    pending_.remove_prefix(count);
    return static_cast<int>(count);
}

}  // namespace tolvane::tool
