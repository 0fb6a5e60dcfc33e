#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tolvane {

// A language is named by the three letters of its file, "tolvane_DEU.dat":
// ENU English, DEU German, FRA French, ESP Spanish, ITA Italian, CHS
// Chinese (Simplified). English is what every other language falls back to.
inline constexpr char kEnglishLanguageCode[] = "ENU";

// The languages the program ships a file for, each named in itself, in the
// order the Options dialog lists them.
struct ShippedLanguage {
    const char* code;
    const char* ownName;
};
std::span<const ShippedLanguage> ShippedLanguages();
bool IsShippedLanguage(std::string_view code);

// Three ASCII letters, in upper case; an empty text for anything else, so
// that no other text ever becomes part of a file name.
std::string NormalLanguageCode(std::string_view text);

// The locale the desktop asks messages in: the first of LC_ALL,
// LC_MESSAGES and LANG that is set and not empty, as POSIX orders them.
std::string_view MessagesLocale(std::string_view lcAll, std::string_view lcMessages,
                                std::string_view lang);

// The language code of a POSIX locale name, language[_territory][.codeset]
// [@modifier]: de_DE.UTF-8 gives DEU, fr FRA, es ESP, it ITA; Chinese gives
// CHS in its Simplified forms (zh, zh_CN, zh_SG, zh_Hans) and ENU in its
// Traditional ones (zh_TW, zh_HK, zh_MO, zh_Hant), for which no file is
// shipped. "C", "POSIX", an empty name and every other language give ENU.
std::string LanguageCodeOfLocale(std::string_view locale);

// The language the program speaks: the Options dialog's choice when one is
// made, else TOLVANE_LANGUAGE when it holds a code, else the locale's.
std::string ChooseLanguageCode(std::string_view setting, std::string_view environmentCode,
                               std::string_view locale);

}  // namespace tolvane
