#include "core/gps/nmea_listener.h"

#include <array>
#include <cstring>
#include <string_view>

#include "core/gps/nmea_record.h"

namespace tolvane {
namespace {

// The longest sentence the standard allows is 82 characters; a little room
// is left for receivers that stretch it.
constexpr std::size_t kLongestLine = 120;

constexpr std::array<std::string_view, 5> kOtherGnssTalkers = {"GN", "GL", "GA", "GB", "GQ"};
constexpr std::array<std::string_view, 2> kFixSentences = {"RMC", "GGA"};

template <std::size_t Size>
bool IsOneOf(std::string_view text, const std::array<std::string_view, Size>& choices) {
    for (const std::string_view choice : choices) {
        if (text == choice) return true;
    }
    return false;
}

}  // namespace

bool HasGoodNmeaChecksum(const std::string& sentence) {
    const std::size_t star = sentence.rfind('*');
    if (sentence.size() < 7 || sentence[0] != '$' || star == std::string::npos ||
        star + 3 != sentence.size()) {
        return false;
    }
    int checksum = 0;
    for (std::size_t i = 1; i < star; ++i) checksum ^= static_cast<unsigned char>(sentence[i]);
    return VerifyNmeaChecksum(checksum, sentence.c_str() + star + 1);
}

bool TalksOnlyOtherGnss(const NmeaListenSummary& summary) {
    return summary.otherGnssTalkerSentences > 0 && summary.gpsTalkerSentences == 0;
}

void NmeaListener::Feed(const char* bytes, int count, std::int64_t nowMilliseconds) {
    for (int i = 0; i < count; ++i) {
        const char byte = bytes[i];
        if (byte == '\r' || byte == '\n') {
            TakeLine(nowMilliseconds);
        } else if (byte == '$') {
            // A sentence start in the middle of a line begins a new one; the
            // broken text before it is noise.
            line_.assign(1, byte);
        } else if (!line_.empty() && line_.size() < kLongestLine) {
            line_.push_back(byte);
        } else {
            line_.clear();
        }
    }
}

void NmeaListener::TakeLine(std::int64_t nowMilliseconds) {
    if (line_.empty()) return;
    if (!HasGoodNmeaChecksum(line_)) {
        ++summary_.badChecksums;
        line_.clear();
        return;
    }
    ++summary_.sentences;
    const std::size_t comma = line_.find(',');
    summary_.lastSentence = line_.substr(0, comma);
    summary_.lastMilliseconds = nowMilliseconds;
    if (summary_.lastSentence.size() == 6 &&
        IsOneOf(std::string_view(summary_.lastSentence).substr(3), kFixSentences)) {
        const std::string talker = summary_.lastSentence.substr(1, 2);
        if (talker == "GP") {
            ++summary_.gpsTalkerSentences;
        } else if (IsOneOf(talker, kOtherGnssTalkers)) {
            ++summary_.otherGnssTalkerSentences;
            summary_.otherTalker = talker;
        }
    }
    line_.clear();
}

}  // namespace tolvane
