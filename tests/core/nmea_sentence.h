#pragma once

#include <cstdio>
#include <string>

namespace tolvane::testing {

// Frames a sentence body ("GPRMC,...") as a receiver sends it: "$", the
// body, "*", the checksum in upper-case hexadecimal and CR LF.
inline std::string NmeaSentence(const std::string& body) {
    int checksum = 0;
    for (const char c : body) checksum ^= static_cast<unsigned char>(c);
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X", checksum);
    return "$" + body + "*" + digits + "\r\n";
}

}  // namespace tolvane::testing
