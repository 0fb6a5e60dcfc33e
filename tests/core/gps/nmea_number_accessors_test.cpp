// The accessors are defined as atof and atoi of the stored text. They take a
// quicker way for plain numbers, so these tests hold them to the C library's
// own conversion, bit for bit, over many texts: plain, hostile and random.

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "core/gps/nmea_record.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

// Texts that are no plain decimal number, or only nearly one.
const char* const kHostileTexts[] = {
    "",      "-",     ".",        "-.",       "+",         "+1.5",      " 1.5",    "\t7",
    "1 ",    "1.5e3", "1.5E-3",   "1e",       "1e+",       "0x1A",      "0X1p3",   "inf",
    "-inf",  "INF",   "nan",      "-nan",     "NaN(1)",    "infinity",  "1.2.3",   "12a",
    "1,5",   "--5",   "-+5",      "+-5",      ".5",        "-.5",       "5.",      "-5.",
    "-0",    "-0.0",  "0",        "00000.00", "000000001", "999999999", "0.1",     "0.3",
    "2.675", "1.005", "0.000001", "-0.00005", "123456789", "4.35",      "\x80",    "1\x01",
    "0.1e1", "1..",   "..1",      "-.-",      "1-",        "1+1",       "*",       "9.999999",
    "2.1,1", "2.1*",  "0x",       "-0x1A",    "5.e3",      "0.5x",      "1.5E-3,", "07.5-"};

// Random texts: mostly digits with points and signs, and now and then a
// character that ends or changes a number.
std::vector<std::string> RandomTexts(std::size_t count, std::size_t longest, bool plainOnly) {
    static constexpr char kPlain[] = "0123456789012345678901234567890123456789.-";
    static constexpr char kAny[] = "0123456789012345678901234567890123456789.-+ eExXinfa\t,*\x01";
    const std::string_view alphabet = plainOnly ? kPlain : kAny;
    std::mt19937 random(20240611);
    std::uniform_int_distribution<std::size_t> length(0, longest);
    std::uniform_int_distribution<std::size_t> pick(0, alphabet.size() - 1);
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < count; ++i) {
        std::string text(length(random), ' ');
        for (char& c : text) c = alphabet[pick(random)];
        texts.push_back(text);
    }
    return texts;
}

std::vector<std::string> AllTexts(std::size_t longest) {
    std::vector<std::string> texts(std::begin(kHostileTexts), std::end(kHostileTexts));
    for (const bool plainOnly : {true, false}) {
        const std::vector<std::string> random = RandomTexts(40000, longest, plainOnly);
        texts.insert(texts.end(), random.begin(), random.end());
    }
    return texts;
}

// Stores text into field, cut to the field's length and terminated as the
// parser leaves it.
template <std::size_t Size>
void Store(char (&field)[Size], const std::string& text) {
    std::memset(field, 0, Size);
    std::memcpy(field, text.data(), std::min(text.size(), Size - 1));
}

template <std::size_t Size>
std::string Kept(const char (&field)[Size]) {
    return std::string(field, std::find(field, field + Size - 1, '\0'));
}

std::uint64_t Bits(double value) {
    return std::bit_cast<std::uint64_t>(value);
}

TEST(NmeaNumberAccessorTest, DecimalFieldsReadBitForBitAsAtofDoes) {
    NmeaRecord record{};
    for (const std::string& text : AllTexts(9)) {
        Store(record.gga.altitude, text);
        Store(record.rmc.speedKnots, text);
        Store(record.gsa.pdop, text);
        Store(record.gsv.satellites[11].azimuth, text);
        ASSERT_EQ(Bits(record.Altitude()), Bits(std::atof(Kept(record.gga.altitude).c_str())))
            << '"' << text << '"';
        ASSERT_EQ(Bits(record.SpeedKnots()), Bits(std::atof(Kept(record.rmc.speedKnots).c_str())))
            << '"' << text << '"';
        ASSERT_EQ(Bits(record.Pdop()), Bits(std::atof(Kept(record.gsa.pdop).c_str())))
            << '"' << text << '"';
        ASSERT_EQ(Bits(record.SatelliteAzimuth(11)),
                  Bits(std::atof(Kept(record.gsv.satellites[11].azimuth).c_str())))
            << '"' << text << '"';
    }
}

