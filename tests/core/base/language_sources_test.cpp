// Every language source beside english.txt holds exactly its ids, and each
// text keeps the English text's placeholders in their order, its line
// breaks, its key hint after the tab and its doubled ampersands, which the
// program fills, lays out and shows as they stand.

#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>

#include "core/base/language_file.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

using Texts = std::map<std::uint32_t, std::string>;

Texts ReadSource(const std::string& name, std::vector<std::uint32_t>& duplicates) {
    const std::string source =
        testing::ReadFileBytes(std::string(TOLVANE_SOURCE_DIR) + "/resources/lang/" + name);
    std::vector<LanguageEntry> entries;
    std::string error;
    EXPECT_TRUE(ParseLanguageSource(source, entries, error)) << name << ": " << error;
    Texts texts;
    for (const LanguageEntry& entry : entries) {
        if (!texts.emplace(entry.id, entry.text).second) duplicates.push_back(entry.id);
    }
    return texts;
}

// What a translation must keep of a text: the printf conversions in order,
// the number of line breaks, the text after a tab (a menu's key hint) and
// the number of "&&".
std::string Frame(const std::string& text) {
    static const std::regex kConversion("%[-+ #0-9.]*[a-zA-Z%]");
    std::string frame;
    for (auto it = std::sregex_iterator(text.begin(), text.end(), kConversion);
         it != std::sregex_iterator(); ++it) {
        frame += it->str() + ' ';
    }
    const auto count = [&](const std::string& what) {
        std::size_t n = 0;
        for (std::size_t at = text.find(what); at != std::string::npos;
             at = text.find(what, at + 1))
            ++n;
        return std::to_string(n);
    };
    const std::size_t tab = text.find('\t');
    frame += "| breaks " + count("\n") + " | && " + count("&&") + " | hint ";
    return frame + (tab == std::string::npos ? "-" : text.substr(tab));
}

TEST(LanguageSourcesTest, EveryLanguageHasTheEnglishIdsAndPlaceholders) {
    std::vector<std::uint32_t> duplicates;
    const Texts english = ReadSource("english.txt", duplicates);
    EXPECT_TRUE(duplicates.empty()) << "english.txt repeats id " << duplicates.front();
    ASSERT_GT(english.size(), 250u);
    for (const char* name : {"german.txt", "french.txt", "spanish.txt", "chinese.txt"}) {
        duplicates.clear();
        const Texts translated = ReadSource(name, duplicates);
        for (const std::uint32_t id : duplicates) ADD_FAILURE() << name << " repeats id " << id;
        for (const auto& [id, text] : english) {
            const auto found = translated.find(id);
            if (found == translated.end()) {
                ADD_FAILURE() << name << " lacks id " << id << " (" << text << ")";
            } else {
                EXPECT_EQ(Frame(found->second), Frame(text)) << name << " id " << id;
            }
        }
        for (const auto& [id, text] : translated) {
            EXPECT_TRUE(english.contains(id))
                << name << " has id " << id << " that english.txt lacks";
        }
    }
}

}  // namespace
}  // namespace tolvane
