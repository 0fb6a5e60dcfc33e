#include <iostream>

#include "tools/tolvane-tool/tool_commands.h"

int main(int argc, char** argv) {
    const tolvane::tool::Arguments arguments(argv, argv + argc);
    return tolvane::tool::RunTool(arguments, std::cout, std::cerr);
}
