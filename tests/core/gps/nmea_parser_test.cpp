#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "core/gps/nmea_record.h"
#include "tests/core/gps/port_reader_feed.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

using testing::PortReaderFeed;

// The textbook sentences, with the checksums their receivers send.
constexpr char kRmc[] = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n";
constexpr char kGga[] = "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n";
constexpr char kGsa[] = "$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*39\r\n";
constexpr char kVtg[] = "$GPVTG,054.7,T,034.4,M,005.5,N,010.2,K*48\r\n";

// Frames a sentence body with its correct checksum and a line end.
std::string Sentence(const std::string& body) {
    int checksum = 0;
    for (const char c : body) checksum ^= static_cast<unsigned char>(c);
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X", checksum);
    return "$" + body + "*" + digits + "\r\n";
}

// One parser with its state, as the program keeps it.
struct Parser {
    NmeaRecord record{};
    GsvPaging paging;
    NmeaParseStats stats;

    // The tail handed back, empty when nothing is to be kept.
    std::string Parse(const std::string& text) {
        const char* tail = ParseNmeaBuffer(record, paging, text.c_str(), &stats);
        return tail == nullptr ? std::string() : std::string(tail);
    }
};

std::vector<int> Prns(const NmeaRecord& record) {
    std::vector<int> prns;
    for (int i = 0; i < kMaxSatellites; ++i) prns.push_back(record.SatellitePrn(i));
    return prns;
}

FileTime LocalTime(const CivilTime& utc) {
    return UtcToLocal(*CivilToFileTime(utc));
}

std::string Capture(const std::string& name) {
    return testing::ReadFileBytes(testing::TestDataFile("gpsd/" + name));
}

TEST(NmeaChecksumTest, OnlyTwoUpperCaseDigitsMatch) {
    EXPECT_TRUE(VerifyNmeaChecksum(0x6A, "6A"));
    EXPECT_FALSE(VerifyNmeaChecksum(0x6A, "6a"));
    EXPECT_TRUE(VerifyNmeaChecksum(0x0B, "0B"));
    EXPECT_FALSE(VerifyNmeaChecksum(0x0B, "B\r"));
    EXPECT_FALSE(VerifyNmeaChecksum(0x0B, "0b"));
    EXPECT_TRUE(VerifyNmeaChecksum(0x00, "00"));
    EXPECT_TRUE(VerifyNmeaChecksum(0xFF, "FF"));
    EXPECT_FALSE(VerifyNmeaChecksum(0x1FF, "FF"));

    Parser lower;
    std::string sentence = kRmc;
    sentence[sentence.find("*6A") + 2] = 'a';
    EXPECT_EQ(lower.Parse(sentence), "");
    EXPECT_EQ(lower.stats.checksumFailures, 1);
    EXPECT_EQ(lower.stats.rmc, 0);
    EXPECT_EQ(lower.record.rmc.status, 0);

    Parser upper;
    upper.Parse(kRmc);
    EXPECT_EQ(upper.stats.rmc, 1);
    EXPECT_EQ(upper.record.rmc.status, 'A');

    // This sentence's checksum is 0x0B.
    const std::string body = "GPRMC,000029,A,4807.038,N,01131.000,E,022.4,84.4,230394,003.1,";
    Parser padded;
    padded.Parse("$" + body + "*0B\r\n");
    EXPECT_EQ(padded.stats.rmc, 1);
    Parser lone;
    lone.Parse("$" + body + "*B\r\n");
    EXPECT_EQ(lone.stats.rmc, 0);
    EXPECT_EQ(lone.stats.checksumFailures, 1);
}

TEST(NmeaFramingTest, AnUnfinishedSentenceComesBackAndIsParsedWholeWithTheNextRead) {
    Parser parser;
    const std::string gga = kGga;
    const std::string firstRead = std::string(kRmc) + gga.substr(0, gga.find(',', 7) + 1);
    EXPECT_EQ(parser.Parse(firstRead), "$GPGGA,123519,");
    EXPECT_EQ(parser.stats.rmc, 1);

    EXPECT_EQ(parser.Parse("$GPGGA,123519," + gga.substr(gga.find(',', 7) + 1)), "");
    EXPECT_EQ(parser.stats.gga, 1);
    EXPECT_STREQ(parser.record.gga.altitude, "545.4");

    // Cut in the header, in the body and between the checksum digits.
    for (const std::string cut :
         {"$GP", "$GPGSA,A,3,04", "$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*3"}) {
        Parser other;
        EXPECT_EQ(other.Parse(kRmc + cut), cut);
    }
}

