#pragma once

#include <cstddef>
#include <string>

#include "headless/port_run.h"
#include "tools/tolvane-tool/tool_commands.h"

namespace tolvane::tool {

// Handles the options shared by replay and watch at arguments[index] and
// moves index past them. Returns false when arguments[index] is none of
// them; a missing or bad value sets error.
bool ParseRunOption(const Arguments& arguments, std::size_t& index, headless::RunSettings& settings,
                    std::string& error);

// What is wrong with the combination of the options, empty when nothing is.
std::string CheckRunSettings(const headless::RunSettings& settings);

// The usage lines of the options of replay and watch.
std::string RunOptionsUsage();

// Reads a whole-number argument; false when it is not one.
bool ParseInteger(const std::string& text, long long& value);

}  // namespace tolvane::tool
