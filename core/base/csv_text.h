#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/dynamic_list.h"

namespace tolvane {

// The pieces the comma-separated files of the program (track logs, waypoint,
// POI and destination files) are written and read with.

// Lines longer than this are cut to it: no line the program writes comes
// near it, and a file that is not text cannot make the readers hold it all.
inline constexpr std::size_t kMaxCsvLineBytes = 64 * 1024;

// A file of the C library that closes itself.
struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePointer = std::unique_ptr<std::FILE, FileCloser>;

// printf-style formatting into a string of whatever length the text needs.
// The files need "." as the decimal point of %f, so the program keeps the C
// library's numeric locale at "C" (the window's toolkit must not change it).
std::string FormatText(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Calls onLine for every non-empty line of the file, bytes as stored. CR and
// LF both end a line, so CR LF, LF and CR files all read. False when the file
// can't be opened.
bool ReadTextLines(const std::string& path, const std::function<void(std::string_view)>& onLine);

// As ReadTextLines, with the share of the file read so far (0 to 1) beside
// each line, for a reader that shows progress; the read ends early where
// onLine returns false.
bool ReadTextLinesWhile(const std::string& path,
                        const std::function<bool(std::string_view line, double shareRead)>& onLine);

// Splits at commas into at most maxColumns columns; the last one keeps the
// rest of the line, commas included.
std::vector<std::string_view> SplitColumns(std::string_view line, std::size_t maxColumns);

// A whole column as a number, blanks around it allowed; anything else in the
// column, an empty column or a value out of range gives nullopt. Decimal
// point only, whatever the locale.
std::optional<double> ParseNumber(std::string_view column);
std::optional<std::int32_t> ParseInt32(std::string_view column);

struct CsvReadResult {
    bool opened = false;
    int recordsRead = 0;
    int linesSkipped = 0;
};

// Reads the lines of path into list (appending): parse turns a line into a
// record, or into nullopt for a line that is skipped and counted.
template <typename Record, typename Parse>
CsvReadResult ReadCsvRecords(const std::string& path, DynamicList<Record>& list, Parse parse) {
    CsvReadResult result;
    result.opened = ReadTextLines(path, [&](std::string_view line) {
        const std::optional<Record> record = parse(line);
        if (record) {
            list.Append(*record);
            ++result.recordsRead;
        } else {
            ++result.linesSkipped;
        }
    });
    return result;
}

}  // namespace tolvane