TEST(NmeaNumberAccessorTest, IntegerFieldsReadAsAtoiDoes) {
    NmeaRecord record{};
    for (const std::string& text : AllTexts(4)) {
        Store(record.gga.satellitesUsed, text);
        Store(record.gsv.satellites[0].snr, text);
        ASSERT_EQ(record.SatellitesUsed(), std::atoi(Kept(record.gga.satellitesUsed).c_str()))
            << '"' << text << '"';
        ASSERT_EQ(record.SatelliteSnr(0), std::atoi(Kept(record.gsv.satellites[0].snr).c_str()))
            << '"' << text << '"';
    }
}

TEST(NmeaNumberAccessorTest, AFieldFilledToItsLastCellIsReadOnlyToItsLength) {
    // A record filled by hand may lack the terminating zero; the text then
    // ends one cell before the field does.
    NmeaRecord record{};
    std::memcpy(record.rmc.speedKnots, "1234567", 7);
    std::memcpy(record.rmc.course, "-12.345", 7);
    std::memcpy(record.gga.altitude, "9876.54321", 10);
    EXPECT_EQ(Bits(record.SpeedKnots()), Bits(123456.0));
    EXPECT_EQ(Bits(record.Course()), Bits(std::atof("-12.34")));
    EXPECT_EQ(Bits(record.Altitude()), Bits(std::atof("9876.5432")));
}

void ExpectSameFix(const GpsFix& actual, const GpsFix& expected) {
    EXPECT_EQ(actual.fixValid, expected.fixValid);
    for (const auto member :
         {&GpsFix::latitude, &GpsFix::longitude, &GpsFix::altitude, &GpsFix::course,
          &GpsFix::speedKnots, &GpsFix::pdop, &GpsFix::hdop, &GpsFix::vdop, &GpsFix::fixType}) {
        EXPECT_EQ(Bits(actual.*member), Bits(expected.*member));
    }
    EXPECT_EQ(actual.satellitesInView, expected.satellitesInView);
    EXPECT_EQ(actual.satellitesUsed, expected.satellitesUsed);
    for (int i = 0; i < kMaxSatellites; ++i) {
        EXPECT_EQ(actual.satPrn[i], expected.satPrn[i]);
        EXPECT_EQ(actual.satSnr[i], expected.satSnr[i]);
        EXPECT_EQ(Bits(actual.satElevation[i]), Bits(expected.satElevation[i]));
        EXPECT_EQ(Bits(actual.satAzimuth[i]), Bits(expected.satAzimuth[i]));
    }
    EXPECT_EQ(actual.fixTime, expected.fixTime);
}

TEST(NmeaFixReaderTest, ReadsEveryLineOfTheCapturesAsReadNmeaFixDoes) {
    // One reader follows the record line by line through every capture, as
    // a port source reads its record second by second, and through records
    // changed by hand behind the parser's back.
    NmeaRecord record{};
    GsvPaging paging;
    NmeaFixReader reader;
    for (const auto& entry : std::filesystem::directory_iterator(testing::TestDataFile("gpsd"))) {
        std::istringstream lines(testing::ReadFileBytes(entry.path().string()));
        for (std::string line; std::getline(lines, line);) {
            ParseNmeaBuffer(record, paging, (line + "\n").c_str());
            ExpectSameFix(reader.Read(record), ReadNmeaFix(record));
        }
    }
    std::memcpy(record.gsv.satellites[3].elevation, "1e1", 4);
    std::memcpy(record.gsv.satellites[3].snr, "42", 3);
    ExpectSameFix(reader.Read(record), ReadNmeaFix(record));
    // A hemisphere alone changes a coordinate's sign.
    record.rmc.latHemisphere = record.rmc.latHemisphere == 'N' ? 'S' : 'N';
    record.rmc.lonHemisphere = 0;
    std::memcpy(record.gsa.vdop, "2.1,1", 6);
    ExpectSameFix(reader.Read(record), ReadNmeaFix(record));
    ClearNmeaRecord(record);
    ExpectSameFix(reader.Read(record), ReadNmeaFix(record));
}

}  // namespace
}  // namespace tolvane
