#include "core/base/string_manager.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "core/app/language_messages.h"
#include "core/base/language_file.h"
#include "tests/core/app/recording_host.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

class StringManagerTest : public ::testing::Test {
  protected:
    void SetUp() override { folder_.UseAsProgramFolder(); }
    void TearDown() override {
        std::filesystem::permissions(Path(), std::filesystem::perms::owner_all, error_);
    }

    std::string Path() const { return folder_.File("tolvane_ENU.dat"); }
    void Write(const std::string& bytes) const { testing::WriteFileBytes(Path(), bytes); }
    bool Load() const {
        return CStringManager::GetInstance().Load(kLanguageEnglish, kSubLanguageEnglishUs);
    }

    static std::string Record(std::uint32_t id, std::uint32_t length, const std::string& utf16) {
        std::string out;
        for (int i = 0; i < 4; ++i) out += static_cast<char>(id >> (8 * i));
        for (int i = 0; i < 4; ++i) out += static_cast<char>(length >> (8 * i));
        return out + utf16;
    }

    testing::TemporaryFolder folder_;
    std::error_code error_;
};

TEST_F(StringManagerTest, LoadsRecordsAndTheLastDuplicateWins) {
    Write(EncodeLanguageFile({{10000, "Tolvane GPS Utilities"}, {7, "first"}, {7, "Grüße ✓"}}));
    ASSERT_TRUE(Load());
    EXPECT_STREQ(CStringManager::GetInstance().GetString(10000), "Tolvane GPS Utilities");
    EXPECT_STREQ(CStringManager::GetInstance().GetString(7), "Grüße ✓");
    EXPECT_EQ(CStringManager::GetInstance().GetString(8), nullptr);
    EXPECT_EQ(CStringManager::GetInstance().GetText(8), "");
    // An empty file is a good load with no strings.
    Write("");
    EXPECT_TRUE(Load());
    EXPECT_EQ(CStringManager::GetInstance().Count(), 0u);
}

// Every broken file leaves an empty table, even after an earlier good load.
TEST_F(StringManagerTest, BrokenFilesLeaveAnEmptyTable) {
    const std::string good = EncodeLanguageFile({{1, "one"}, {2, "two"}});
    const std::vector<std::pair<const char*, std::string>> cases = {
        {"truncated text", good.substr(0, good.size() - 1)},
        {"truncated id", good + "\x03\x00"},
        {"truncated length", good + std::string("\x03\x00\x00\x00\x01", 5)},
        {"zero length", good + Record(3, 0, "") + EncodeLanguageFile({{4, "four"}})},
    };
    for (const auto& [name, bytes] : cases) {
        Write(good);
        ASSERT_TRUE(Load());
        Write(bytes);
        EXPECT_FALSE(Load()) << name;
        EXPECT_EQ(CStringManager::GetInstance().Count(), 0u) << name;
    }
}

// Without its file a message shows the built-in English and a text the file
// has is the file's; a read-only file, like a missing one, does not load.
TEST_F(StringManagerTest, MissingOrReadOnlyFilesFailAndMessagesFallBackToTheBuiltInEnglish) {
    EXPECT_FALSE(Load());
    testing::RecordingHost host;
    ShowLanguageMessage(host, kTextGpsDisconnected, MessageIcon::kStop);
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(host.messages[0].text, "The GPS receiver was disconnected. GPS has been stopped.");
    EXPECT_EQ(host.messages[0].caption, "Tolvane GPS Utilities");
    Write(EncodeLanguageFile({{kTextGpsDisconnected, "Lost."}}));
    ASSERT_TRUE(Load());
    EXPECT_EQ(LanguageText(kTextGpsDisconnected), "Lost.");
    std::filesystem::permissions(
        Path(), std::filesystem::perms::owner_read | std::filesystem::perms::group_read);
    EXPECT_FALSE(Load());
    EXPECT_EQ(CStringManager::GetInstance().Count(), 0u);
}

TEST(LanguageSourceTest, ParsesEscapesAndReportsTheBadLine) {
    std::vector<LanguageEntry> entries;
    std::string error;
    ASSERT_TRUE(
        ParseLanguageSource("# comment\r\n\n10\tA\\tB\\nC\\\\\r\n11\tx\r\r\n", entries, error));
    ASSERT_EQ(entries.size(), 2u);
    // Every carriage return at a line's end goes, so the text formats to a
    // line that reads back the same.
    EXPECT_EQ(entries[1].text, "x");
    EXPECT_EQ(entries[0].text, "A\tB\nC\\");
    EXPECT_EQ(FormatLanguageSourceLine(entries[0]), "10\tA\\tB\\nC\\\\");

    EXPECT_FALSE(ParseLanguageSource("1\tok\n2 no tab\n", entries, error));
    EXPECT_EQ(error, "line 2: expected an id, a tab and a text");
    for (const char* bad : {"x1\tbad id\n", "1\tbad \\q\n", "1\t\n"}) {
        EXPECT_FALSE(ParseLanguageSource(bad, entries, error)) << bad;
    }
    EXPECT_EQ(error, "line 1: the text is empty");
}

}  // namespace
}  // namespace tolvane