TEST(NmeaFramingTest, AnUnknownSentenceLastInTheTextIsHandedBackOnlyUntilDataFollows) {
    Parser parser;
    EXPECT_EQ(parser.Parse(std::string(kRmc) + kVtg), kVtg);
    EXPECT_EQ(parser.Parse(std::string(kVtg) + kGga), "");
    EXPECT_EQ(parser.stats.rmc, 1);
    EXPECT_EQ(parser.stats.gga, 1);
    EXPECT_EQ(parser.Parse("no sentence at all\r\n"), "");
    EXPECT_EQ(parser.Parse(""), "");
}

TEST(NmeaFramingTest, OnlyTheFourGpSentencesAreTaken) {
    Parser parser;
    std::string other = kRmc;
    other.replace(1, 2, "GN");
    parser.Parse(Sentence(other.substr(1, other.find('*') - 1)));
    parser.Parse(Sentence("gprmc,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W"));
    parser.Parse(Sentence("GPRMB,A,0.66,L,003,004,4917.24,N,12309.57,W,001.3,052.5,000.5,V"));
    parser.Parse(Sentence("GPGSVX,1,1,00,"));
    EXPECT_EQ(parser.stats.rmc + parser.stats.gga + parser.stats.gsa + parser.stats.gsv, 0);
    EXPECT_EQ(parser.stats.checksumFailures, 0);
    EXPECT_EQ(parser.record.rmc.status, 0);
}

TEST(NmeaFramingTest, ANewDollarDropsTheSentenceItCuts) {
    Parser parser;
    EXPECT_EQ(parser.Parse(std::string("$GPGGA,030130") + kRmc), "");
    EXPECT_EQ(parser.stats.brokenSentences, 1);
    EXPECT_EQ(parser.stats.gga, 0);
    EXPECT_EQ(parser.stats.rmc, 1);

    // In the checksum digits, and in the header of an unknown sentence,
    // which does not count as a broken kept one.
    parser.Parse(std::string("$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*3") + kGsa);
    parser.Parse("$GP" + std::string(kGga));
    EXPECT_EQ(parser.stats.brokenSentences, 2);
    EXPECT_EQ(parser.stats.gsa, 1);
    EXPECT_EQ(parser.stats.gga, 1);

    // The text ends at its terminating zero.
    const char text[] = "$GPGGA,1\0,*47\r\n";
    EXPECT_EQ(ParseNmeaBuffer(parser.record, parser.paging, text), text);
}

TEST(NmeaSentenceTest, FieldsAreKeptAsSentEachSectionClearedByItsOwnSentence) {
    Parser parser;
    parser.Parse(std::string(kRmc) + kGga + kGsa);
    const NmeaRecord::Rmc& rmc = parser.record.rmc;
    EXPECT_STREQ(rmc.utcTime, "123519");
    EXPECT_EQ(rmc.status, 'A');
    EXPECT_STREQ(rmc.latitude, "4807.038");
    EXPECT_EQ(rmc.latHemisphere, 'N');
    EXPECT_STREQ(rmc.longitude, "01131.000");
    EXPECT_EQ(rmc.lonHemisphere, 'E');
    EXPECT_STREQ(rmc.speedKnots, "022.4");
    EXPECT_STREQ(rmc.course, "084.4");
    EXPECT_STREQ(rmc.date, "230394");
    const NmeaRecord::Gga& gga = parser.record.gga;
    EXPECT_EQ(gga.fixQuality, '1');
    EXPECT_STREQ(gga.satellitesUsed, "08");
    EXPECT_STREQ(gga.altitude, "545.4");
    EXPECT_EQ(gga.altitudeUnit, 'M');
    EXPECT_STREQ(gga.geoidSeparation, "46.9");
    EXPECT_EQ(gga.geoidUnit, 'M');
    const NmeaRecord::Gsa& gsa = parser.record.gsa;
    EXPECT_EQ(gsa.fixType, '3');
    EXPECT_STREQ(gsa.pdop, "2.5");
    EXPECT_STREQ(gsa.hdop, "1.3");
    EXPECT_STREQ(gsa.vdop, "2.1");

    // Long fields keep one character less than their arrays; empty
    // single-character fields stay zero; the other sections stay.
    parser.Parse(
        Sentence("GPRMC,123519.12345,,48071234.0381,,01131000.12345,W,1234567,12345678,"
                 "2303945,,"));
    EXPECT_STREQ(rmc.utcTime, "123519.123");
    EXPECT_EQ(rmc.status, 0);
    EXPECT_STREQ(rmc.latitude, "48071234.");
    EXPECT_EQ(rmc.latHemisphere, 0);
    EXPECT_STREQ(rmc.longitude, "01131000.1");
    EXPECT_EQ(rmc.lonHemisphere, 'W');
    EXPECT_STREQ(rmc.speedKnots, "123456");
    EXPECT_STREQ(rmc.course, "123456");
    EXPECT_STREQ(rmc.date, "230394");
    EXPECT_STREQ(gga.altitude, "545.4");
    EXPECT_STREQ(gsa.hdop, "1.3");
}

