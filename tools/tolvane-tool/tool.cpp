#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>

#include "tools/tolvane-tool/run_options.h"
#include "tools/tolvane-tool/tool_commands.h"

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

namespace {

int RunCommand(const Arguments& arguments, std::ostream& out, std::ostream& err) {
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

}  // namespace

int RunTool(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    const int exitCode = RunCommand(arguments, out, err);
    // A script that reads the output must not take a cut one for the whole
    // (standard output on a full disk, a closed pipe).
    if (out.flush()) return exitCode;
    err << "tolvane-tool: cannot write the output: " << std::strerror(errno) << '\n';
    return kExitFailure;
}

bool ReportUnreadable(const std::string& path, std::ostream& err) {
    err << "tolvane-tool: cannot read " << path << ": " << std::strerror(errno) << '\n';
    return false;
}

bool ReadTextFile(const std::string& path, std::size_t maxBytes, std::string& content,
                  std::ostream& err) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return ReportUnreadable(path, err);
    // Read in large pieces into room made beforehand: a file may be tens of
    // megabytes.
    content.clear();
    std::error_code sizeError;
    const std::uintmax_t size = std::filesystem::file_size(path, sizeError);
    if (!sizeError) content.reserve(std::min<std::uintmax_t>(size, maxBytes + 1));
    char piece[1 << 16];
    while (content.size() <= maxBytes &&
           (in.read(piece, std::min<std::size_t>(sizeof piece, maxBytes + 1 - content.size())) ||
            in.gcount() > 0)) {
        content.append(piece, static_cast<std::size_t>(in.gcount()));
    }
    if (in.bad()) return ReportUnreadable(path, err);
    if (content.size() > maxBytes) {
        err << "tolvane-tool: " << path << ": larger than the " << maxBytes
            << " bytes such a file can have\n";
        return false;
    }
    return true;
}

namespace {

bool ReportUnwritable(const std::string& path, std::ostream& err) {
    err << "tolvane-tool: cannot write " << path << ": " << std::strerror(errno) << '\n';
    return false;
}

bool WriteInPlace(const std::string& path, const std::string& content) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (out) out.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (out) out.close();
    return !out.fail();
}

}  // namespace

bool WriteTextFile(const std::string& path, const std::string& content, std::ostream& err) {
    // A device or a pipe (/dev/stdout) is written as it is: it has no old
    // content to keep, and nothing must take its place.
    std::error_code status;
    const std::filesystem::file_type type = std::filesystem::status(path, status).type();
    if (type != std::filesystem::file_type::regular &&
        type != std::filesystem::file_type::not_found) {
        return WriteInPlace(path, content) || ReportUnwritable(path, err);
    }
    const std::string fresh = path + ".new";
    if (!WriteInPlace(fresh, content) || std::rename(fresh.c_str(), path.c_str()) != 0) {
        ReportUnwritable(path, err);
        std::remove(fresh.c_str());
        return false;
    }
    return true;
}

}  // namespace tolvane::tool
