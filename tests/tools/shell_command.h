#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

namespace tolvane::testing {

// What a shell command printed on its standard output and how it ended.
struct ShellResult {
    int exitCode = -1;  // -1 when it did not exit normally
    std::string output;
};

// Runs command through the shell; add "2>&1" to catch its errors too.
inline ShellResult RunShell(const std::string& command) {
    ShellResult result;
    std::FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return result;
    char buffer[4096];
    for (std::size_t read; (read = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) {
        result.output.append(buffer, read);
    }
    const int status = pclose(pipe);
    if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
    return result;
}

inline std::string Quoted(const std::string& path) {
    return "'" + path + "'";
}

inline bool IsWellFormedXml(const std::string& path) {
    return RunShell(Quoted(TOLVANE_XMLLINT_PROGRAM) + " --noout " + Quoted(path) + " 2>&1")
               .exitCode == 0;
}

// gpsbabel's unicsv output of a file: one row per point, the header left out.
inline std::vector<std::string> GpsbabelRows(const std::string& arguments,
                                             const std::string& path) {
    const ShellResult result = RunShell(Quoted(TOLVANE_GPSBABEL_PROGRAM) + " " + arguments +
                                        " -f " + Quoted(path) + " -o unicsv -F - 2>&1");
    EXPECT_EQ(result.exitCode, 0) << result.output;
    std::vector<std::string> rows;
    std::istringstream lines(result.output);
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        rows.push_back(line);
    }
    return rows;
}

}  // namespace tolvane::testing
