#pragma once

#include <sstream>
#include <string>

#include "tools/tolvane-tool/commands.h"

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

}  // namespace tolvane::tool
