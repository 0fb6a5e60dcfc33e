#include "core/base/language_choice.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(LanguageChoiceTest, TheLocaleNamesItsLanguage) {
    const std::pair<const char*, const char*> table[] = {
        {"de_DE.UTF-8", "DEU"},
        {"de_AT", "DEU"},
        {"de_CH.utf8@euro", "DEU"},
        {"de", "DEU"},
        {"fr_FR.UTF-8", "FRA"},
        {"fr_CA", "FRA"},
        {"es_ES.UTF-8", "ESP"},
        {"es_MX", "ESP"},
        {"it_IT.UTF-8", "ITA"},
        {"zh_CN.UTF-8", "CHS"},
        {"zh_SG", "CHS"},
        {"zh_Hans", "CHS"},
        {"zh_Hans_CN", "CHS"},
        {"zh", "CHS"},
        {"zh_TW.UTF-8", "ENU"},
        {"zh_HK", "ENU"},
        {"zh_Hant_TW", "ENU"},
        {"zh_MO.UTF-8", "ENU"},
        {"C", "ENU"},
        {"POSIX", "ENU"},
        {"C.UTF-8", "ENU"},
        {"", "ENU"},
        {"en_US.UTF-8", "ENU"},
        {"en_GB", "ENU"},
        {"nl_NL.UTF-8", "ENU"},
        {"pt_BR", "ENU"},
        {"dex_DE", "ENU"},
        {"DE_DE", "ENU"},
        {"fr_FR@euro", "FRA"},
        {"es.UTF-8", "ESP"},
    };
    for (const auto& [locale, code] : table) {
        EXPECT_EQ(LanguageCodeOfLocale(locale), code) << locale;
    }
}

// LC_ALL before LC_MESSAGES before LANG, an empty one counting as unset.
TEST(LanguageChoiceTest, TheFirstSetLocaleVariableDecidesUnlessTheSettingOrTheVariableDoes) {
    EXPECT_EQ(MessagesLocale("fr_FR", "de_DE", "es_ES"), "fr_FR");
    EXPECT_EQ(MessagesLocale("", "de_DE", "es_ES"), "de_DE");
    EXPECT_EQ(MessagesLocale("", "", "es_ES"), "es_ES");
    EXPECT_EQ(MessagesLocale("", "", ""), "");

    // The Options entry before TOLVANE_LANGUAGE before the locale; a value
    // that is no code is passed over rather than made into a file name.
    EXPECT_EQ(ChooseLanguageCode("CHS", "FRA", "de_DE.UTF-8"), "CHS");
    EXPECT_EQ(ChooseLanguageCode("", "FRA", "de_DE.UTF-8"), "FRA");
    EXPECT_EQ(ChooseLanguageCode("", "esp", "de_DE.UTF-8"), "ESP");
    EXPECT_EQ(ChooseLanguageCode("", "", "de_DE.UTF-8"), "DEU");
    EXPECT_EQ(ChooseLanguageCode("", "../x", "de_DE.UTF-8"), "DEU");
    EXPECT_EQ(ChooseLanguageCode("", "DEUTSCH", "C"), "ENU");
    EXPECT_EQ(ChooseLanguageCode("", "ITA", "C"), "ITA");
}

}  // namespace
}  // namespace tolvane
