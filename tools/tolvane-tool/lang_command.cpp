#include <ostream>

#include "core/base/language_file.h"
#include "tools/tolvane-tool/tool_commands.h"

namespace tolvane::tool {
namespace {

int Compile(const std::string& sourcePath, const std::string& outPath, std::ostream& err) {
    std::string source, error;
    if (!ReadTextFile(sourcePath, kMaxLanguageFileBytes, source, err)) return kExitFailure;
    std::vector<LanguageEntry> entries;
    if (!ParseLanguageSource(source, entries, error)) {
        err << "tolvane-tool: " << sourcePath << ": " << error << '\n';
        return kExitFailure;
    }
    return WriteTextFile(outPath, EncodeLanguageFile(entries), err) ? kExitOk : kExitFailure;
}

int Dump(const std::string& path, std::ostream& out, std::ostream& err) {
    std::string bytes;
    if (!ReadTextFile(path, kMaxLanguageFileBytes, bytes, err)) return kExitFailure;
    std::vector<LanguageEntry> entries;
    if (!DecodeLanguageFile(bytes, entries)) {
        err << "tolvane-tool: " << path
            << ": not a language file (a record is truncated or has length 0)\n";
        return kExitFailure;
    }
    for (const LanguageEntry& entry : entries) out << FormatLanguageSourceLine(entry) << '\n';
    return kExitOk;
}

}  // namespace

int RunLangCommand(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    if (arguments.size() == 3 && arguments[0] == "compile") {
        return Compile(arguments[1], arguments[2], err);
    }
    if (arguments.size() == 2 && arguments[0] == "dump") return Dump(arguments[1], out, err);
    err << "tolvane-tool: lang needs 'compile SOURCE OUT' or 'dump FILE'\n\n" << UsageText();
    return kExitUsage;
}

}  // namespace tolvane::tool
