// libFuzzer target of the NMEA 0183 parser. The input's first three bytes
// choose how the stream is cut into reads and how often it is parsed; the
// rest is the stream the receiver sends.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "core/gps/nmea_record.h"
#include "core/gps/port_reader_feed.h"

namespace {

using tolvane::GsvPaging;
using tolvane::NmeaRecord;

// Every text field ends inside its array, whatever the input was.
template <std::size_t Size>
void CheckTerminated(const char (&field)[Size]) {
    if (field[Size - 1] != '\0') std::abort();
}

void CheckRecord(const NmeaRecord& record) {
    CheckTerminated(record.rmc.utcTime);
    CheckTerminated(record.rmc.date);
    CheckTerminated(record.rmc.latitude);
    CheckTerminated(record.rmc.longitude);
    CheckTerminated(record.rmc.speedKnots);
    CheckTerminated(record.rmc.course);
    CheckTerminated(record.gga.satellitesUsed);
    CheckTerminated(record.gga.altitude);
    CheckTerminated(record.gga.geoidSeparation);
    CheckTerminated(record.gsa.hdop);
    CheckTerminated(record.gsa.pdop);
    CheckTerminated(record.gsa.vdop);
    CheckTerminated(record.gsv.satellitesInView);
    for (const auto& satellite : record.gsv.satellites) {
        CheckTerminated(satellite.prn);
        CheckTerminated(satellite.elevation);
        CheckTerminated(satellite.azimuth);
        CheckTerminated(satellite.snr);
    }
    // The accessors convert whatever the fields hold.
    const tolvane::GpsFix fix = tolvane::ReadNmeaFix(record);
    if (fix.fixType < 1.0 || fix.fixType > 3.0) std::abort();
}

// The whole stream in one call: the tail, when there is one, is a '$' of it.
void ParseWhole(NmeaRecord& record, GsvPaging& paging, const std::string& text,
                tolvane::NmeaTalkers talkers) {
    tolvane::NmeaParseStats stats;
    const char* tail = tolvane::ParseNmeaBuffer(record, paging, text.c_str(), &stats, talkers);
    if (tail != nullptr &&
        (tail < text.c_str() || tail >= text.c_str() + text.size() || *tail != '$')) {
        std::abort();
    }
    CheckRecord(record);
}

// Each sentence parser alone, on any text behind a header comma.
void ParseEachSentence(NmeaRecord& record, GsvPaging& paging, const std::string& text) {
    tolvane::ParseRmc(record, text.c_str());
    tolvane::ParseGga(record, text.c_str());
    tolvane::ParseGsa(record, text.c_str());
    tolvane::ParseGsv(record, paging, text.c_str());
    CheckRecord(record);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kControlBytes = 3;
    if (size < kControlBytes) return 0;
    const std::size_t readSize =
        1 + (data[0] | static_cast<std::size_t>(data[1]) << 8) % tolvane::PortReaderFeed::kMaxRead;
    const int readsPerParse = 1 + data[2] % 8;
    const char* stream = reinterpret_cast<const char*>(data + kControlBytes);
    const std::size_t streamSize = size - kControlBytes;

    // On the heap, so that a write past the record's end is caught.
    auto record = std::make_unique<NmeaRecord>();
    GsvPaging paging;
    tolvane::PortReaderFeed feed(*record, paging);
    feed.ReadAll(stream, streamSize, readSize, readsPerParse);
    CheckRecord(*record);

    const std::string text(stream, streamSize);
    for (const auto talkers : {tolvane::NmeaTalkers::kGpOnly, tolvane::NmeaTalkers::kMultiGnss}) {
        ParseWhole(*record, paging, text, talkers);
    }
    ParseEachSentence(*record, paging, text);
    return 0;
}
