#pragma once

#include <cstdint>
#include <string>

#include "core/gps/serial_device.h"

namespace tolvane {

// What GPS Setup has heard from a receiver so far: only sentences whose
// checksum is right count, so line noise at a wrong baud rate never looks
// like a receiver.
struct NmeaListenSummary {
    int sentences = 0;
    int badChecksums = 0;
    std::string lastSentence;  // "$GPRMC"
    std::int64_t lastMilliseconds = 0;
    // The fix sentences (RMC, GGA) by talker: the port source reads GP only,
    // and a receiver that sends its fix as GN, GL, GA, GB or GQ gives no fix
    // there, even when its satellites of the GPS system come as GPGSV.
    int gpsTalkerSentences = 0;
    int otherGnssTalkerSentences = 0;
    std::string otherTalker;  // "GN", the last one heard
};

// What GPS Setup's probe of a device has found so far.
struct ProbeStatus {
    NmeaListenSummary summary;
    std::uint32_t baudRate = 0;  // the rate being listened at
    bool searching = false;      // "Auto" is still trying rates
    bool exhausted = false;      // "Auto" tried every rate and heard no NMEA
    DeviceProblem problem;       // the device vanished or cannot be read
};

// Splits the received bytes into lines and checks each as an NMEA 0183
// sentence. Overlong lines are dropped, so random bytes cost nothing.
class NmeaListener {
  public:
    void Feed(const char* bytes, int count, std::int64_t nowMilliseconds);
    const NmeaListenSummary& Summary() const { return summary_; }
    void Reset() { *this = NmeaListener(); }

  private:
    void TakeLine(std::int64_t nowMilliseconds);

    NmeaListenSummary summary_;
    std::string line_;
};

// True when the sentence "$TTSSS,...*HH" (without its line end) carries a
// checksum that matches its text.
bool HasGoodNmeaChecksum(const std::string& sentence);

// A receiver that sends its fix only as GN, GL, GA, GB or GQ, never as GP.
bool TalksOnlyOtherGnss(const NmeaListenSummary& summary);

}  // namespace tolvane
