#include <algorithm>
#include <array>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <utility>

#include "core/gps/nmea_record.h"

namespace tolvane {
namespace {

constexpr double kMinutesToDegrees = 0.016666666666666666;
constexpr int kHeaderLength = 6;  // "GPRMC," and its kin, behind the '$'

enum class SentenceKind { kUnknown, kRmc, kGsv, kGsa, kGga };
constexpr std::size_t kSentenceKinds = 5;

// The kept headers in the order they are tried.
constexpr std::pair<const char*, SentenceKind> kKeptHeaders[] = {
    {"GPRMC,", SentenceKind::kRmc},
    {"GPGSV,", SentenceKind::kGsv},
    {"GPGSA,", SentenceKind::kGsa},
    {"GPGGA,", SentenceKind::kGga},
};

// The second letter of each talker the multi-GNSS reading takes as "GP".
bool IsOtherGnssTalker(char second) {
    return second == 'N' || second == 'L' || second == 'A' || second == 'B' || second == 'Q';
}

// The kind of the header the text starts with. The comparison stops at the
// first character that differs, so it never reads past the end of a text
// that ends inside the header. Every kept header starts with the talker
// "GP", which is compared once; the other talkers are looked at only
// behind a header that is not GP's.
SentenceKind MatchHeader(const char* header, NmeaTalkers talkers) {
    constexpr int kTalkerLength = 2;
    if (header[0] != 'G') return SentenceKind::kUnknown;
    if (header[1] != 'P' && !(talkers == NmeaTalkers::kMultiGnss && IsOtherGnssTalker(header[1]))) {
        return SentenceKind::kUnknown;
    }
    for (const auto& [text, kind] : kKeptHeaders) {
        int i = kTalkerLength;
        while (i < kHeaderLength && header[i] == text[i]) ++i;
        if (i == kHeaderLength) return kind;
    }
    return SentenceKind::kUnknown;
}

// The exclusive-or of each kept header's characters with the talker "GP",
// by kind: the start of its sentence's checksum. Another talker's differs
// by its second letter against the 'P'.
constexpr std::array<int, kSentenceKinds> kHeaderChecksums = [] {
    std::array<int, kSentenceKinds> checksums{};
    for (const auto& [text, kind] : kKeptHeaders) {
        for (int i = 0; i < kHeaderLength; ++i) {
            checksums[static_cast<std::size_t>(kind)] ^= static_cast<unsigned char>(text[i]);
        }
    }
    return checksums;
}();

// Copies at most count leading characters of text, stopping at its end, as a
// zero-terminated string into out, which holds count + 1 cells.
void CopyLeading(char* out, const char* text, std::size_t count) {
    std::size_t length = 0;
    while (length < count && text[length] != '\0') {
        out[length] = text[length];
        ++length;
    }
    out[length] = '\0';
}

bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// atoi of at most count leading characters of text, for text that starts
// with a blank or a sign.
int SignedLeadingInt(const char* text, std::size_t count) {
    std::size_t i = 0;
    while (i < count && IsSpace(text[i])) ++i;
    const bool negative = i < count && text[i] == '-';
    if (i < count && (text[i] == '-' || text[i] == '+')) ++i;
    int value = 0;
    for (; i < count && text[i] >= '0' && text[i] <= '9'; ++i) value = value * 10 + (text[i] - '0');
    return negative ? -value : value;
}

// Whether c is a digit, and which.
bool TakeDigit(char c, unsigned& digit) {
    digit = static_cast<unsigned char>(c) - unsigned{'0'};
    return digit <= 9;
}

// atoi of at most Count leading characters of text. The conversion runs in
// the parser's own loop for every satellite and for every field on every
// tick, so it is done here rather than by copying the field for std::atoi;
// the result is the same. No integer field is longer than four characters,
// so the value cannot overflow. A field the parser filled starts with a
// digit or is empty, which the loop, unrolled for the field's length, takes
// first.
template <std::size_t Count>
int LeadingInt(const char* text) {
    static_assert(Count > 0);
    constexpr std::size_t kLongestIntegerText = 9;
    constexpr std::size_t count = std::min(Count, kLongestIntegerText);
    unsigned digit = 0;
    if (TakeDigit(text[0], digit)) {
        unsigned value = digit;
        for (std::size_t i = 1; i < count && TakeDigit(text[i], digit); ++i) {
            value = value * 10 + digit;
        }
        return static_cast<int>(value);
    }
    if (text[0] == '\0') return 0;
    return SignedLeadingInt(text, count);
}

// No numeric field is longer than this; the conversions read no further.
constexpr std::size_t kLongestNumberText = 15;

// A division of two doubles is rounded once, straight to double, only where
// expressions are evaluated in their own type (not on the x87 unit).
constexpr bool kDivisionRoundsOnce = FLT_EVAL_METHOD == 0;

// atof of at most count leading characters of text. The copy keeps the
// conversion inside the field even when a record was filled by hand without
// its terminating zeros.
double AtofOfLeading(const char* text, std::size_t count) {
    char buffer[kLongestNumberText + 1];
    CopyLeading(buffer, text, std::min(count, kLongestNumberText));
    return std::atof(buffer);
}

// Whether strtod could read on behind the digits of a decimal number at c:
// into an exponent, or a hexadecimal number behind a zero.
bool CouldContinueNumber(char c) {
    return c == 'e' || c == 'E' || c == 'x' || c == 'X';
}

// atof of at most Count leading characters of text, by a quicker way where
// it gives the same: the fields are read for every satellite on every tick,
// and strtod is slow on them. The quick way takes text that is empty, or
// starts with a plain decimal number "-?digits[.digits]" with at least one
// digit that ends the text or is followed by a character strtod stops at
// (as when a receiver sends more fields behind the VDOP). It leaves
// anything else (blanks, '+', an exponent, hexadecimal, "inf") to atof.
// With at most 15 digits the digits make an integer below 2^53 and the
// point a power of ten up to 10^15, both exact doubles, so one correctly
// rounded division gives the double nearest to the text: the value atof
// gives.
template <std::size_t Count>
double LeadingDouble(const char* text) {
    static constexpr double kPowersOfTen[kLongestNumberText + 1] = {
        1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    static_assert(Count > 0);
    constexpr std::size_t count = std::min(Count, kLongestNumberText);
    if constexpr (!kDivisionRoundsOnce) return AtofOfLeading(text, count);
    const bool negative = text[0] == '-';
    std::size_t i = negative ? 1 : 0;
    std::uint64_t digits = 0;
    unsigned digit = 0;
    for (; i < count && TakeDigit(text[i], digit); ++i) digits = digits * 10 + digit;
    const std::size_t wholeEnd = i;
    const bool point = i < count && text[i] == '.';
    if (point) ++i;
    const std::size_t fractionStart = i;
    for (; i < count && TakeDigit(text[i], digit); ++i) digits = digits * 10 + digit;
    const std::size_t fractionDigits = i - fractionStart;
    const bool hasDigits = wholeEnd > (negative ? 1 : 0) || fractionDigits > 0;
    const bool ended = i == count || text[i] == '\0';
    const bool plain =
        hasDigits ? ended || !CouldContinueNumber(text[i]) : ended && !negative && !point;
    if (!plain) return AtofOfLeading(text, count);
    const double value = static_cast<double>(digits) / kPowersOfTen[fractionDigits];
    return negative ? -value : value;
}

template <std::size_t Size>
int FieldInt(const char (&field)[Size]) {
    return LeadingInt<Size - 1>(field);
}

template <std::size_t Size>
double FieldDouble(const char (&field)[Size]) {
    return LeadingDouble<Size - 1>(field);
}

// Degrees from "ddmm.mmmm" (DegreeDigits 2) or "dddmm.mmmm" (3): the minutes
// are the seven characters behind the degrees.
template <std::size_t DegreeDigits>
double Coordinate(const char* text, bool positive) {
    constexpr std::size_t kMinuteCharacters = 7;
    const double degrees =
        LeadingInt<DegreeDigits>(text) +
        LeadingDouble<kMinuteCharacters>(text + DegreeDigits) * kMinutesToDegrees;
    return positive ? degrees : -degrees;
}

// Walks the fields of one sentence. The walker stands on the first character
// of the current field; every operation leaves it on the character that ended
// the field. The terminating zero of the text ends every walk, so a sentence
// that lacks its closing comma cannot lead a copy beyond the text.
class FieldWalker {
  public:
    explicit FieldWalker(const char* fields) : position_(fields) {}

    int Field() const { return field_; }

    // The current field's first character.
    const char* Position() const { return position_; }

    // Whether c ends a field.
    static bool EndsField(char c) { return Ends(c, kFieldEnds); }

    // Steps behind the comma that ends the current field; false when the
    // field ended at the '*' (or the text ended), which ends the sentence.
    bool Next() {
        if (*position_ != ',') return false;
        ++position_;
        ++field_;
        return true;
    }

    // Copies the field up to the next comma or the '*'. Receivers normally
    // send further fields behind every kept one, but newer ones end their
    // GSV sentences with a signal field right before the '*'; stopping there
    // keeps such a sentence from running on into the ones that follow.
    template <std::size_t Size>
    void CopyText(char (&field)[Size]) {
        CopyUntil(field, Size, kFieldEnds);
    }

    // Copies everything up to the '*', commas included.
    template <std::size_t Size>
    void CopyToChecksum(char (&field)[Size]) {
        CopyUntil(field, Size, kStarEnds | kTextEnds);
    }

    // The field's first character, zero when the field is empty.
    char TakeFirst() {
        const char first = AtFieldEnd() ? '\0' : *position_;
        Skip();
        return first;
    }

    void Skip() {
        while (!AtFieldEnd()) ++position_;
    }

  private:
    // Which characters end a copy, as bits of their entries in kEnds.
    static constexpr std::uint8_t kCommaEnds = 1;
    static constexpr std::uint8_t kStarEnds = 2;
    static constexpr std::uint8_t kTextEnds = 4;
    static constexpr std::uint8_t kFieldEnds = kCommaEnds | kStarEnds | kTextEnds;

    // One look-up per character instead of three comparisons: the walk is
    // the parser's inner loop.
    static constexpr std::array<std::uint8_t, 256> kEnds = [] {
        std::array<std::uint8_t, 256> ends{};
        ends[static_cast<unsigned char>(',')] = kCommaEnds;
        ends[static_cast<unsigned char>('*')] = kStarEnds;
        ends[0] = kTextEnds;
        return ends;
    }();

    static bool Ends(char c, std::uint8_t which) {
        return (kEnds[static_cast<unsigned char>(c)] & which) != 0;
    }

    bool AtFieldEnd() const { return Ends(*position_, kFieldEnds); }

    // Characters past the array's end are dropped; the last cell always
    // ends up as the terminating zero.
    void CopyUntil(char* field, std::size_t size, std::uint8_t ends) {
        const char* const start = position_;
        std::size_t length = 0;
        for (; length < size && !Ends(start[length], ends); ++length) {
            field[length] = start[length];
        }
        position_ = start + length;
        while (!Ends(*position_, ends)) ++position_;
        field[size - 1] = '\0';
    }

    const char* position_;
    int field_ = 1;
};

// Orders records 0 to count-1 by PRN, exchanging whole records. Most
// receivers send their satellites in PRN order already, which the exchanges
// would leave as it is. Otherwise the exchanges are worked out on the
// records' places first, without a branch that the order of the PRNs
// decides, and the records are moved once at the end; the order is that of
// exchanging the records themselves.
void SortSatellitesByPrn(NmeaSatellite* satellites, int count) {
    int prns[kMaxSatellites];
    int places[kMaxSatellites];
    for (int i = 0; i < count; ++i) {
        prns[i] = FieldInt(satellites[i].prn);
        places[i] = i;
    }
    if (std::is_sorted(prns, prns + count)) return;
    for (int i = 0; i < count; ++i) {
        for (int j = i; j < count; ++j) {
            const bool exchange = prns[i] > prns[j];
            const int prn = prns[i];
            const int place = places[i];
            prns[i] = exchange ? prns[j] : prn;
            prns[j] = exchange ? prn : prns[j];
            places[i] = exchange ? places[j] : place;
            places[j] = exchange ? place : places[j];
        }
    }
    NmeaSatellite sorted[kMaxSatellites];
    for (int i = 0; i < count; ++i) sorted[i] = satellites[places[i]];
    std::copy(sorted, sorted + count, satellites);
}

// Where the scan of one sentence, from its '$', came to an end.
enum class ScanOutcome {
    kTextEnded,      // the text ended inside the sentence
    kCut,            // a '$' came first; next is that '$'
    kUnknownHeader,  // not a kept sentence; next is behind its header
    kComplete,       // next is behind the two checksum characters
};

struct SentenceScan {
    ScanOutcome outcome = ScanOutcome::kTextEnded;
    SentenceKind kind = SentenceKind::kUnknown;
    const char* next = nullptr;
    bool checksumMatches = false;
};

// The next '$' from text on, or null at the end of the text. Sentences
// usually follow each other behind a line end, so the first few characters
// are looked at here before the library's search takes over.
const char* FindDollar(const char* text) {
    constexpr int kLookedAtFirst = 3;
    for (int i = 0; i < kLookedAtFirst; ++i, ++text) {
        if (*text == '$') return text;
        if (*text == '\0') return nullptr;
    }
    return std::strchr(text, '$');
}

// The exclusive-or of the bytes from begin to end, eight at a time. The
// bytes left over behind the last eight are taken from the eight that end
// the range, less the bytes already counted.
int XorOfBytes(const char* begin, const char* end) {
    const auto eightAt = [](const char* at) {
        std::uint64_t eight;
        std::memcpy(&eight, at, sizeof eight);
        return eight;
    };
    const bool wide = end - begin >= 8;
    std::uint64_t word = 0;
    for (; end - begin >= 8; begin += 8) word ^= eightAt(begin);
    const int left = static_cast<int>(end - begin);
    if (wide && left > 0) {
        const int counted = 8 * (8 - left);
        const std::uint64_t last = eightAt(end - 8);
        word ^= std::endian::native == std::endian::little ? last >> counted << counted
                                                           : last << counted >> counted;
    } else {
        for (; begin < end; ++begin) word ^= static_cast<unsigned char>(*begin);
    }
    word ^= word >> 32;
    word ^= word >> 16;
    word ^= word >> 8;
    return static_cast<int>(word & 0xFF);
}

// The first '*', '$' or zero from text on. The library's searches for one
// character are quicker than its search for any of a set, and a sentence
// nearly always holds its '*' and no '$'.
const char* StarOrCut(const char* text) {
    const char* star = std::strchr(text, '*');
    const char* end = star != nullptr ? star : text + std::strlen(text);
    const void* dollar = std::memchr(text, '$', static_cast<std::size_t>(end - text));
    return dollar != nullptr ? static_cast<const char*>(dollar) : end;
}

// The header behind dollar that is none of the kept ones: cut by a new
// '$', ended with the text, or whole, with the scan to go on behind it.
SentenceScan ScanUnknownHeader(const char* dollar) {
    for (int i = 1; i <= kHeaderLength; ++i) {
        if (dollar[i] == '\0') return {};
        if (dollar[i] == '$') return {ScanOutcome::kCut, SentenceKind::kUnknown, dollar + i};
    }
    return {ScanOutcome::kUnknownHeader, SentenceKind::kUnknown, dollar + 1 + kHeaderLength};
}

// Reads the header, the body up to '*' and the two checksum characters of
// the sentence that starts at dollar, in one pass.
SentenceScan ScanSentence(const char* dollar, NmeaTalkers talkers) {
    SentenceScan scan;
    scan.kind = MatchHeader(dollar + 1, talkers);
    if (scan.kind == SentenceKind::kUnknown) return ScanUnknownHeader(dollar);
    // A kept header holds neither a zero nor a '$'.
    const char* p = dollar + 1 + kHeaderLength;
    const char* star = StarOrCut(p);
    if (*star == '\0') return scan;
    if (*star == '$') return {ScanOutcome::kCut, scan.kind, star};
    const int talkerDifference = static_cast<unsigned char>(dollar[2]) ^ 'P';
    const int checksum = kHeaderChecksums[static_cast<std::size_t>(scan.kind)] ^ talkerDifference ^
                         XorOfBytes(p, star);
    const char* received = star + 1;
    for (int i = 0; i < 2; ++i) {
        if (received[i] == '\0') return scan;
        if (received[i] == '$') return {ScanOutcome::kCut, scan.kind, received + i};
    }
    scan.outcome = ScanOutcome::kComplete;
    scan.next = received + 2;
    scan.checksumMatches = VerifyNmeaChecksum(checksum, received);
    return scan;
}

// Reads the four fields of one satellite, the walker standing on its
// number; false when the sentence ended before its signal strength. It is
// the inner loop of the GSV parse: called as a function, the walker would
// leave the registers for memory at every satellite, which cost a tenth of
// the whole parse.
[[gnu::always_inline]] inline bool ReadSatellite(FieldWalker& walker, NmeaSatellite& satellite) {
    walker.CopyText(satellite.prn);
    if (!walker.Next()) return false;
    walker.CopyText(satellite.elevation);
    if (!walker.Next()) return false;
    walker.CopyText(satellite.azimuth);
    if (!walker.Next()) return false;
    walker.CopyText(satellite.snr);
    return true;
}

using SatelliteKey = char[GsvGathering::kKeyLength];

// The key of the satellite whose number starts at prn: the talker and as
// much of the number as the key holds, the rest zero.
void MakeSatelliteKey(SatelliteKey& key, const char* talker, const char* prn) {
    std::memset(key, 0, sizeof key);
    std::memcpy(key, talker, 2);
    for (std::size_t i = 2; i < sizeof key && !FieldWalker::EndsField(*prn); ++i) key[i] = *prn++;
}

// Adds a satellite to the round; one its talker reported before (for
// another of its signals) keeps the stronger signal.
void AddGathered(GsvGathering& gathering, const SatelliteKey& key, const NmeaSatellite& satellite) {
    for (int i = 0; i < gathering.count; ++i) {
        if (std::memcmp(gathering.keys[i], key, sizeof key) != 0) continue;
        if (FieldInt(satellite.snr) > FieldInt(gathering.satellites[i].snr)) {
            gathering.satellites[i] = satellite;
        }
        return;
    }
    if (gathering.count == kMaxGatheredSatellites) return;
    std::memcpy(gathering.keys[gathering.count], key, sizeof key);
    gathering.satellites[gathering.count++] = satellite;
}

// The places of the satellites the table shows, in arrival order: all of
// them, or the strongest twelve when there are more, the earlier of two
// equally strong ones first.
int ChooseShown(const GsvGathering& gathering, int (&places)[kMaxGatheredSatellites]) {
    const int count = gathering.count;
    for (int i = 0; i < count; ++i) places[i] = i;
    if (count <= kMaxSatellites) return count;
    std::stable_sort(places, places + count, [&gathering](int a, int b) {
        return FieldInt(gathering.satellites[a].snr) > FieldInt(gathering.satellites[b].snr);
    });
    std::sort(places, places + kMaxSatellites);
    return kMaxSatellites;
}

// Writes the round so far into the table, with the number of satellites in
// view of every system.
void PublishGathered(NmeaRecord::Gsv& gsv, const GsvGathering& gathering) {
    int places[kMaxGatheredSatellites];
    const int shown = ChooseShown(gathering, places);
    std::memset(&gsv, 0, sizeof gsv);
    for (int i = 0; i < shown; ++i) gsv.satellites[i] = gathering.satellites[places[i]];
    constexpr int kMostWritten = 99;  // the count's two characters
    const int inView = std::min(gathering.count, kMostWritten);
    gsv.satellitesInView[0] = static_cast<char>('0' + inView / 10);
    gsv.satellitesInView[1] = static_cast<char>('0' + inView % 10);
}

// One GSV sentence of the multi-GNSS reading; header is its talker. The
// table is written when a system's sequence is complete, so that it never
// shows a sequence in part.
void GatherGsv(NmeaRecord& record, GsvGathering& gathering, const char* header) {
    if (!gathering.underWay) gathering.count = 0;
    gathering.underWay = true;
    FieldWalker walker(header + kHeaderLength);
    const char totalMessages = walker.TakeFirst();
    if (!walker.Next()) return;
    const char messageNumber = walker.TakeFirst();
    if (!walker.Next()) return;
    walker.Skip();  // the system's own count; the round counts for itself
    while (walker.Next()) {
        SatelliteKey key;
        MakeSatelliteKey(key, header, walker.Position());
        NmeaSatellite satellite{};
        if (!ReadSatellite(walker, satellite)) break;
        AddGathered(gathering, key, satellite);
    }
    if (messageNumber != 0 && messageNumber == totalMessages)
        PublishGathered(record.gsv, gathering);
}

// Hands a kept sentence to its parser; header is its first character
// behind the '$'.
void DispatchSentence(NmeaRecord& record, GsvPaging& paging, SentenceKind kind, const char* header,
                      NmeaParseStats* stats, NmeaTalkers talkers) {
    NmeaParseStats ignored;
    NmeaParseStats& counts = stats != nullptr ? *stats : ignored;
    const char* const fields = header + kHeaderLength;
    if (talkers == NmeaTalkers::kMultiGnss) {
        if (kind == SentenceKind::kGsv) {
            GatherGsv(record, paging.gathering, header);
            ++counts.gsv;
            return;
        }
        // Any other kept sentence ends the round of GSV sequences.
        paging.gathering.underWay = false;
    }
    switch (kind) {
        case SentenceKind::kRmc:
            ParseRmc(record, fields);
            ++counts.rmc;
            break;
        case SentenceKind::kGsv:
            ParseGsv(record, paging, fields);
            ++counts.gsv;
            break;
        case SentenceKind::kGsa:
            ParseGsa(record, fields);
            ++counts.gsa;
            break;
        case SentenceKind::kGga:
            ParseGga(record, fields);
            ++counts.gga;
            break;
        case SentenceKind::kUnknown:
            break;
    }
}

// Follows the GSV counting fields; only their first characters count.
void StartSequenceIfNew(NmeaRecord::Gsv& gsv, GsvPaging& paging, char totalMessages) {
    if (paging.totalMessages != 0 && paging.totalMessages == totalMessages) return;
    paging.totalMessages = totalMessages;
    paging.messageNumber = 0;
    paging.nextIndex = 0;
    std::memset(&gsv, 0, sizeof gsv);
}

void MoveToMessage(NmeaRecord::Gsv& gsv, GsvPaging& paging, char messageNumber) {
    if (messageNumber == '1') std::memset(&gsv, 0, sizeof gsv);
    paging.messageNumber = messageNumber;
    paging.nextIndex = (messageNumber - '1') * 4;
}

// After each satellite: a sequence is complete once it has counted as many
// satellites as it announced. Satellites past the table were counted but not
// kept, so only the table's records are sorted.
void CountSatellite(NmeaRecord::Gsv& gsv, GsvPaging& paging, int satellitesInView) {
    ++paging.nextIndex;
    if (paging.nextIndex != satellitesInView) return;
    SortSatellitesByPrn(gsv.satellites, std::clamp(paging.nextIndex, 0, kMaxSatellites));
    paging.totalMessages = 0;
    paging.messageNumber = 0;
    paging.nextIndex = 0;
}

// Counts an RMC sentence of another talker; sentence is its '$', behind
// which the six header characters stand.
void CountOtherTalker(const char* sentence, NmeaParseStats& stats) {
    if (std::memcmp(sentence + 3, "RMC,", 4) != 0) return;
    ++stats.otherTalkerRmc;
    std::memcpy(stats.otherTalker, sentence + 1, 2);
}

}  // namespace

bool VerifyNmeaChecksum(int computed, const char* received) {
    static constexpr char kHexDigits[] = "0123456789ABCDEF";
    if (computed < 0 || computed > 0xFF) return false;
    return received[0] == kHexDigits[computed >> 4] && received[1] == kHexDigits[computed & 0xF];
}

void ClearNmeaRecord(NmeaRecord& record) {
    std::memset(&record.rmc, 0, sizeof record.rmc);
    std::memset(&record.gga, 0, sizeof record.gga);
    std::memset(&record.gsa, 0, sizeof record.gsa);
    std::memset(&record.gsv, 0, sizeof record.gsv);
}

bool ReadsTalker(NmeaTalkers talkers, const char* talker) {
    if (talker[0] != 'G') return false;
    return talker[1] == 'P' || (talkers == NmeaTalkers::kMultiGnss && IsOtherGnssTalker(talker[1]));
}

const char* ParseNmeaBuffer(NmeaRecord& record, GsvPaging& paging, const char* text,
                            NmeaParseStats* stats, NmeaTalkers talkers) {
    // pending is the '$' of the sentence the caller must keep: an unfinished
    // one, or an unknown one that nothing has followed yet.
    const char* pending = nullptr;
    const char* dollar = FindDollar(text);
    while (dollar != nullptr) {
        pending = dollar;
        const SentenceScan scan = ScanSentence(dollar, talkers);
        switch (scan.outcome) {
            case ScanOutcome::kTextEnded:
                return pending;
            case ScanOutcome::kCut:
                if (stats != nullptr && scan.kind != SentenceKind::kUnknown) {
                    ++stats->brokenSentences;
                }
                dollar = scan.next;
                break;
            case ScanOutcome::kUnknownHeader:
                dollar = FindDollar(scan.next);
                // Counted once it is passed for good: one that stands last
                // is handed back and seen again by the next call.
                if (dollar != nullptr && stats != nullptr) CountOtherTalker(pending, *stats);
                break;
            case ScanOutcome::kComplete:
                if (scan.checksumMatches) {
                    DispatchSentence(record, paging, scan.kind, dollar + 1, stats, talkers);
                } else if (stats != nullptr) {
                    ++stats->checksumFailures;
                }
                pending = nullptr;
                dollar = FindDollar(scan.next);
                break;
        }
    }
    return pending;
}

// $GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A
void ParseRmc(NmeaRecord& record, const char* fields) {
    NmeaRecord::Rmc& rmc = record.rmc;
    std::memset(&rmc, 0, sizeof rmc);
    FieldWalker walker(fields);
    do {
        switch (walker.Field()) {
            case 1:
                walker.CopyText(rmc.utcTime);
                break;
            case 2:
                rmc.status = walker.TakeFirst();
                break;
            case 3:
                walker.CopyText(rmc.latitude);
                break;
            case 4:
                rmc.latHemisphere = walker.TakeFirst();
                break;
            case 5:
                walker.CopyText(rmc.longitude);
                break;
            case 6:
                rmc.lonHemisphere = walker.TakeFirst();
                break;
            case 7:
                walker.CopyText(rmc.speedKnots);
                break;
            case 8:
                walker.CopyText(rmc.course);
                break;
            case 9:
                walker.CopyText(rmc.date);
                return;  // nothing behind it is kept
        }
    } while (walker.Next());
}

// $GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47
void ParseGga(NmeaRecord& record, const char* fields) {
    NmeaRecord::Gga& gga = record.gga;
    std::memset(&gga, 0, sizeof gga);
    FieldWalker walker(fields);
    do {
        switch (walker.Field()) {
            case 6:
                gga.fixQuality = walker.TakeFirst();
                break;
            case 7:
                walker.CopyText(gga.satellitesUsed);
                break;
            case 9:
                walker.CopyText(gga.altitude);
                break;
            case 10:
                gga.altitudeUnit = walker.TakeFirst();
                break;
            case 11:
                walker.CopyText(gga.geoidSeparation);
                break;
            case 12:
                gga.geoidUnit = walker.TakeFirst();
                return;  // nothing behind it is kept
            default:
                walker.Skip();
                break;
        }
    } while (walker.Next());
}

// $GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*39
void ParseGsa(NmeaRecord& record, const char* fields) {
    NmeaRecord::Gsa& gsa = record.gsa;
    std::memset(&gsa, 0, sizeof gsa);
    FieldWalker walker(fields);
    do {
        switch (walker.Field()) {
            case 2:
                gsa.fixType = walker.TakeFirst();
                break;
            case 15:
                walker.CopyText(gsa.pdop);
                break;
            case 16:
                walker.CopyText(gsa.hdop);
                break;
            case 17:
                walker.CopyToChecksum(gsa.vdop);
                return;  // the last field kept
            default:
                walker.Skip();
                break;
        }
    } while (walker.Next());
}

// $GPGSV,2,1,08,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45*75
void ParseGsv(NmeaRecord& record, GsvPaging& paging, const char* fields) {
    NmeaRecord::Gsv& gsv = record.gsv;
    FieldWalker walker(fields);
    if (const char totalMessages = walker.TakeFirst(); totalMessages != 0) {
        StartSequenceIfNew(gsv, paging, totalMessages);
    }
    if (!walker.Next()) return;
    if (const char messageNumber = walker.TakeFirst(); messageNumber != 0) {
        MoveToMessage(gsv, paging, messageNumber);
    }
    if (!walker.Next()) return;
    walker.CopyText(gsv.satellitesInView);
    // Only field 3 writes the count, so it is read once for the message.
    const int satellitesInView = record.SatellitesInView();
    while (walker.Next()) {
        // A satellite beyond the table is read into a scratch record, so the
        // walk and the count go on exactly as for a kept one.
        NmeaSatellite discarded;
        const bool inTable = paging.nextIndex >= 0 && paging.nextIndex < kMaxSatellites;
        NmeaSatellite& satellite = inTable ? gsv.satellites[paging.nextIndex] : discarded;
        if (!ReadSatellite(walker, satellite)) return;
        CountSatellite(gsv, paging, satellitesInView);
    }
}

bool NmeaRecord::IsFixValid() const {
    return rmc.status == 'A';
}

double NmeaRecord::Latitude() const {
    return Coordinate<2>(rmc.latitude, rmc.latHemisphere == 'N');
}

double NmeaRecord::Longitude() const {
    return Coordinate<3>(rmc.longitude, rmc.lonHemisphere == 'E');
}

double NmeaRecord::SpeedKnots() const {
    return FieldDouble(rmc.speedKnots);
}
double NmeaRecord::Course() const {
    return FieldDouble(rmc.course);
}
double NmeaRecord::Altitude() const {
    return FieldDouble(gga.altitude);
}
int NmeaRecord::SatellitesUsed() const {
    return FieldInt(gga.satellitesUsed);
}
int NmeaRecord::SatellitesInView() const {
    return FieldInt(gsv.satellitesInView);
}
int NmeaRecord::SatellitePrn(int index) const {
    return FieldInt(gsv.satellites[index].prn);
}

double NmeaRecord::SatelliteElevation(int index) const {
    return FieldDouble(gsv.satellites[index].elevation);
}

double NmeaRecord::SatelliteAzimuth(int index) const {
    return FieldDouble(gsv.satellites[index].azimuth);
}

int NmeaRecord::SatelliteSnr(int index) const {
    return FieldInt(gsv.satellites[index].snr);
}
double NmeaRecord::Pdop() const {
    return FieldDouble(gsa.pdop);
}
double NmeaRecord::Hdop() const {
    return FieldDouble(gsa.hdop);
}
double NmeaRecord::Vdop() const {
    return FieldDouble(gsa.vdop);
}

double NmeaRecord::FixType() const {
    switch (gsa.fixType) {
        case '2':
            return 2.0;
        case '3':
            return 3.0;
        default:
            return 1.0;
    }
}

FileTime NmeaRecord::FixLocalTime() const {
    // The century is fixed: "20" followed by the year of the date.
    char year[5] = {'2', '0'};
    CopyLeading(year + 2, rmc.date + 4, 2);
    CivilTime civil;
    civil.year = LeadingInt<4>(year);
    civil.month = LeadingInt<2>(rmc.date + 2);
    civil.day = LeadingInt<2>(rmc.date);
    civil.hour = LeadingInt<2>(rmc.utcTime);
    civil.minute = LeadingInt<2>(rmc.utcTime + 2);
    civil.second = LeadingInt<2>(rmc.utcTime + 4);
    // The digits behind the point are taken as they stand: ".5" is 5 ms.
    civil.millisecond = LeadingInt<3>(rmc.utcTime + 7);
    const std::optional<FileTime> utc = CivilToFileTime(civil);
    return utc ? UtcToLocal(*utc) : 0;
}

namespace {

bool InsideTheWorld(double latitude, double longitude) {
    return std::abs(latitude) <= 90.0 && std::abs(longitude) <= 180.0;
}

}  // namespace

GpsFix ReadNmeaFix(const NmeaRecord& record) {
    return NmeaFixReader().Read(record);
}

template <typename Value, std::size_t Bytes, typename Convert>
Value NmeaFixReader::Keep(Kept<Value, Bytes>& kept, const void* key, Convert convert) {
    if (!kept.filled || std::memcmp(kept.bytes, key, Bytes) != 0) {
        std::memcpy(kept.bytes, key, Bytes);
        kept.value = convert();
        kept.filled = true;
    }
    return kept.value;
}

GpsFix NmeaFixReader::Read(const NmeaRecord& record) {
    const NmeaRecord::Rmc& rmc = record.rmc;
    GpsFix fix;
    fix.fixValid = record.IsFixValid() ? 1 : 0;
    // A coordinate's bytes run on into its hemisphere, so they are taken
    // from the section as a whole.
    const char* const rmcBytes = reinterpret_cast<const char*>(&rmc);
    fix.latitude = Keep(latitude_, rmcBytes + offsetof(NmeaRecord::Rmc, latitude),
                        [&] { return record.Latitude(); });
    fix.longitude = Keep(longitude_, rmcBytes + offsetof(NmeaRecord::Rmc, longitude),
                         [&] { return record.Longitude(); });
    fix.altitude = Keep(altitude_, record.gga.altitude, [&] { return record.Altitude(); });
    fix.course = Keep(course_, rmc.course, [&] { return record.Course(); });
    fix.speedKnots = Keep(speedKnots_, rmc.speedKnots, [&] { return record.SpeedKnots(); });
    // Every other field is taken as the receiver sent it, but a position
    // outside the world is no position: a latitude of 9999.9999 reads as
    // 100.67 degrees, and published as valid it would add thousands of
    // kilometres to the trip and write an impossible point into the track.
    // Such a second has no valid fix.
    if (!InsideTheWorld(fix.latitude, fix.longitude)) fix.fixValid = 0;
    fix.satellitesInView = record.SatellitesInView();
    fix.satellitesUsed = record.SatellitesUsed();
    for (int i = 0; i < kMaxSatellites; ++i) {
        const NmeaSatellite& satellite = record.gsv.satellites[i];
        const SatelliteValues values = Keep(satellites_[i], &satellite, [&] {
            return SatelliteValues{record.SatellitePrn(i), record.SatelliteElevation(i),
                                   record.SatelliteAzimuth(i)};
        });
        fix.satPrn[i] = values.prn;
        fix.satSnr[i] = Keep(snrs_[i], satellite.snr, [&] { return record.SatelliteSnr(i); });
        fix.satElevation[i] = values.elevation;
        fix.satAzimuth[i] = values.azimuth;
    }
    fix.pdop = Keep(pdop_, record.gsa.pdop, [&] { return record.Pdop(); });
    fix.hdop = Keep(hdop_, record.gsa.hdop, [&] { return record.Hdop(); });
    fix.vdop = Keep(vdop_, record.gsa.vdop, [&] { return record.Vdop(); });
    fix.fixType = record.FixType();
    fix.fixTime = record.FixLocalTime();
    return fix;
}

}  // namespace tolvane
