#pragma once

#include <string>
#include <string_view>

namespace tolvane {

// Text is UTF-8 in memory. The persisted wide fields (Options.dat, the
// language file) are UTF-16LE, and the program's text files are written in
// Windows-1252, so conversions happen only at those boundaries.

// Malformed UTF-8 becomes U+FFFD.
std::u16string Utf8ToUtf16(std::string_view text);
// Unpaired surrogates become U+FFFD.
std::string Utf16ToUtf8(std::u16string_view text);

// Characters that Windows-1252 lacks become '?'.
std::string Utf8ToWindows1252(std::string_view text);
// The five bytes Windows-1252 leaves undefined map to the C1 controls, as
// Windows itself does, so every byte reads back as some character.
std::string Windows1252ToUtf8(std::string_view text);

// Cuts UTF-8 text to at most maxUnits UTF-16 code units without splitting a
// character; the limits of the wide fields count code units.
std::string TruncateToUtf16Units(std::string_view text, std::size_t maxUnits);

}  // namespace tolvane
