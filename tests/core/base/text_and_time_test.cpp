#include <gtest/gtest.h>

#include "core/base/file_time.h"
#include "core/base/text_encoding.h"

namespace tolvane {
namespace {

TEST(TextEncodingTest, RoundTripsAndReplacesWhatCannotBeKept) {
    const std::string text = "Grüße € 𝄞";
    EXPECT_EQ(Utf16ToUtf8(Utf8ToUtf16(text)), text);
    EXPECT_EQ(Utf8ToUtf16("𝄞").size(), 2u);
    EXPECT_EQ(Utf8ToUtf16("\xC3"), u"\uFFFD");  // cut multi-byte sequence
    EXPECT_EQ(Utf16ToUtf8(std::u16string(1, char16_t(0xD800))), "\xEF\xBF\xBD");

    EXPECT_EQ(Utf8ToWindows1252("Grüße €"),
              "Gr\xFC\xDF"
              "e \x80");
    EXPECT_EQ(Utf8ToWindows1252("✓"), "?");
    EXPECT_EQ(Windows1252ToUtf8("\x80\x81\xE9"), "€\xC2\x81é");

    EXPECT_EQ(TruncateToUtf16Units("ab𝄞c", 3), "ab");
    EXPECT_EQ(TruncateToUtf16Units("ab𝄞c", 4), "ab𝄞");
}

TEST(FileTimeTest, ConvertsCivilTimesBothWaysAndRejectsImpossibleOnes) {
    const CivilTime civil{2011, 7, 4, 9, 30, 15, 250};
    const std::optional<FileTime> time = CivilToFileTime(civil);
    ASSERT_TRUE(time.has_value());
    // 2011-07-04 09:30:15.250 UTC is Unix time 1309771815.25.
    EXPECT_EQ(*time, (1309771815LL + 11644473600LL) * 10'000'000 + 2'500'000);
    EXPECT_EQ(CivilToFileTime(FileTimeToCivil(*time)), time);

    EXPECT_FALSE(CivilToFileTime({2019, 13, 1, 0, 0, 0, 0}));
    EXPECT_FALSE(CivilToFileTime({2019, 2, 29, 0, 0, 0, 0}));
    EXPECT_TRUE(CivilToFileTime({2020, 2, 29, 0, 0, 0, 0}));
    EXPECT_FALSE(CivilToFileTime({2019, 1, 1, 32, 25, 0, 0}));
}

}  // namespace
}  // namespace tolvane
