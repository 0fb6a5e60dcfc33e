#include "core/base/string_manager.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "core/base/debug_trace.h"
#include "core/base/language_choice.h"
#include "core/base/language_file.h"
#include "core/base/program_paths.h"

namespace tolvane {
namespace {

// A file without any write permission is the read-only file of the system
// it comes from, which the string manager refuses because it opens the file
// for reading and writing. Checking the bits keeps that true for root too.
bool IsReadOnly(const std::string& path) {
    std::error_code error;
    const auto permissions = std::filesystem::status(path, error).permissions();
    if (error) return false;
    using std::filesystem::perms;
    return (permissions & (perms::owner_write | perms::group_write | perms::others_write)) ==
           perms::none;
}

// The English texts of resources/lang/english.txt, built in.
std::map<std::uint32_t, std::string> ParseBuiltInEnglish() {
    static constexpr char kSource[] =
#include "core/base/english_source.inc"
        ;
    std::vector<LanguageEntry> entries;
    std::string error;
    ParseLanguageSource(kSource, entries, error);
    std::map<std::uint32_t, std::string> texts;
    for (LanguageEntry& entry : entries) texts[entry.id] = std::move(entry.text);
    return texts;
}

}  // namespace

std::string FillLanguageText(std::uint32_t id, const std::vector<std::string>& arguments) {
    std::string text = LanguageText(id);
    std::size_t from = 0;
    for (const std::string& argument : arguments) {
        const std::size_t place = text.find("%s", from);
        if (place == std::string::npos) break;
        text.replace(place, 2, argument);
        from = place + argument.size();
    }
    return text;
}

std::string LanguageText(std::uint32_t id) {
    std::string text = CStringManager::GetInstance().GetText(id);
    if (!text.empty()) return text;
    static const std::map<std::uint32_t, std::string> kEnglish = ParseBuiltInEnglish();
    const auto found = kEnglish.find(id);
    return found != kEnglish.end() ? found->second : std::string();
}

std::string LanguageFilePath(int primaryLanguage, int subLanguage) {
    const bool chinese = primaryLanguage == 4 && subLanguage == 2;
    return LanguageFilePath(chinese ? "CHS" : kEnglishLanguageCode);
}

std::string LanguageFilePath(const std::string& languageCode) {
    return ProgramFileWithSuffix("_" + languageCode + ".dat");
}

CStringManager& CStringManager::GetInstance() {
    static CStringManager instance;
    return instance;
}

CStringManager::CStringManager() {
    DebugTrace("CStringManager()\n");
}

CStringManager::~CStringManager() {
    DebugTrace("~CStringManager()\n");
}

bool CStringManager::Load(int primaryLanguage, int subLanguage) {
    return LoadFile(LanguageFilePath(primaryLanguage, subLanguage));
}

bool CStringManager::Load(const std::string& languageCode) {
    return LoadFile(LanguageFilePath(languageCode));
}

bool CStringManager::LoadFile(const std::string& path) {
    std::lock_guard<std::mutex> lock(mutex_);
    strings_.clear();
    if (ReadFile(path)) return true;
    strings_.clear();
    return false;
}

bool CStringManager::ReadFile(const std::string& path) {
    if (IsReadOnly(path)) return false;
    std::fstream in(path, std::ios::in | std::ios::out | std::ios::binary);
    if (!in) return false;
    const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (in.bad()) return false;
    std::vector<LanguageEntry> entries;
    if (!DecodeLanguageFile(bytes, entries)) return false;
    for (LanguageEntry& entry : entries) strings_[entry.id] = std::move(entry.text);
    return true;
}

const char* CStringManager::GetString(std::uint32_t id) {
    std::lock_guard<std::mutex> lock(mutex_);
    const auto it = strings_.find(id);
    return it == strings_.end() ? nullptr : it->second.c_str();
}

std::string CStringManager::GetText(std::uint32_t id) {
    const char* text = GetString(id);
    return text == nullptr ? std::string() : std::string(text);
}

std::size_t CStringManager::Count() {
    std::lock_guard<std::mutex> lock(mutex_);
    return strings_.size();
}

}  // namespace tolvane
