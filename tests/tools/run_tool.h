#pragma once

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "tools/tolvane-tool/tool_commands.h"

namespace tolvane::tool {

// What one in-process run of the tool printed and returned.
struct Result {
    int code;
    std::string out;
    std::string err;
};

// Runs the tool with the arguments after its name.
inline Result RunCommand(Arguments arguments) {
    arguments.insert(arguments.begin(), "tolvane-tool");
    std::ostringstream out, err;
    const int code = RunTool(arguments, out, err);
    return {code, out.str(), err.str()};
}

// The ticks printed with --json, one object a line.
inline std::vector<nlohmann::json> JsonLines(const std::string& text) {
    std::vector<nlohmann::json> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(nlohmann::json::parse(line));
    return lines;
}

}  // namespace tolvane::tool
