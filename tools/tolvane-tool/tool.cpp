#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <ostream>
#include <sstream>

#include "tools/tolvane-tool/commands.h"

namespace tolvane::tool {

std::string UsageText() {
    return "Usage: tolvane-tool COMMAND [ARGUMENTS]\n"
           "\n"
           "Commands:\n"
           "  options reset FILE        write the default settings record to FILE\n"
           "  options dump FILE         print every field of a settings record as JSON\n"
           "  lang compile SOURCE OUT   compile a language source table into a language file\n"
           "  lang dump FILE            print a language file as a source table\n"
           "  --help                    show this text\n";
}

int RunTool(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    if (arguments.size() < 2) {
        err << UsageText();
        return kExitUsage;
    }
    const std::string& command = arguments[1];
    const Arguments rest(arguments.begin() + 2, arguments.end());
    if (command == "--help" || command == "-h" || command == "help") {
        out << UsageText();
        return kExitOk;
    }
    if (command == "options") return RunOptionsCommand(rest, out, err);
    if (command == "lang") return RunLangCommand(rest, out, err);
    err << "tolvane-tool: unknown command '" << command << "'\n\n" << UsageText();
    return kExitUsage;
}

bool ReadTextFile(const std::string& path, std::string& content, std::ostream& err) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream buffer;
    if (in) buffer << in.rdbuf();
    if (!in || in.bad()) {
        err << "tolvane-tool: cannot read " << path << ": " << std::strerror(errno) << '\n';
        return false;
    }
    content = buffer.str();
    return true;
}

bool WriteTextFile(const std::string& path, const std::string& content, std::ostream& err) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (out) out.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (out) out.flush();
    if (!out) {
        err << "tolvane-tool: cannot write " << path << ": " << std::strerror(errno) << '\n';
        return false;
    }
    return true;
}

}  // namespace tolvane::tool
