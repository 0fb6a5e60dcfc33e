#pragma once

#include <cstddef>
#include <string>

namespace tolvane {

inline constexpr int kWholeFileRetryMilliseconds = 200;

// Reads exactly size bytes of path into buffer, trying to open the file up
// to attempts times, 200 ms apart. The buffer is touched only when all size
// bytes were read. Returns 1 on success, 0 on failure; lastError receives the
// system error of the last failed open when given.
int ReadWholeFile(const std::string& path, void* buffer, std::size_t size, int attempts,
                  int* lastError = nullptr);

// The name a whole-file write writes to before it renames the file into
// place: path with this added.
inline constexpr char kWholeFileTemporarySuffix[] = ".new";

// Writes size bytes at the start of path, creating the file when missing and
// never truncating it (the records written this way are always one size).
// The file is written whole under a temporary name and renamed over path,
// so that a write cut short leaves the old file; the temporary file does
// not outlive a failed write.
int WriteWholeFile(const std::string& path, const void* buffer, std::size_t size, int attempts,
                   int* lastError = nullptr);

}  // namespace tolvane
