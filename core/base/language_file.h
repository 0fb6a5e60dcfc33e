#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane {

// A language file holds a few hundred short texts; a file or a source
// larger than this is none, and is refused before it is read whole.
inline constexpr std::size_t kMaxLanguageFileBytes = 4 << 20;

struct LanguageEntry {
    std::uint32_t id = 0;
    std::string text;  // UTF-8
};

// Decodes the binary language file: records of id, length in UTF-16 code
// units and UTF-16LE text, in file order. Fails on a truncated record or a
// record of length 0; an empty file is a good file with no records.
bool DecodeLanguageFile(std::string_view bytes, std::vector<LanguageEntry>& entries);

// Encodes entries in the order given. Empty texts cannot be stored (a record
// of length 0 spoils the file), so the caller must not pass any.
std::string EncodeLanguageFile(const std::vector<LanguageEntry>& entries);

// The readable source of a language file: one "ID<TAB>TEXT" per line, "#"
// starts a comment line, blank lines are skipped; in TEXT, "\n", "\t" and
// "\\" stand for a line break, a tab and a backslash. On a fault, error says
// which line and why.
bool ParseLanguageSource(std::string_view source, std::vector<LanguageEntry>& entries,
                         std::string& error);

// The source line of one entry, the inverse of ParseLanguageSource.
std::string FormatLanguageSourceLine(const LanguageEntry& entry);

}  // namespace tolvane