TEST(NmeaSentenceTest, VdopRunsToTheStarWhileOtherTextFieldsStopAtTheStar) {
    Parser parser;
    parser.Parse(Sentence("GPGSA,A,2,04,05,,09,12,,,24,,,,,1.0,0.6,0.8,1"));
    EXPECT_EQ(parser.record.gsa.fixType, '2');
    EXPECT_STREQ(parser.record.gsa.hdop, "0.6");
    EXPECT_STREQ(parser.record.gsa.vdop, "0.8,1");
    EXPECT_DOUBLE_EQ(parser.record.Vdop(), 0.8);

    // A sentence that ends right behind a kept field does not run on into
    // the text that follows it.
    NmeaRecord record{};
    ParseRmc(record, "123519*00\r\n$X,A,");
    EXPECT_STREQ(record.rmc.utcTime, "123519");
    EXPECT_EQ(record.rmc.status, '\0');
}

const std::string kTenSatellites[] = {
    Sentence("GPGSV,3,1,10,23,38,230,44,29,71,156,47,07,29,116,41,08,09,081,36"),
    Sentence("GPGSV,3,2,10,10,11,237,35,13,06,294,,17,42,052,44,20,25,299,39"),
    Sentence("GPGSV,3,3,10,04,07,192,,16,58,102,45"),
};

TEST(NmeaGsvTest, ASequenceFillsItsRecordsAndIsSortedByPrnWhenComplete) {
    Parser parser;
    parser.Parse(kTenSatellites[0] + kTenSatellites[1]);
    EXPECT_EQ(Prns(parser.record), (std::vector<int>{23, 29, 7, 8, 10, 13, 17, 20, 0, 0, 0, 0}));
    EXPECT_EQ(parser.paging.totalMessages, '3');
    EXPECT_EQ(parser.paging.messageNumber, '2');
    EXPECT_EQ(parser.paging.nextIndex, 8);

    parser.Parse(kTenSatellites[2]);
    EXPECT_EQ(Prns(parser.record), (std::vector<int>{4, 7, 8, 10, 13, 16, 17, 20, 23, 29, 0, 0}));
    EXPECT_EQ(parser.record.SatellitesInView(), 10);
    EXPECT_DOUBLE_EQ(parser.record.SatelliteElevation(0), 7);
    EXPECT_DOUBLE_EQ(parser.record.SatelliteAzimuth(0), 192);
    EXPECT_EQ(parser.record.SatelliteSnr(0), 0);
    EXPECT_EQ(parser.record.SatelliteSnr(9), 47);
    EXPECT_EQ(parser.paging.totalMessages, 0);
    EXPECT_EQ(parser.paging.messageNumber, 0);
    EXPECT_EQ(parser.paging.nextIndex, 0);

    // A message lost from the middle leaves four empty records, which read
    // as PRN 0 and sort to the front.
    parser.Parse(kTenSatellites[0] + kTenSatellites[2]);
    EXPECT_EQ(Prns(parser.record), (std::vector<int>{0, 0, 0, 0, 4, 7, 8, 16, 23, 29, 0, 0}));
}

