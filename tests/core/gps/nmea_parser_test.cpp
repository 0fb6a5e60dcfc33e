#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "core/gps/nmea_record.h"
#include "core/gps/port_reader_feed.h"
#include "tests/core/nmea_sentence.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

using testing::NmeaSentence;

// The textbook sentences, with the checksums their receivers send.
constexpr char kRmc[] = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n";
constexpr char kGga[] = "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n";
constexpr char kGsa[] = "$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*39\r\n";
constexpr char kVtg[] = "$GPVTG,054.7,T,034.4,M,005.5,N,010.2,K*48\r\n";

// One parser with its state, as the program keeps it.
struct Parser {
    NmeaRecord record{};
    GsvPaging paging;
    NmeaParseStats stats;
    NmeaTalkers talkers = NmeaTalkers::kGpOnly;

    // The tail handed back, empty when nothing is to be kept.
    std::string Parse(const std::string& text) {
        const char* tail = ParseNmeaBuffer(record, paging, text.c_str(), &stats, talkers);
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
    const auto status = [](const std::string& sentence) {
        Parser parser;
        parser.Parse(sentence);
        return parser.record.rmc.status;
    };
    std::string lower = kRmc;
    lower[lower.find("*6A") + 2] = 'a';
    EXPECT_EQ(status(kRmc), 'A');
    EXPECT_EQ(status(lower), '\0');
    // This sentence's checksum is 0x0B.
    const std::string body = "$GPRMC,000029,A,4807.038,N,01131.000,E,022.4,84.4,230394,003.1,";
    EXPECT_EQ(status(body + "*0B\r\n"), 'A');
    EXPECT_EQ(status(body + "*B\r\n"), '\0');
    EXPECT_EQ(status(body + "*0b\r\n"), '\0');
}

TEST(NmeaFramingTest, AnUnfinishedSentenceComesBackAndIsParsedWholeWithTheNextRead) {
    Parser parser;
    const std::string gga = kGga;
    const std::size_t cut = gga.find(',', 7) + 1;  // behind the time field
    EXPECT_EQ(parser.Parse(kRmc + gga.substr(0, cut)), "$GPGGA,123519,");
    EXPECT_EQ(parser.Parse("$GPGGA,123519," + gga.substr(cut)), "");
    EXPECT_EQ(parser.stats.gga, 1);
    EXPECT_STREQ(parser.record.gga.altitude, "545.4");

    // Cut in the header, in the body and between the checksum digits.
    for (const std::string cutOff :
         {"$GP", "$GPGSA,A,3,04", "$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*3"}) {
        Parser other;
        EXPECT_EQ(other.Parse(kRmc + cutOff), cutOff);
    }
}

TEST(NmeaFramingTest, AnUnknownSentenceLastInTheTextIsHandedBackOnlyUntilDataFollows) {
    Parser parser;
    EXPECT_EQ(parser.Parse(std::string(kRmc) + kVtg), kVtg);
    EXPECT_EQ(parser.Parse(std::string(kVtg) + kGga), "");
    EXPECT_EQ(parser.stats.rmc, 1);
    EXPECT_EQ(parser.stats.gga, 1);
    EXPECT_EQ(parser.Parse("no sentence at all\r\n"), "");
}

TEST(NmeaFramingTest, OnlyTheFourGpSentencesAreTaken) {
    Parser parser;
    for (const char* body :
         {"GNRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W",
          "gprmc,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W",
          "GPRMB,A,0.66,L,003,004,4917.24,N,12309.57,W,001.3,052.5,000.5,V", "GPGSVX,1,1,00,"}) {
        parser.Parse(NmeaSentence(body));
    }
    EXPECT_EQ(parser.stats.rmc + parser.stats.gga + parser.stats.gsa + parser.stats.gsv, 0);
    EXPECT_EQ(parser.record.rmc.status, 0);
}

TEST(NmeaFramingTest, ANewDollarDropsTheSentenceItCuts) {
    Parser parser;
    EXPECT_EQ(parser.Parse(std::string("$GPGGA,030130") + kRmc), "");
    // In the checksum digits, and in the header of an unknown sentence,
    // which does not count as a broken kept one.
    parser.Parse(std::string("$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*3") + kGsa);
    parser.Parse("$GP" + std::string(kGga));
    EXPECT_EQ(parser.stats.brokenSentences, 2);
    EXPECT_EQ(parser.stats.rmc + parser.stats.gsa + parser.stats.gga, 3);

    // The text ends at its terminating zero.
    const char text[] = "$GPGGA,1\0,*47\r\n";
    EXPECT_EQ(ParseNmeaBuffer(parser.record, parser.paging, text), text);
}

TEST(NmeaSentenceTest, LongFieldsAreCutToTheirArraysAndOtherSectionsStay) {
    Parser parser;
    parser.Parse(std::string(kGga) + kGsa);
    // Long fields keep one character less than their arrays; an empty
    // single-character field stays zero.
    parser.Parse(
        NmeaSentence("GPRMC,123519.12345,,48071234.0381,,01131000.12345,W,1234567,12345678,"
                     "2303945,,"));
    const NmeaRecord::Rmc& rmc = parser.record.rmc;
    EXPECT_EQ((std::vector<std::string>{rmc.utcTime, rmc.latitude, rmc.longitude, rmc.speedKnots,
                                        rmc.course, rmc.date}),
              (std::vector<std::string>{"123519.123", "48071234.", "01131000.1", "123456", "123456",
                                        "230394"}));
    EXPECT_EQ(rmc.status, 0);
    EXPECT_EQ(rmc.lonHemisphere, 'W');
    EXPECT_STREQ(parser.record.gga.altitude, "545.4");
    EXPECT_STREQ(parser.record.gsa.hdop, "1.3");
}

TEST(NmeaSentenceTest, VdopRunsToTheStarWhileOtherTextFieldsStopAtTheStar) {
    Parser parser;
    parser.Parse(NmeaSentence("GPGSA,A,2,04,05,,09,12,,,24,,,,,1.0,0.6,0.8,1"));
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
    NmeaSentence("GPGSV,3,1,10,23,38,230,44,29,71,156,47,07,29,116,41,08,09,081,36"),
    NmeaSentence("GPGSV,3,2,10,10,11,237,35,13,06,294,,17,42,052,44,20,25,299,39"),
    NmeaSentence("GPGSV,3,3,10,04,07,192,,16,58,102,45"),
};

TEST(NmeaGsvTest, ASequenceFillsItsRecordsAndIsSortedByPrnWhenComplete) {
    Parser parser;
    parser.Parse(kTenSatellites[0] + kTenSatellites[1]);
    EXPECT_EQ(Prns(parser.record), (std::vector<int>{23, 29, 7, 8, 10, 13, 17, 20, 0, 0, 0, 0}));

    parser.Parse(kTenSatellites[2]);
    EXPECT_EQ(Prns(parser.record), (std::vector<int>{4, 7, 8, 10, 13, 16, 17, 20, 23, 29, 0, 0}));
    EXPECT_EQ(parser.record.SatellitesInView(), 10);
    EXPECT_DOUBLE_EQ(parser.record.SatelliteElevation(0), 7);
    EXPECT_DOUBLE_EQ(parser.record.SatelliteAzimuth(0), 192);
    EXPECT_EQ(parser.record.SatelliteSnr(0), 0);
    EXPECT_EQ(parser.record.SatelliteSnr(9), 47);
    EXPECT_EQ(parser.paging.totalMessages, 0);

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
            text += NmeaSentence(body);
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
    parser.Parse(NmeaSentence("GPGSV,3,2,11,120,48,200,40,02,10,020,,05,20,050,30,03,30,030,33"));
    EXPECT_EQ(Prns(parser.record), (std::vector<int>{0, 0, 0, 0, 12, 2, 5, 3, 0, 0, 0, 0}));
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
    for (int message = 1; message <= 5; ++message) {
        std::string body = "GPGSV,5," + std::to_string(message) + ",19";
        for (int i = 0; i < 4 && (message - 1) * 4 + i < 19; ++i) {
            body += "," + std::to_string(40 - (message - 1) * 4 - i) + ",10,100,30";
        }
        parse(NmeaSentence(body));
    }
    EXPECT_EQ(Prns(guarded.record),
              (std::vector<int>{29, 30, 31, 32, 33, 34, 35, 36, 37, 38, 39, 40}));
    EXPECT_EQ(paging.totalMessages, 0);

    // Message numbers that point far past the table, or before it.
    for (const char* number : {"9", "A", "0", "\xFF"}) {
        parse(NmeaSentence(std::string("GPGSV,9,") + number +
                           ",36,01,10,100,30,02,10,100,30,03,10,100,30,04,10,100,30"));
    }
    parse(NmeaSentence("GPGSV,4,4,13,05,10,100,30,06,10,100,30,07,10,100,30,08,10,100,30"));
    for (const unsigned char byte : guarded.guard) ASSERT_EQ(byte, 0xA5);
    EXPECT_EQ(guarded.record.SatellitesInView(), 13);
}

TEST(NmeaAccessorTest, CoordinatesAreSignedByTheirHemispheresAndFixTypesDefaultToNoFix) {
    NmeaRecord record{};
    std::strcpy(record.rmc.latitude, "4807.038");
    std::strcpy(record.rmc.longitude, "01131.000");
    record.rmc.latHemisphere = 'N';
    record.rmc.lonHemisphere = 'W';
    EXPECT_NEAR(record.Latitude(), 48.1173, 1e-9);
    EXPECT_NEAR(record.Longitude(), -11.516666666666667, 1e-9);
    for (const char hemisphere : {'\0', 'S'}) {
        record.rmc.latHemisphere = hemisphere;
        EXPECT_NEAR(record.Latitude(), -48.1173, 1e-9);
    }
    for (const auto& [type, value] : {std::pair{'2', 2.0}, {'3', 3.0}, {'4', 1.0}, {'\0', 1.0}}) {
        record.gsa.fixType = type;
        EXPECT_EQ(record.FixType(), value);
    }

    // A position outside the world is no valid fix.
    record.rmc.status = 'A';
    for (const auto& [latitude, longitude, valid] : {std::tuple{"9000.0000", "18000.0000", 1},
                                                     {"9999.9999", "01131.000", 0},
                                                     {"4807.038", "18000.0001", 0},
                                                     {"4807.038", "99959.999", 0}}) {
        std::strcpy(record.rmc.latitude, latitude);
        std::strcpy(record.rmc.longitude, longitude);
        EXPECT_EQ(ReadNmeaFix(record).fixValid, valid) << latitude << ' ' << longitude;
    }
}

TEST(NmeaAccessorTest, FixTimeIsTheLocalTimeOfAPossibleDate) {
    const auto fixTime = [](const char* time, const char* date) {
        NmeaRecord record{};
        std::strcpy(record.rmc.utcTime, time);
        std::strcpy(record.rmc.date, date);
        return record.FixLocalTime();
    };
    // The century is always 20; the digits behind the point are taken as
    // they stand.
    EXPECT_EQ(fixTime("123519", "230394"), LocalTime({2094, 3, 23, 12, 35, 19, 0}));
    EXPECT_EQ(fixTime("235959.5", "311299"), LocalTime({2099, 12, 31, 23, 59, 59, 5}));
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

std::vector<int> Counts(const NmeaParseStats& stats) {
    return {
        stats.rmc, stats.gga, stats.gsa, stats.gsv, stats.checksumFailures, stats.brokenSentences};
}

TEST(NmeaCaptureTest, ReceiverCapturesParseAloneAndThroughThePortReaderBufferAlike) {
    for (const CaptureCase& capture : kCaptures) {
        SCOPED_TRACE(capture.name);
        const std::string text = Capture(capture.name);
        ASSERT_FALSE(text.empty());
        Parser whole;
        const std::string tail = whole.Parse(text);
        EXPECT_EQ(Counts(whole.stats), Counts(capture.expected));

        // Reads of one byte, of a serial line at 4800 baud in 200 ms and of
        // the largest read, parsed at different paces.
        for (const auto& [readSize, readsPerParse] :
             {std::pair<std::size_t, int>{1, 7}, {97, 5}, {1024, 1}}) {
            Parser fed;
            PortReaderFeed feed(fed.record, fed.paging, &fed.stats);
            feed.ReadAll(text.data(), text.size(), readSize, readsPerParse);
            EXPECT_EQ(Counts(fed.stats), Counts(capture.expected));
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
    // Altitude, course, satellites in view and used, PDOP, HDOP, VDOP, fix type.
    EXPECT_EQ(std::vector<double>({fix.altitude, fix.course, double(fix.satellitesInView),
                                   double(fix.satellitesUsed), fix.pdop, fix.hdop, fix.vdop,
                                   fix.fixType}),
              std::vector<double>({60.2, 181.39, 12, 7, 1.9, 1.1, 1.6, 3}));
    const int prns[kMaxSatellites] = {1, 2, 3, 6, 8, 13, 17, 20, 24, 26, 28, 30};
    EXPECT_TRUE(std::equal(std::begin(prns), std::end(prns), fix.satPrn));
    // PRN 17: elevation 71, azimuth 207, 31 dB-Hz; PRN 2 is not tracked.
    EXPECT_EQ(fix.satElevation[6], 71);
    EXPECT_EQ(fix.satAzimuth[6], 207);
    EXPECT_EQ(fix.satSnr[6], 31);
    EXPECT_EQ(fix.satSnr[1], 0);
    EXPECT_EQ(fix.fixTime, LocalTime({2014, 12, 31, 3, 7, 43, 0}));

    // The milliseconds of a fix: gpsd reads 10:50:37.800Z from myguide-3100,
    // whose digits ".80" are taken as they stand.
    Parser haicom;
    haicom.Parse(Capture("haicom-305N.log"));
    EXPECT_EQ(ReadNmeaFix(haicom.record).fixTime, LocalTime({2007, 4, 8, 9, 54, 15, 787}));
    Parser myguide;
    myguide.Parse(Capture("myguide-3100.log"));
    EXPECT_EQ(ReadNmeaFix(myguide.record).fixTime, LocalTime({2009, 10, 8, 10, 50, 37, 80}));

    // A capture without a fix still carries its last position and satellites.
    Parser garmin;
    EXPECT_EQ(garmin.Parse(Capture("GPSmap-76S.log")).rfind("$GPGLL,", 0), 0u);
    fix = ReadNmeaFix(garmin.record);
    EXPECT_EQ(fix.fixValid, 0);
    EXPECT_NEAR(fix.latitude, 38.908478333, 1e-9);
    EXPECT_NEAR(fix.longitude, -77.440871667, 1e-9);
    EXPECT_EQ(fix.satPrn[9], 28);
    EXPECT_EQ(fix.satPrn[10], 0);

    // beidou-gb sends 21 GPS satellites in six messages and, meanwhile, the
    // BeiDou satellites with three-digit numbers under its own talker.
    Parser beidou;
    beidou.Parse(Capture("beidou-gb.log"));
    for (const int prn : Prns(beidou.record)) EXPECT_LT(prn, 33);
}

TEST(NmeaCaptureTest, ACorruptColdStartCaptureLeavesEveryFieldTerminated) {
    // gp-320fw sends fragments, glued sentences, bad checksums and zero bytes
    // after its cold start.
    // Both readings see the same stream.
    const std::string text = Capture("gp-320fw-2019-04-07-coldboot.log");
    for (const NmeaTalkers talkers : {NmeaTalkers::kGpOnly, NmeaTalkers::kMultiGnss}) {
        Parser parser;
        PortReaderFeed feed(parser.record, parser.paging, &parser.stats, talkers);
        feed.ReadAll(text.data(), text.size(), 64, 3);
        EXPECT_GT(parser.stats.checksumFailures, 0);
        EXPECT_GT(parser.stats.zeroBytes, 0);
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
}

std::vector<int> Snrs(const NmeaRecord& record) {
    std::vector<int> snrs;
    for (int i = 0; i < kMaxSatellites; ++i) snrs.push_back(record.SatelliteSnr(i));
    return snrs;
}

// A u-blox M9 sends its position as GN and the satellites of four systems
// (16 GPS, 10 GLONASS, 10 Galileo, 7 BeiDou) under their own talkers.
TEST(NmeaMultiGnssTest, TheStrongestTwelveOfEverySystemFillTheTableInArrivalOrder) {
    const std::string capture =
        testing::ReadFileBytes(testing::TestDataFile("gnss/ublox-neo-m9n-nmea.log"));
    const std::size_t first = capture.find("$GNRMC");
    const std::string epoch = capture.substr(first, capture.find("$GNRMC", first + 1) - first);
    Parser gpOnly;
    gpOnly.Parse(epoch);
    EXPECT_EQ(gpOnly.stats.rmc, 0);
    EXPECT_FALSE(gpOnly.record.IsFixValid());

    Parser parser;
    parser.talkers = NmeaTalkers::kMultiGnss;
    parser.Parse(epoch);
    EXPECT_EQ(Counts(parser.stats), (std::vector<int>{1, 1, 4, 12, 0, 0}));
    EXPECT_TRUE(parser.record.IsFixValid());
    EXPECT_NEAR(parser.record.Latitude(), 38.110494, 1e-6);
    EXPECT_EQ(parser.record.SatellitesUsed(), 12);
    EXPECT_EQ(parser.record.SatellitesInView(), 43);
    // Signal strengths 39 tie for the last three places: the earliest win.
    EXPECT_EQ(Prns(parser.record),
              (std::vector<int>{18, 29, 44, 46, 51, 67, 68, 82, 3, 5, 27, 32}));
    EXPECT_EQ(Snrs(parser.record),
              (std::vector<int>{39, 43, 45, 43, 43, 40, 44, 39, 40, 39, 44, 44}));

    // Any other kept sentence ends the round; a satellite sent for two
    // signals counts once, with the stronger, and SBAS 120 is not GPS 12
    // though the table keeps two digits of each; an unfinished sequence
    // leaves the table as the last complete one wrote it.
    parser.Parse(kGga);
    parser.Parse(NmeaSentence("GPGSV,1,1,03,07,10,100,30,09,20,200,,120,30,300,33,1"));
    parser.Parse(NmeaSentence("GPGSV,1,1,03,07,10,100,20,09,20,200,25,12,40,050,41,8"));
    parser.Parse(NmeaSentence("GLGSV,2,1,05,65,10,100,50,66,10,100,50,67,10,100,50,68,10,100,50"));
    EXPECT_EQ(parser.record.SatellitesInView(), 4);
    EXPECT_EQ(Prns(parser.record), (std::vector<int>{7, 9, 12, 12, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(Snrs(parser.record), (std::vector<int>{30, 25, 33, 41, 0, 0, 0, 0, 0, 0, 0, 0}));

    // Each talker's checksum counts its own letters.
    std::string relabelled =
        NmeaSentence("GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W");
    relabelled[2] = 'L';
    parser.Parse(relabelled);
    EXPECT_EQ(parser.stats.checksumFailures, 1);
}

}  // namespace
}  // namespace tolvane
