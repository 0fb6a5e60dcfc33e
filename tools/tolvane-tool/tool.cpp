#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>

#include "tools/tolvane-tool/commands.h"
#include "tools/tolvane-tool/run_options.h"

namespace tolvane::tool {

std::string UsageText() {
    return "Usage: tolvane-tool COMMAND [ARGUMENTS]\n"
           "\n"
           "Commands:\n"
           "  options reset FILE        write the default settings record to FILE\n"
           "  options dump FILE         print every field of a settings record as JSON\n"
           "  lang compile SOURCE OUT   compile a language source table into a language file\n"
           "  lang dump FILE            print a language file as a source table\n"
           "  replay LOG [OPTIONS]      play a recorded NMEA log through the GPS pipeline, one\n"
           "                            tick per second of the recording; prints a summary\n"
           "  watch --source port --port NAME|PATH --baud N [--seconds S] [--home DIR] [OPTIONS]\n"
           "                            read a live receiver, one tick per second; NAME is a\n"
           "                            port of the port folder (COM0..COM9, GPD1..GPD9)\n"
           "  watch --source gid [--seconds S] [--home DIR] [OPTIONS]\n"
           "                            read the shared GPS service (gpsd, through GID.QX.so\n"
           "                            in the program folder), one tick per second\n"
           "  --help                    show this text\n"
           "\n"
           "Options of replay and watch:\n" +
           RunOptionsUsage();
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
    if (command == "replay") return RunReplayCommand(rest, out, err);
    if (command == "watch") return RunWatchCommand(rest, out, err);
    err << "tolvane-tool: unknown command '" << command << "'\n\n" << UsageText();
    return kExitUsage;
}

bool ReportUnreadable(const std::string& path, std::ostream& err) {
    err << "tolvane-tool: cannot read " << path << ": " << std::strerror(errno) << '\n';
    return false;
}

bool ReadTextFile(const std::string& path, std::string& content, std::ostream& err) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return ReportUnreadable(path, err);
    // Read in large pieces into room made beforehand: a file may be tens of
    // megabytes.
    content.clear();
    std::error_code sizeError;
    const std::uintmax_t size = std::filesystem::file_size(path, sizeError);
    if (!sizeError) content.reserve(size);
    char piece[1 << 16];
    while (in.read(piece, sizeof piece) || in.gcount() > 0) content.append(piece, in.gcount());
    if (in.bad()) return ReportUnreadable(path, err);
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
