#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace tolvane {

// Language selectors of Load: the pair (4, 2) picks the Simplified Chinese
// file, every other pair the English one.
inline constexpr int kLanguageEnglish = 9;
inline constexpr int kSubLanguageEnglishUs = 1;

// All user-visible text by numeric id, read from the binary language file
// "<program>_ENU.dat" beside the program: records of a 32-bit id, a 32-bit
// length in UTF-16 code units (at least 1) and the UTF-16LE text, no header,
// little-endian, until the end of the file.
class CStringManager {
  public:
    static CStringManager& GetInstance();

    // Reads the whole file; any fault (missing, read-only, truncated, a record
    // of length 0) leaves an empty table and returns false. An empty file is
    // a good load with an empty table. A later record replaces an earlier one
    // with the same id.
    bool Load(int primaryLanguage, int subLanguage);

    // The same for the file of a language code ("DEU" reads
    // "<program>_DEU.dat"). The table may be read again while the program
    // runs: callers copy the texts they keep, so none is left dangling.
    bool Load(const std::string& languageCode);

    // The text of id, or null when the table lacks it. The pointer stays
    // valid until the next Load.
    const char* GetString(std::uint32_t id);

    // The text of id, or an empty string.
    std::string GetText(std::uint32_t id);

    std::size_t Count();

    CStringManager(const CStringManager&) = delete;
    CStringManager& operator=(const CStringManager&) = delete;

  private:
    CStringManager();
    ~CStringManager();

    bool LoadFile(const std::string& path);
    bool ReadFile(const std::string& path);

    std::mutex mutex_;
    std::map<std::uint32_t, std::string> strings_;
};

// The text of id from the loaded language file, or the English text built
// into the program when the file lacks it (a missing or damaged file), so
// that a message is never shown empty. Empty only for an id neither has.
std::string LanguageText(std::uint32_t id);

// A language text with each "%s" replaced by the next argument, in order.
std::string FillLanguageText(std::uint32_t id, const std::vector<std::string>& arguments = {});

// The language file's name for a language selector pair.
std::string LanguageFilePath(int primaryLanguage, int subLanguage);

// The language file's name for a language code: "<program>_DEU.dat".
std::string LanguageFilePath(const std::string& languageCode);

}  // namespace tolvane
