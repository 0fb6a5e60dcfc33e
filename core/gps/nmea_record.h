#pragma once

#include <cstddef>
#include <cstdint>

#include "core/base/file_time.h"
#include "core/gps/gps_state.h"

namespace tolvane {

// One satellite of the GSV section, 21 characters with no gaps.
struct NmeaSatellite {
    char prn[3];        // two characters kept: PRN 120 is stored as "12"
    char elevation[6];  // degrees
    char azimuth[7];    // degrees true
    char snr[5];        // dB-Hz; empty when the satellite is not tracked
};
static_assert(sizeof(NmeaSatellite) == 21);

// The parsed NMEA fields as the receiver sent them, in four sections that
// are each cleared by themselves. A text field keeps one character less than
// its array; a single-character field is zero when the receiver left it
// empty. Numbers are made only by the accessors, when the per-second update
// reads the record.
struct NmeaRecord {
    struct Rmc {
        char utcTime[11];   // hhmmss.sss
        char date[7];       // ddmmyy
        char status;        // 'A' valid, 'V' warning
        char latitude[10];  // ddmm.mmmm
        char latHemisphere;
        char longitude[11];  // dddmm.mmmm
        char lonHemisphere;
        char speedKnots[7];
        char course[7];
    } rmc;
    struct Gga {
        char fixQuality;
        char satellitesUsed[3];
        char altitude[10];
        char altitudeUnit;
        char geoidSeparation[10];
        char geoidUnit;
    } gga;
    struct Gsa {
        char hdop[8];
        char pdop[8];
        char vdop[8];
        char fixType;  // '1' no fix, '2' 2D, '3' 3D
    } gsa;
    struct Gsv {
        char satellitesInView[3];
        NmeaSatellite satellites[kMaxSatellites];
    } gsv;

    bool IsFixValid() const;
    double Latitude() const;
    double Longitude() const;
    double SpeedKnots() const;
    double Course() const;
    double Altitude() const;
    int SatellitesUsed() const;
    int SatellitesInView() const;
    int SatellitePrn(int index) const;
    double SatelliteElevation(int index) const;
    double SatelliteAzimuth(int index) const;
    int SatelliteSnr(int index) const;
    double Pdop() const;
    double Hdop() const;
    double Vdop() const;
    double FixType() const;
    // The local file time of the fix; 0 when date and time do not make a
    // calendar time.
    FileTime FixLocalTime() const;
};
static_assert(sizeof(NmeaRecord::Gsv) == 255);
static_assert(offsetof(NmeaRecord::Rmc, latHemisphere) ==
              offsetof(NmeaRecord::Rmc, latitude) + sizeof NmeaRecord::Rmc::latitude);
static_assert(offsetof(NmeaRecord::Rmc, lonHemisphere) ==
              offsetof(NmeaRecord::Rmc, longitude) + sizeof NmeaRecord::Rmc::longitude);

// Which talkers the parser reads. The program reads the GPS talker "GP"
// alone. Receivers that combine satellite systems send their position as
// "GN" and their satellites under each system's own talker; the multi-GNSS
// reading takes GN, GL (GLONASS), GA (Galileo), GB (BeiDou) and GQ (QZSS)
// as if they were GP.
enum class NmeaTalkers : std::uint8_t { kGpOnly, kMultiGnss };

// The talkers of the multi-GNSS setting.
constexpr NmeaTalkers TalkersFor(bool multiGnss) {
    return multiGnss ? NmeaTalkers::kMultiGnss : NmeaTalkers::kGpOnly;
}

// Whether the two characters at talker name a talker that talkers reads.
bool ReadsTalker(NmeaTalkers talkers, const char* talker);

// The most satellites one round of GSV sequences is gathered from; more
// than any receiver has in view.
inline constexpr int kMaxGatheredSatellites = 64;

// The satellites of the multi-GNSS reading's present round of GSV
// sequences, every system's in the order they arrived. A round begins with
// the first GSV sentence behind any other kept sentence.
struct GsvGathering {
    // Tells the satellites apart: the talker and the number as sent, whose
    // third digit the table does not keep (SBAS 120 beside GPS 12).
    static constexpr int kKeyLength = 6;

