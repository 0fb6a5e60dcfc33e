#include "headless/recording_device.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>

namespace tolvane::headless {
namespace {

constexpr std::string_view kRmcHeader = "$GPRMC,";

// Whether the RMC header of a talker that talkers reads starts at start.
bool IsRmcHeader(std::string_view recording, std::size_t start, NmeaTalkers talkers) {
    constexpr std::size_t kTalkerAt = 1;
    constexpr std::size_t kSentenceAt = 3;
    return recording.size() - start >= kRmcHeader.size() && recording[start] == '$' &&
           ReadsTalker(talkers, recording.data() + start + kTalkerAt) &&
           recording.compare(start + kSentenceAt, kRmcHeader.size() - kSentenceAt,
                             kRmcHeader.substr(kSentenceAt)) == 0;
}

// The start of the next line that begins with the RMC header of a talker
// that talkers reads ("$GPRMC,"), from position from on, or npos. Such a
// line has its 'R' three characters in, and the letter is rare elsewhere in
// NMEA text, so the search jumps from one 'R' to the next instead of
// stepping through a recording of many megabytes line by line.
std::size_t FindRmcLine(std::string_view recording, std::size_t from, NmeaTalkers talkers) {
    constexpr std::size_t kLetterOffset = 3;
    for (std::size_t at = from + kLetterOffset; at < recording.size(); ++at) {
        const void* letter = std::memchr(recording.data() + at, 'R', recording.size() - at);
        if (letter == nullptr) break;
        at = static_cast<std::size_t>(static_cast<const char*>(letter) - recording.data());
        const std::size_t start = at - kLetterOffset;
        const bool atLineStart = start == 0 || recording[start - 1] == '\n';
        if (atLineStart && IsRmcHeader(recording, start, talkers)) {
            return start;
        }
    }
    return std::string_view::npos;
}

// The fields of an RMC line that date it.
struct RmcStamp {
    std::string_view time;  // field 1
    std::string_view date;  // field 9
};

constexpr std::uint64_t kEachByte = 0x0101010101010101;

// Eight characters of text as one word, the first in the lowest byte.
std::uint64_t WordAt(const char* text) {
    std::uint64_t word = 0;
    for (int i = 0; i < 8; ++i) {
        word |= std::uint64_t{static_cast<unsigned char>(text[i])} << (8 * i);
    }
    return word;
}

// The top bit of each byte of word that is c, and of no other byte: the
// additions stay within their bytes.
std::uint64_t BytesEqualTo(std::uint64_t word, char c) {
    const std::uint64_t difference = word ^ (kEachByte * static_cast<unsigned char>(c));
    const std::uint64_t lowBitsSet = (difference & (0x7F * kEachByte)) + 0x7F * kEachByte;
    return ~(lowBitsSet | difference) & (0x80 * kEachByte);
}

// How many bytes have their top bit set in a word of such bits.
int CountMarkedBytes(std::uint64_t marks) {
    return static_cast<int>(((marks >> 7) * kEachByte) >> 56);
}

// The field that begins at position: up to the next ',', '*', CR, line end
// or the end of the text, looked for eight characters at a time.
std::string_view FieldFrom(const char* position, const char* end) {
    const char* stop = position;
    for (; end - stop >= 8; stop += 8) {
        const std::uint64_t word = WordAt(stop);
        const std::uint64_t ends = BytesEqualTo(word, ',') | BytesEqualTo(word, '*') |
                                   BytesEqualTo(word, '\r') | BytesEqualTo(word, '\n');
        if (ends != 0) {
            stop += std::countr_zero(ends) / 8;
            return {position, static_cast<std::size_t>(stop - position)};
        }
    }
    while (stop != end && *stop != ',' && *stop != '*' && *stop != '\r' && *stop != '\n') ++stop;
    return {position, static_cast<std::size_t>(stop - position)};
}

// The n-th comma from position on, as long as its line lasts; null when the
// line or the text ends first. The date lies behind the ninth comma of a
// line that is read for every recorded second, so the commas are counted
// eight characters at a time.
const char* NthCommaOnLine(const char* position, const char* end, int n) {
    for (; end - position >= 8; position += 8) {
        const std::uint64_t word = WordAt(position);
        std::uint64_t commas = BytesEqualTo(word, ',');
        const std::uint64_t newlines = BytesEqualTo(word, '\n');
        // Only the commas before the line's end count.
        if (newlines != 0) commas &= (newlines & (~newlines + 1)) - 1;
        const int count = CountMarkedBytes(commas);
        if (count >= n) {
            for (int i = 1; i < n; ++i) commas &= commas - 1;
            return position + std::countr_zero(commas) / 8;
        }
        if (newlines != 0) return nullptr;
        n -= count;
    }
    for (; position != end && *position != '\n'; ++position) {
        if (*position == ',' && --n == 0) return position;
    }
    return nullptr;
}

// The stamp of the RMC line at start. Field n begins behind the line's n-th
// comma, the first of which ends the header, and ends at the next ',', '*',
// CR or the end of the line; a field the line does not reach is empty.
RmcStamp ReadRmcStamp(std::string_view text, std::size_t start) {
    constexpr int kDateField = 9;
    const char* const end = text.data() + text.size();
    const char* const time = text.data() + start + kRmcHeader.size();
    RmcStamp stamp;
    stamp.time = FieldFrom(time, end);
    if (const char* comma = NthCommaOnLine(time, end, kDateField - 1)) {
        stamp.date = FieldFrom(comma + 1, end);
    }
    return stamp;
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
std::optional<FileTime> RmcUtc(const RmcStamp& stamp) {
    const std::string_view time = stamp.time;
    const std::string_view date = stamp.date;
    const auto hour = TwoDigits(time, 0), minute = TwoDigits(time, 2), second = TwoDigits(time, 4);
    const auto day = TwoDigits(date, 0), month = TwoDigits(date, 2), year = TwoDigits(date, 4);
    if (!hour || !minute || !second || !day || !month || !year) return std::nullopt;
    return CivilToFileTime({2000 + *year, *month, *day, *hour, *minute, *second, 0});
}

}  // namespace

std::vector<RecordedSecond> SplitIntoSeconds(std::string_view recording, NmeaTalkers talkers) {
    std::vector<RecordedSecond> seconds;
    SecondSplitter(talkers).Scan(recording, 0, true, seconds);
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
    for (std::size_t start = FindRmcLine(lines, scannedTo_ - at, talkers_);
         start != std::string_view::npos; start = FindRmcLine(lines, start + 1, talkers_)) {
        const RmcStamp stamp = ReadRmcStamp(lines, start);
        if (started_ && stamp.time == currentTime_) continue;
        if (started_)
            complete.push_back({current_.begin, at + start, current_.utc, current_.dated});
        const FileTime previous = started_ ? current_.utc : 0;
        const std::optional<FileTime> utc = RmcUtc(stamp);
        if (started_) current_.begin = at + start;
        current_.utc = utc.value_or(previous + kFileTimeTicksPerSecond);
        current_.dated = utc.has_value() || (started_ && current_.dated);
        currentTime_ = stamp.time;
        started_ = true;
    }
    scannedTo_ = at + lines.size();
    seenTo_ = at + text.size();
    if (!last) return;
    if (started_) {
        complete.push_back({current_.begin, seenTo_, current_.utc, current_.dated});
    } else if (seenTo_ > current_.begin) {
        complete.push_back({current_.begin, seenTo_, 0, false});
    }
}

void SecondSplitter::Played(std::size_t to) {
    current_.begin = to;
    scannedTo_ = std::max(scannedTo_, to);
}

int RecordingDevice::Read(char* buffer, int size) {
    const std::size_t count = std::min(pending_.size(), static_cast<std::size_t>(size));
    std::memcpy(buffer, pending_.data(), count);
    pending_.remove_prefix(count);
    return static_cast<int>(count);
}

}  // namespace tolvane::headless