TEST(NmeaGsvTest, TheSortExchangesWholeRecordsWheneverAnEarlierPrnIsGreater) {
    // Random sequences full of equal and odd PRNs, each satellite told apart
    // by its elevation, against the exchange sort done on the records as
    // they were sent.
    const char* const kPrnTexts[] = {"1", "01", "02", "2", "", "7", "07", "12", "-1", "+3", " 4"};
    std::mt19937 random(7);
    for (int round = 0; round < 500; ++round) {
        const int count = 1 + static_cast<int>(random() % kMaxSatellites);
        const int messages = (count + 3) / 4;
        std::vector<NmeaSatellite> sent;
        std::string text;
        for (int message = 0; message < messages; ++message) {
            std::string body = "GPGSV," + std::to_string(messages) + "," +
                               std::to_string(message + 1) + "," + std::to_string(count);
            for (int i = message * 4; i < std::min(count, message * 4 + 4); ++i) {
                NmeaSatellite satellite{};
                std::strcpy(satellite.prn, kPrnTexts[random() % std::size(kPrnTexts)]);
                std::strcpy(satellite.elevation, std::to_string(i).c_str());
                sent.push_back(satellite);
                body += std::string(",") + satellite.prn + "," + satellite.elevation + ",,";
            }
            text += Sentence(body);
        }
        for (std::size_t i = 0; i < sent.size(); ++i) {
            for (std::size_t j = i; j < sent.size(); ++j) {
                if (std::atoi(sent[i].prn) > std::atoi(sent[j].prn)) std::swap(sent[i], sent[j]);
            }
        }
        Parser parser;
        parser.Parse(text);
        for (int i = 0; i < count; ++i) {
            EXPECT_STREQ(parser.record.gsv.satellites[i].prn, sent[i].prn);
            EXPECT_STREQ(parser.record.gsv.satellites[i].elevation, sent[i].elevation);
        }
    }
}

TEST(NmeaGsvTest, ALoneSecondMessageFillsRecordsFourToSevenAndKeepsTwoPrnDigits) {
    Parser parser;
    for (const std::string& message : kTenSatellites) parser.Parse(message);
    parser.Parse(Sentence("GPGSV,3,2,11,120,48,200,40,02,10,020,,05,20,050,30,03,30,030,33"));
    EXPECT_EQ(Prns(parser.record), (std::vector<int>{0, 0, 0, 0, 12, 2, 5, 3, 0, 0, 0, 0}));
    EXPECT_STREQ(parser.record.gsv.satellites[4].prn, "12");
    EXPECT_EQ(parser.paging.totalMessages, '3');
    EXPECT_EQ(parser.paging.nextIndex, 8);
}

TEST(NmeaGsvTest, SatellitesPastTheTwelfthAreCountedButNeverWritten) {
    struct Guarded {
        NmeaRecord record{};
        unsigned char guard[512];
    } guarded;
    std::memset(guarded.guard, 0xA5, sizeof guarded.guard);
    GsvPaging paging;
    const auto parse = [&](const std::string& text) {
        ParseNmeaBuffer(guarded.record, paging, text.c_str());
    };

    // Five messages announcing 19 satellites, as some receivers send them.
    std::string sequence;
    for (int message = 1; message <= 5; ++message) {
        std::string body = "GPGSV,5," + std::to_string(message) + ",19";
        for (int i = 0; i < 4 && (message - 1) * 4 + i < 19; ++i) {
            body += "," + std::to_string(40 - (message - 1) * 4 - i) + ",10,100,30";
        }
        sequence += Sentence(body);
    }
    parse(sequence);
    EXPECT_EQ(Prns(guarded.record),
              (std::vector<int>{29, 30, 31, 32, 33, 34, 35, 36, 37, 38, 39, 40}));
    EXPECT_EQ(paging.totalMessages, 0);
    EXPECT_EQ(paging.nextIndex, 0);

    // Message numbers that point far past the table, or before it.
    for (const char* body :
         {"GPGSV,9,9,36,01,10,100,30,02,10,100,30,03,10,100,30,04,10,100,30",
          "GPGSV,9,A,36,01,10,100,30,02,10,100,30,03,10,100,30,04,10,100,30",
          "GPGSV,9,0,36,01,10,100,30,02,10,100,30,03,10,100,30,04,10,100,30",
          "GPGSV,9,\xFF,36,01,10,100,30,02,10,100,30,03,10,100,30,04,10,100,30"}) {
        parse(Sentence(body));
    }
    parse(Sentence("GPGSV,4,4,13,05,10,100,30,06,10,100,30,07,10,100,30,08,10,100,30"));
    for (const unsigned char byte : guarded.guard) ASSERT_EQ(byte, 0xA5);
    EXPECT_EQ(guarded.record.SatellitesInView(), 13);
}

