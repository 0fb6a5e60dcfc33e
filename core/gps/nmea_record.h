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
static_assert(offsetof(NmeaSatellite, snr) == 16);

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

// Follows a multi-message GSV sequence between calls of the parser.
struct GsvPaging {
    char totalMessages = 0;  // zero when no sequence is under way
    char messageNumber = 0;
    std::int32_t nextIndex = 0;
};

// What one call of the parser saw; for the tool's summaries and tests.
struct NmeaParseStats {
    int rmc = 0;
    int gga = 0;
    int gsa = 0;
    int gsv = 0;
    int checksumFailures = 0;  // a kept sentence whose checksum did not match
    int brokenSentences = 0;   // a kept sentence cut short by a new '$'
};

// Parses every complete GPRMC, GPGGA, GPGSA and GPGSV sentence of the
// zero-terminated text into record and returns a pointer to the '$' where
// the unfinished or unconsumed tail begins, or null when nothing of text has
// to be kept. One pass, no allocation. stats, when given, is added to.
const char* ParseNmeaBuffer(NmeaRecord& record, GsvPaging& paging, const char* text,
                            NmeaParseStats* stats = nullptr);

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
// result of ReadNmeaFix. A satellite's number, elevation and azimuth seldom
// change from one second to the next, and converting them is most of the
// reading: their values are kept with the text they came from and converted
// again only when that text changed.
class NmeaFixReader {
  public:
    GpsFix Read(const NmeaRecord& record);

  private:
    // The text of the number, elevation and azimuth, which begin a
    // satellite's record, and their values. All-zero text is three empty
    // fields, whose values are zero.
    struct KeptSatellite {
        char text[16] = {};
        std::int32_t prn = 0;
        double elevation = 0;
        double azimuth = 0;
    };
    KeptSatellite satellites_[kMaxSatellites];
};

}  // namespace tolvane
