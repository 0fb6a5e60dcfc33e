#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
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
bool ReadTextFile(const std::string& path, std::string& content, std::ostream& err);
bool WriteTextFile(const std::string& path, const std::string& content, std::ostream& err);

// Reads a file a large piece at a time, handing each piece to take, until
// the file ends or take returns false. On failure err is told which file
// and why, as by ReadTextFile.
bool ReadFileInPieces(const std::string& path, const std::function<bool(std::string_view)>& take,
                      std::ostream& err);

}  // namespace tolvane::tool
