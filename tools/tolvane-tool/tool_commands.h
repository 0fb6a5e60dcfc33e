#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace tolvane::tool {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailure = 1;  // a file could not be read or written
inline constexpr int kExitUsage = 2;    // the arguments were wrong

using Arguments = std::vector<std::string>;

// Each command gets the arguments after its own name.
int RunOptionsCommand(const Arguments& arguments, std::ostream& out, std::ostream& err);
int RunLangCommand(const Arguments& arguments, std::ostream& out, std::ostream& err);
int RunReplayCommand(const Arguments& arguments, std::ostream& out, std::ostream& err);
int RunWatchCommand(const Arguments& arguments, std::ostream& out, std::ostream& err);

// The whole tool: argv[0] is the program name.
int RunTool(const Arguments& arguments, std::ostream& out, std::ostream& err);

// The usage text printed by --help and after a wrong argument.
std::string UsageText();

// Reads or writes a whole file; on failure err is told which file and why.
// A file longer than maxBytes is refused once maxBytes + 1 bytes have come,
// so that a device without end (/dev/zero) is never read whole. A regular
// file is written as a new file beside it that then replaces it, so that a
// full disk leaves the old file as it was.
bool ReadTextFile(const std::string& path, std::size_t maxBytes, std::string& content,
                  std::ostream& err);
bool WriteTextFile(const std::string& path, const std::string& content, std::ostream& err);

// Tells err that path could not be read and why (errno); returns false.
bool ReportUnreadable(const std::string& path, std::ostream& err);

}  // namespace tolvane::tool