TEST(NmeaAccessorTest, CoordinatesAreSignedByTheirHemispheres) {
    NmeaRecord record{};
    std::strcpy(record.rmc.latitude, "4807.038");
    std::strcpy(record.rmc.longitude, "01131.000");
    record.rmc.latHemisphere = 'N';
    record.rmc.lonHemisphere = 'E';
    EXPECT_NEAR(record.Latitude(), 48.1173, 1e-9);
    EXPECT_NEAR(record.Longitude(), 11.516666666666667, 1e-9);
    record.rmc.latHemisphere = 'S';
    record.rmc.lonHemisphere = 'W';
    EXPECT_NEAR(record.Latitude(), -48.1173, 1e-9);
    EXPECT_NEAR(record.Longitude(), -11.516666666666667, 1e-9);
    record.rmc.latHemisphere = 0;
    EXPECT_NEAR(record.Latitude(), -48.1173, 1e-9);

    // Empty fields read as zero; an unknown fix type as no fix.
    EXPECT_EQ(record.SatellitesUsed(), 0);
    EXPECT_EQ(record.Altitude(), 0.0);
    for (const auto& [type, value] :
         {std::pair{'1', 1.0}, {'2', 2.0}, {'3', 3.0}, {'4', 1.0}, {'\0', 1.0}}) {
        record.gsa.fixType = type;
        EXPECT_EQ(record.FixType(), value);
    }
}

TEST(NmeaAccessorTest, FixTimeIsTheLocalTimeOfAPossibleDate) {
    const auto fixTime = [](const char* time, const char* date) {
        NmeaRecord record{};
        std::strcpy(record.rmc.utcTime, time);
        std::strcpy(record.rmc.date, date);
        return record.FixLocalTime();
    };
    // The century is always 20.
    EXPECT_EQ(fixTime("123519", "230394"), LocalTime({2094, 3, 23, 12, 35, 19, 0}));
    EXPECT_EQ(fixTime("235959.5", "311299"), LocalTime({2099, 12, 31, 23, 59, 59, 5}));
    EXPECT_EQ(fixTime("030743.050", "311214"), LocalTime({2014, 12, 31, 3, 7, 43, 50}));
    EXPECT_EQ(fixTime("030743.000", "311314"), 0);  // month 13
    EXPECT_EQ(fixTime("322500.000", "311214"), 0);  // hour 32
    EXPECT_EQ(fixTime("", ""), 0);
}

// What a capture's sentences do to the parser. The kept counts are those of
// gpsd's regression output for the same capture, less what a strict parser
// refuses: lower-case checksums and sentences cut by another.
struct CaptureCase {
    const char* name;
    NmeaParseStats expected;
};

const CaptureCase kCaptures[] = {
    {"GPSmap-76S.log", {12, 12, 12, 36, 0, 0}},
    {"bu353s4.log", {25, 25, 25, 15, 0, 0}},
    {"telit-he910.log", {224, 224, 224, 438, 0, 0}},
    {"haicom-305N.log", {74, 73, 26, 79, 0, 0}},
    {"magellan-ec10.log", {16, 0, 0, 0, 22, 0}},  // 22 lower-case checksums
    {"garmin48.log", {7, 7, 7, 21, 1, 0}},        // one "*7"
    {"triton400.log", {4, 4, 3, 12, 0, 1}},       // "$GPGGA,030130$GPGLL,..."
    {"holux-gm-210.log", {11, 11, 11, 6, 0, 0}},  // the last GGA is cut off
    {"myguide-3100.log", {13, 13, 13, 61, 0, 0}},
    {"isync.log", {12, 12, 12, 41, 0, 1}},  // a $PTNTA inside a $GPGSV
    {"beidou-gb.log", {0, 5, 0, 29, 0, 0}},
    {"firefly-II.log", {23, 0, 0, 0, 23, 0}},  // every GGA checksum is wrong
};

