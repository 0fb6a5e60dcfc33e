// libFuzzer target of the language file's two readers: the binary file the
// program loads at start-up and the readable source the tool compiles. The
// input is given to both.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "core/base/language_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    std::vector<tolvane::LanguageEntry> entries;
    if (tolvane::DecodeLanguageFile(bytes, entries)) {
        // What was read is written back to a file that reads the same.
        std::vector<tolvane::LanguageEntry> kept;
        for (const tolvane::LanguageEntry& entry : entries) {
            if (!entry.text.empty()) kept.push_back(entry);
        }
        std::vector<tolvane::LanguageEntry> again;
        if (!tolvane::DecodeLanguageFile(tolvane::EncodeLanguageFile(kept), again) ||
            again.size() != kept.size()) {
            std::abort();
        }
    }
    std::string error;
    if (tolvane::ParseLanguageSource(bytes, entries, error)) {
        // Every parsed entry formats to a line that parses back to it.
        for (const tolvane::LanguageEntry& entry : entries) {
            std::vector<tolvane::LanguageEntry> line;
            if (!tolvane::ParseLanguageSource(tolvane::FormatLanguageSourceLine(entry), line,
                                              error) ||
                line.size() != 1 || line[0].id != entry.id || line[0].text != entry.text) {
                std::abort();
            }
        }
    } else if (error.empty()) {
        std::abort();
    }
    return 0;
}
