#include "core/app/startup.h"

#include <gtest/gtest.h>

#include "core/base/language_file.h"
#include "core/base/string_manager.h"
#include "tests/core/app/recording_host.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

TEST(StartupTest, AMissingLanguageFileIsReportedOnceWithTheFixedCaption) {
    testing::TemporaryFolder folder;
    folder.UseAsProgramFolder();
    testing::RecordingHost host;
    EXPECT_FALSE(LoadLanguageStrings(host));
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(host.messages[0].text,
              "Load language file failed!\n\nYour Tolvane GPS Utilities installation may have "
              "been damaged.");
    EXPECT_EQ(host.messages[0].caption, "Tolvane GPS Utilities");
    EXPECT_EQ(CStringManager::GetInstance().GetString(10000), nullptr);

    testing::WriteFileBytes(folder.File("tolvane_ENU.dat"),
                            EncodeLanguageFile({{10000, "Tolvane GPS Utilities"}}));
    EXPECT_TRUE(LoadLanguageStrings(host));
    EXPECT_EQ(host.messages.size(), 1u);
}

}  // namespace
}  // namespace tolvane