void ExpectSameStats(const NmeaParseStats& actual, const NmeaParseStats& expected) {
    EXPECT_EQ(actual.rmc, expected.rmc);
    EXPECT_EQ(actual.gga, expected.gga);
    EXPECT_EQ(actual.gsa, expected.gsa);
    EXPECT_EQ(actual.gsv, expected.gsv);
    EXPECT_EQ(actual.checksumFailures, expected.checksumFailures);
    EXPECT_EQ(actual.brokenSentences, expected.brokenSentences);
}

TEST(NmeaCaptureTest, ReceiverCapturesParseAloneAndThroughThePortReaderBufferAlike) {
    for (const CaptureCase& capture : kCaptures) {
        SCOPED_TRACE(capture.name);
        const std::string text = Capture(capture.name);
        ASSERT_FALSE(text.empty());
        Parser whole;
        const std::string tail = whole.Parse(text);
        ExpectSameStats(whole.stats, capture.expected);

        // Reads of one byte, of a serial line at 4800 baud in 200 ms and of
        // the largest read, parsed at different paces.
        for (const auto& [readSize, readsPerParse] :
             {std::pair<std::size_t, int>{1, 7}, {97, 5}, {1024, 1}}) {
            Parser fed;
            PortReaderFeed feed(fed.record, fed.paging, &fed.stats);
            feed.ReadAll(text.data(), text.size(), readSize, readsPerParse);
            ExpectSameStats(fed.stats, capture.expected);
            EXPECT_EQ(std::memcmp(&fed.record, &whole.record, sizeof whole.record), 0);
            EXPECT_EQ(feed.Buffer(), tail);
        }
    }
}

TEST(NmeaCaptureTest, TheLastFixOfACaptureMatchesGpsdsReading) {
    Parser bu353;
    bu353.Parse(Capture("bu353s4.log"));
    GpsFix fix = ReadNmeaFix(bu353.record);
    EXPECT_EQ(fix.fixValid, 1);
    EXPECT_NEAR(fix.latitude, -37.784795000, 1e-9);
    EXPECT_NEAR(fix.longitude, 175.314901667, 1e-9);
    EXPECT_DOUBLE_EQ(fix.altitude, 60.2);
    EXPECT_DOUBLE_EQ(fix.course, 181.39);
    EXPECT_DOUBLE_EQ(fix.speedKnots, 0);
    EXPECT_EQ(fix.satellitesInView, 12);
    EXPECT_EQ(fix.satellitesUsed, 7);
    EXPECT_DOUBLE_EQ(fix.pdop, 1.9);
    EXPECT_DOUBLE_EQ(fix.hdop, 1.1);
    EXPECT_DOUBLE_EQ(fix.vdop, 1.6);
    EXPECT_EQ(fix.fixType, 3.0);
    const int prns[kMaxSatellites] = {1, 2, 3, 6, 8, 13, 17, 20, 24, 26, 28, 30};
    EXPECT_TRUE(std::equal(std::begin(prns), std::end(prns), fix.satPrn));
    // PRN 17: elevation 71, azimuth 207, 31 dB-Hz; PRN 2 is not tracked.
    EXPECT_EQ(fix.satElevation[6], 71);
    EXPECT_EQ(fix.satAzimuth[6], 207);
    EXPECT_EQ(fix.satSnr[6], 31);
    EXPECT_EQ(fix.satSnr[1], 0);
    EXPECT_EQ(fix.fixTime, LocalTime({2014, 12, 31, 3, 7, 43, 0}));

    Parser haicom;
    haicom.Parse(Capture("haicom-305N.log"));
    fix = ReadNmeaFix(haicom.record);
    EXPECT_NEAR(fix.latitude, -27.210673333, 1e-9);
    EXPECT_NEAR(fix.longitude, 153.052000000, 1e-9);
    EXPECT_DOUBLE_EQ(fix.altitude, 3.5);
    EXPECT_NEAR(fix.speedKnots * 1852 / 3600, 1.085, 1e-3);  // gpsd gives m/s
    EXPECT_EQ(fix.fixTime, LocalTime({2007, 4, 8, 9, 54, 15, 787}));

    Parser myguide;
    myguide.Parse(Capture("myguide-3100.log"));
    fix = ReadNmeaFix(myguide.record);
    EXPECT_NEAR(fix.latitude, 56.216606667, 1e-9);
    EXPECT_NEAR(fix.longitude, -3.111923333, 1e-9);
    EXPECT_DOUBLE_EQ(fix.altitude, 159.026);
    EXPECT_NEAR(fix.hdop, 17.47, 0.005);
    EXPECT_DOUBLE_EQ(fix.vdop, 15.706);
    EXPECT_EQ(fix.satellitesInView, 11);
    EXPECT_EQ(fix.satellitesUsed, 4);
    // gpsd reads 10:50:37.800Z; the digits ".80" are taken as they stand.
    EXPECT_EQ(fix.fixTime, LocalTime({2009, 10, 8, 10, 50, 37, 80}));

    Parser garmin;
    EXPECT_EQ(garmin.Parse(Capture("GPSmap-76S.log")).rfind("$GPGLL,", 0), 0u);
    fix = ReadNmeaFix(garmin.record);
    EXPECT_EQ(fix.fixValid, 0);
    EXPECT_NEAR(fix.latitude, 38.908478333, 1e-9);
    EXPECT_NEAR(fix.longitude, -77.440871667, 1e-9);
    EXPECT_EQ(fix.satellitesInView, 10);
    EXPECT_EQ(fix.satPrn[9], 28);
    EXPECT_EQ(fix.satPrn[10], 0);
}

