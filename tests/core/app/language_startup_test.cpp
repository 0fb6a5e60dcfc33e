// Which language file start-up reads, with real files in a program folder
// and the environment the program would be started with.

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <optional>

#include "core/app/local_settings.h"
#include "core/app/options_form.h"
#include "core/app/startup.h"
#include "core/base/language_file.h"
#include "core/base/string_manager.h"
#include "tests/core/app/program_fixture.h"

namespace tolvane {
namespace {

constexpr std::uint32_t kMenuKey = 40007;

// Sets the locale variables and TOLVANE_LANGUAGE for one test and puts back
// what the test run had.
class LanguageEnvironment {
  public:
    LanguageEnvironment() {
        for (const char* name : kNames) {
            const char* value = std::getenv(name);
            if (value != nullptr) saved_[name] = value;
            unsetenv(name);
        }
    }
    ~LanguageEnvironment() {
        for (const char* name : kNames) {
            const auto found = saved_.find(name);
            if (found == saved_.end()) {
                unsetenv(name);
            } else {
                setenv(name, found->second.c_str(), 1);
            }
        }
    }
    void Set(const char* name, const char* value) { setenv(name, value, 1); }

  private:
    static constexpr const char* kNames[] = {"LC_ALL", "LC_MESSAGES", "LANG", "TOLVANE_LANGUAGE"};
    std::map<std::string, std::string> saved_;
};

class NewInstance final : public InstanceLock {
  public:
    Result CreateLock(const std::string&) override { return Result::kCreated; }
    bool BringFirstInstanceForward(const std::string&, const std::string&) override {
        return false;
    }
    void Sleep(int) override {}
};

// A program folder with the English, German, French and Chinese files, each
// telling itself apart by the right soft key; Spanish has none.
class LanguageStartupTest : public ::testing::Test {
  protected:
    void SetUp() override {
        fixture_.folder.UseAsProgramFolder();
        // A settings record to load, so that no start waits on retries.
        Options options;
        ResetOptions(options);
        ASSERT_TRUE(SaveOptions(fixture_.folder.File("Options.dat"), options, 1));
        WriteLanguage("ENU", "Menu");
        WriteLanguage("DEU", "Menü");
        WriteLanguage("FRA", "Menu (FRA)");
        WriteLanguage("CHS", "菜单");
    }
    void WriteLanguage(const std::string& code, const std::string& menuKey) const {
        testing::WriteFileBytes(
            fixture_.folder.File("tolvane_" + code + ".dat"),
            EncodeLanguageFile({{10000, "Tolvane GPS Utilities"}, {kMenuKey, menuKey}}));
    }
    std::string Start() {
        NewInstance lock;
        EXPECT_TRUE(StartBeforeWindow(fixture_.program, lock));
        return CStringManager::GetInstance().GetText(kMenuKey);
    }

    LanguageEnvironment environment_;
    testing::ProgramFixture fixture_;
};

TEST_F(LanguageStartupTest, TheLocaleChoosesAndALanguageWithoutAFileReadsEnglish) {
    environment_.Set("LANG", "fr_FR.UTF-8");
    environment_.Set("LC_MESSAGES", "de_DE.UTF-8");
    EXPECT_EQ(Start(), "Menü");
    environment_.Set("LC_ALL", "es_ES.UTF-8");
    EXPECT_EQ(Start(), "Menu");
    environment_.Set("LC_ALL", "zh_TW.UTF-8");
    EXPECT_EQ(Start(), "Menu");
    EXPECT_TRUE(fixture_.host.messages.empty());
}

TEST_F(LanguageStartupTest, TheVariableOverridesTheLocaleAndTheSettingOverridesBoth) {
    environment_.Set("LANG", "de_DE.UTF-8");
    environment_.Set("TOLVANE_LANGUAGE", "FRA");
    EXPECT_EQ(Start(), "Menu (FRA)");
    testing::WriteFileBytes(fixture_.folder.File("tolvane.conf"), "language = CHS\n");
    EXPECT_EQ(Start(), "菜单");
    EXPECT_EQ(fixture_.program.app.runtime.language, "CHS");
    // A language the program does not ship is no setting.
    testing::WriteFileBytes(fixture_.folder.File("tolvane.conf"), "language = ITA\n");
    fixture_.program.app.runtime.language.clear();
    EXPECT_EQ(Start(), "Menu (FRA)");
}

// Options > Language speaks the new language at once, keeps it in
// tolvane.conf and, set back to Automatic, takes the line out again.
TEST_F(LanguageStartupTest, TheOptionsEntryTakesEffectAtOnceAndIsKeptBesideTheRecord) {
    environment_.Set("LANG", "de_DE.UTF-8");
    EXPECT_EQ(Start(), "Menü");
    const std::vector<std::string> entries = OptionsComboEntries(OptionsCombo::kLanguage);
    ASSERT_EQ(entries.size(), 6u);
    EXPECT_EQ(entries[0], "Automatic");  // the file lacks it: the built-in English
    EXPECT_EQ(entries[5], "简体中文");

    OptionsForm form = OpenOptionsForm(fixture_.program.app);
    EXPECT_EQ(form.language, 0);
    form.language = 5;
    ApplyOptionsForm(fixture_.program, form);
    EXPECT_EQ(CStringManager::GetInstance().GetText(kMenuKey), "菜单");
    const std::string conf = testing::ReadFileBytes(fixture_.folder.File("tolvane.conf"));
    EXPECT_NE(conf.find("\nlanguage = CHS\n"), std::string::npos) << conf;
    EXPECT_EQ(OpenOptionsForm(fixture_.program.app).language, 5);

    form.language = 0;
    ApplyOptionsForm(fixture_.program, form);
    EXPECT_EQ(CStringManager::GetInstance().GetText(kMenuKey), "Menü");
    EXPECT_EQ(testing::ReadFileBytes(fixture_.folder.File("tolvane.conf")).find("language"),
              std::string::npos);
}

}  // namespace
}  // namespace tolvane
