#include "core/base/language_choice.h"

#include <algorithm>
#include <array>

namespace tolvane {
namespace {

constexpr std::array<ShippedLanguage, 5> kShipped = {{
    {kEnglishLanguageCode, "English"},
    {"DEU", "Deutsch"},
    {"FRA", "Français"},
    {"ESP", "Español"},
    {"CHS", "简体中文"},
}};

struct LocaleLanguage {
    std::string_view language;  // ISO 639-1, as locale names begin
    const char* code;
};

constexpr std::array<LocaleLanguage, 5> kLocaleLanguages = {{
    {"de", "DEU"},
    {"fr", "FRA"},
    {"es", "ESP"},
    {"it", "ITA"},
    {"zh", "CHS"},
}};

// Chinese territories and scripts written in Traditional characters.
constexpr std::array<std::string_view, 4> kTraditionalChinese = {"TW", "HK", "MO", "Hant"};

char UpperAscii(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool IsAsciiLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// "zh_TW.UTF-8" is language "zh" and, after the underscore, territory "TW";
// "zh_Hant_TW" (a script before the territory) is read part by part.
bool IsTraditionalChinese(std::string_view rest) {
    rest = rest.substr(0, rest.find_first_of(".@"));
    while (!rest.empty()) {
        const std::size_t underscore = rest.find('_');
        const std::string_view part = rest.substr(0, underscore);
        if (std::find(kTraditionalChinese.begin(), kTraditionalChinese.end(), part) !=
            kTraditionalChinese.end()) {
            return true;
        }
        rest =
            underscore == std::string_view::npos ? std::string_view() : rest.substr(underscore + 1);
    }
    return false;
}

}  // namespace

std::span<const ShippedLanguage> ShippedLanguages() {
    return kShipped;
}

bool IsShippedLanguage(std::string_view code) {
    return std::any_of(kShipped.begin(), kShipped.end(),
                       [&](const ShippedLanguage& language) { return language.code == code; });
}

std::string NormalLanguageCode(std::string_view text) {
    if (text.size() != 3 || !std::all_of(text.begin(), text.end(), IsAsciiLetter)) return {};
    std::string code(text);
    std::transform(code.begin(), code.end(), code.begin(), UpperAscii);
    return code;
}

std::string_view MessagesLocale(std::string_view lcAll, std::string_view lcMessages,
                                std::string_view lang) {
    if (!lcAll.empty()) return lcAll;
    if (!lcMessages.empty()) return lcMessages;
    return lang;
}

std::string LanguageCodeOfLocale(std::string_view locale) {
    const std::size_t end = locale.find_first_of("_.@");
    const std::string_view language = locale.substr(0, end);
    const auto found =
        std::find_if(kLocaleLanguages.begin(), kLocaleLanguages.end(),
                     [&](const LocaleLanguage& entry) { return entry.language == language; });
    if (found == kLocaleLanguages.end()) return kEnglishLanguageCode;
    if (language == "zh" && end != std::string_view::npos && locale[end] == '_' &&
        IsTraditionalChinese(locale.substr(end + 1))) {
        return kEnglishLanguageCode;
    }
    return found->code;
}

std::string ChooseLanguageCode(std::string_view setting, std::string_view environmentCode,
                               std::string_view locale) {
    if (std::string code = NormalLanguageCode(setting); !code.empty()) return code;
    if (std::string code = NormalLanguageCode(environmentCode); !code.empty()) return code;
    return LanguageCodeOfLocale(locale);
}

}  // namespace tolvane