    bool underWay = false;
    std::int32_t count = 0;
    char keys[kMaxGatheredSatellites][kKeyLength] = {};
    NmeaSatellite satellites[kMaxGatheredSatellites] = {};
};

// Follows a multi-message GSV sequence between calls of the parser.
struct GsvPaging {
    char totalMessages = 0;  // zero when no sequence is under way
    char messageNumber = 0;
    std::int32_t nextIndex = 0;
    GsvGathering gathering;  // the multi-GNSS reading's only
};

// What one call of the parser saw; for the tool's summaries and tests.
struct NmeaParseStats {
    int rmc = 0;
    int gga = 0;
    int gsa = 0;
    int gsv = 0;
    int checksumFailures = 0;  // a kept sentence whose checksum did not match
    int brokenSentences = 0;   // a kept sentence cut short by a new '$'
    int zeroBytes = 0;         // zero bytes the port reader took out of the stream
    // RMC sentences of another talker ($GNRMC, $GLRMC, ...), which are not
    // read, and the talker of the last of them.
    int otherTalkerRmc = 0;
    char otherTalker[3] = {};
};

// Parses every complete GPRMC, GPGGA, GPGSA and GPGSV sentence of the
// zero-terminated text into record and returns a pointer to the '$' where
// the unfinished or unconsumed tail begins, or null when nothing of text has
// to be kept. One pass, no allocation. stats, when given, is added to.
// With kMultiGnss the four sentences of the other satellite talkers are
// read too, and the twelve satellite records are filled from the GSV
// sequences of every system of a round, in the order they arrived: the
// twelve strongest when there are more. A satellite that a system reports
// once for each of its signals is kept once, with its strongest signal.
const char* ParseNmeaBuffer(NmeaRecord& record, GsvPaging& paging, const char* text,
                            NmeaParseStats* stats = nullptr,
                            NmeaTalkers talkers = NmeaTalkers::kGpOnly);

// Each is given the first character behind the sentence's header comma.
void ParseRmc(NmeaRecord& record, const char* fields);
void ParseGga(NmeaRecord& record, const char* fields);
void ParseGsa(NmeaRecord& record, const char* fields);
void ParseGsv(NmeaRecord& record, GsvPaging& paging, const char* fields);

// The received two characters against the computed checksum, upper-case
// hexadecimal only.
bool VerifyNmeaChecksum(int computed, const char* received);

void ClearNmeaRecord(NmeaRecord& record);

// Reads the record through its accessors into a fix, as the per-second update
// does for the port sources.
GpsFix ReadNmeaFix(const NmeaRecord& record);

// Reads the record of one source into a fix, second after second, with the
// result of ReadNmeaFix. Most fields keep their text from one second to the
// next (a satellite's number, elevation and azimuth nearly always, the
// dilutions and often the position too), and converting them is most of the
// reading: each value is kept with the bytes it was converted from and
// converted again only when those bytes changed.
class NmeaFixReader {
  public:
    GpsFix Read(const NmeaRecord& record);

  private:
    // A value and the bytes of the record it was converted from.
    template <typename Value, std::size_t Bytes>
    struct Kept {
        bool filled = false;
        char bytes[Bytes];
        Value value;
    };

    // The number, elevation and azimuth of a satellite, which begin its
    // record.
    struct SatelliteValues {
        std::int32_t prn;
        double elevation;
        double azimuth;
    };

    // The kept value when the bytes at key are those it was converted from,
    // else the value convert gives, kept with them.
    template <typename Value, std::size_t Bytes, typename Convert>
    static Value Keep(Kept<Value, Bytes>& kept, const void* key, Convert convert);

    // Each coordinate is read with its hemisphere, which follows it.
    Kept<double, sizeof NmeaRecord::Rmc::latitude + 1> latitude_;
    Kept<double, sizeof NmeaRecord::Rmc::longitude + 1> longitude_;
    Kept<double, sizeof NmeaRecord::Rmc::speedKnots> speedKnots_;
    Kept<double, sizeof NmeaRecord::Rmc::course> course_;
    Kept<double, sizeof NmeaRecord::Gga::altitude> altitude_;
    Kept<double, sizeof NmeaRecord::Gsa::pdop> pdop_;
    Kept<double, sizeof NmeaRecord::Gsa::hdop> hdop_;
    Kept<double, sizeof NmeaRecord::Gsa::vdop> vdop_;
    Kept<SatelliteValues, offsetof(NmeaSatellite, snr)> satellites_[kMaxSatellites];
    Kept<std::int32_t, sizeof NmeaSatellite::snr> snrs_[kMaxSatellites];
};

}  // namespace tolvane
