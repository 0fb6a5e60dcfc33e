#pragma once

#include <cstdio>
#include <string>

namespace tolvane {

// A short text printed with a C format, as the views build their lines;
// anything past 127 bytes is cut.
template <typename... Values>
std::string PrintFormat(const char* format, Values... values) {
    char buffer[128];
    std::snprintf(buffer, sizeof buffer, format, values...);
    return buffer;
}

}  // namespace tolvane
