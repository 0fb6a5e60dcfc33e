#include "tools/tolvane-tool/recording_device.h"

#include <algorithm>
#include <cstring>
#include <optional>

namespace tolvane::tool {
namespace {

constexpr std::string_view kRmcHeader = "$GPRMC,";

// The start of the next line that begins with "$GPRMC,", from position from
// on, or npos. Such a line has its 'R' three characters in, and the letter is
// rare elsewhere in NMEA text, so the search jumps from one 'R' to the next
// instead of stepping through a recording of many megabytes line by line.
std::size_t FindRmcLine(std::string_view recording, std::size_t from) {
    constexpr std::size_t kLetterOffset = 3;
    for (std::size_t at = from + kLetterOffset; at < recording.size(); ++at) {
        const void* letter = std::memchr(recording.data() + at, 'R', recording.size() - at);
        if (letter == nullptr) break;
        at = static_cast<std::size_t>(static_cast<const char*>(letter) - recording.data());
        const std::size_t start = at - kLetterOffset;
        const bool atLineStart = start == 0 || recording[start - 1] == '\n';
        if (atLineStart && recording.compare(start, kRmcHeader.size(), kRmcHeader) == 0) {
            return start;
        }
    }
    return std::string_view::npos;
}

std::string_view LineAt(std::string_view recording, std::size_t start) {
    const std::size_t end = recording.find('\n', start);
    return recording.substr(start, end == std::string_view::npos ? recording.npos : end - start);
}

// Field n (0 is the header) of a sentence line.
std::string_view Field(std::string_view line, int n) {
    const char* start = line.data();
    const char* const end = start + line.size();
    for (int commas = 0; commas < n; ++start) {
        if (start == end) return {};
        if (*start == ',') ++commas;
    }
    const char* stop = start;
    while (stop != end && *stop != ',' && *stop != '*' && *stop != '\r') ++stop;
    return {start, static_cast<std::size_t>(stop - start)};
}

// The two characters at `at` read as std::from_chars reads them when it
// must use both: two digits, or a minus and a digit. Written out: the
// library's general conversion cost more than the rest of the split.
std::optional<int> TwoDigits(std::string_view text, std::size_t at) {
    if (text.size() < at + 2) return std::nullopt;
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const char first = text[at];
    const char second = text[at + 1];
    if (!isDigit(second)) return std::nullopt;
    if (first == '-') return '0' - second;
    if (!isDigit(first)) return std::nullopt;
    return (first - '0') * 10 + (second - '0');
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
    SecondSplitter().Scan(recording, 0, true, seconds);
    return seconds;
}

std::size_t SecondSplitter::WholeLinesEnd(std::string_view text, std::size_t at) const {
    const std::size_t unseen = seenTo_ - at;
    const std::size_t newline = text.substr(unseen).rfind('\n');
    return newline == std::string_view::npos ? scannedTo_ - at : unseen + newline + 1;
}

void SecondSplitter::Scan(std::string_view text, std::size_t at, bool last,
                          std::vector<RecordedSecond>& complete) {
    const std::string_view lines = text.substr(0, last ? text.size() : WholeLinesEnd(text, at));
    for (std::size_t start = FindRmcLine(lines, scannedTo_ - at); start != std::string_view::npos;
         start = FindRmcLine(lines, start + 1)) {
        const std::string_view line = LineAt(lines, start);
        const std::string_view time = Field(line, 1);
        if (started_ && time == currentTime_) continue;
        if (started_) complete.push_back({current_.begin, at + start, current_.utc});
        const FileTime previous = started_ ? current_.utc : 0;
        current_.begin = started_ ? at + start : 0;
        current_.utc = RmcUtc(line).value_or(previous + kFileTimeTicksPerSecond);
        currentTime_ = time;
        started_ = true;
    }
    scannedTo_ = at + lines.size();
    seenTo_ = at + text.size();
    if (!last) return;
    if (started_) {
        complete.push_back({current_.begin, seenTo_, current_.utc});
    } else if (seenTo_ > 0) {
        complete.push_back({0, seenTo_, 0});
    }
}

int RecordingDevice::Read(char* buffer, int size) {
    const std::size_t count = std::min(pending_.size(), static_cast<std::size_t>(size));
    std::memcpy(buffer, pending_.data(), count);
    pending_.remove_prefix(count);
    return static_cast<int>(count);
}

}  // namespace tolvane::tool