TEST(NmeaCaptureTest, CapturesWithMoreThanTwelveSatellitesKeepTheFirstTwelveSorted) {
    // myguide-3100 announces 19 satellites in five messages; the first
    // sequence ends on line 19.
    const std::string text = Capture("myguide-3100.log");
    std::size_t end = 0;
    for (int line = 0; line < 19; ++line) end = text.find('\n', end) + 1;
    Parser parser;
    parser.Parse(text.substr(0, end));
    EXPECT_EQ(Prns(parser.record), (std::vector<int>{1, 2, 4, 9, 12, 13, 14, 15, 16, 17, 18, 19}));
    EXPECT_EQ(parser.record.SatellitesInView(), 19);
    EXPECT_EQ(parser.paging.totalMessages, 0);

    // beidou-gb sends six messages for 21 satellites and, meanwhile, the
    // BeiDou satellites with three-digit numbers under its own talker.
    Parser beidou;
    beidou.Parse(Capture("beidou-gb.log"));
    for (const int prn : Prns(beidou.record)) EXPECT_LT(prn, 33);
}

TEST(NmeaCaptureTest, ACorruptColdStartCaptureLeavesEveryFieldTerminated) {
    // gp-320fw sends fragments, glued sentences, bad checksums and zero bytes
    // after its cold start.
    const std::string text = Capture("gp-320fw-2019-04-07-coldboot.log");
    Parser parser;
    PortReaderFeed feed(parser.record, parser.paging, &parser.stats);
    feed.ReadAll(text.data(), text.size(), 64, 3);
    EXPECT_GT(parser.stats.checksumFailures, 0);
    EXPECT_GT(parser.stats.rmc, 0);
    const NmeaRecord& record = parser.record;
    for (const char* end : {std::end(record.rmc.utcTime), std::end(record.rmc.latitude),
                            std::end(record.gga.altitude), std::end(record.gsa.vdop),
                            std::end(record.gsv.satellitesInView)}) {
        EXPECT_EQ(end[-1], '\0');
    }
    for (const NmeaSatellite& satellite : record.gsv.satellites) {
        EXPECT_EQ(satellite.prn[2], '\0');
        EXPECT_EQ(satellite.snr[4], '\0');
    }
}

}  // namespace
}  // namespace tolvane
