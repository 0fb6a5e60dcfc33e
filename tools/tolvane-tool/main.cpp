#include <iostream>

#include "tools/tolvane-tool/commands.h"

int main(int argc, char** argv) {
    const tolvane::tool::Arguments arguments(argv, argv + argc);
    return tolvane::tool::RunTool(arguments, std::cout, std::cerr);
}
