#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <sstream>

#include "core/base/language_file.h"
#include "core/data/options.h"
#include "headless/headless_host.h"
#include "headless/port_run.h"
#include "tests/core/test_support.h"
#include "tests/tools/run_tool.h"
#include "tests/tools/shell_command.h"
#include "tools/tolvane-tool/tool_commands.h"

namespace tolvane::tool {
namespace {

TEST(ToolTest, WrongArgumentsPrintUsageAndExit2) {
    for (const Arguments& arguments :
         {Arguments{}, Arguments{"frobnicate"}, Arguments{"options"}, Arguments{"options", "dump"},
          Arguments{"lang", "compile", "only-one"}}) {
        const Result result = RunCommand(arguments);
        EXPECT_EQ(result.code, kExitUsage);
        EXPECT_NE(result.err.find("Usage: tolvane-tool"), std::string::npos);
    }
    const Result help = RunCommand({"--help"});
    EXPECT_EQ(help.code, kExitOk);
    EXPECT_NE(help.out.find("options reset FILE"), std::string::npos);
}

TEST(ToolTest, OptionsResetWritesTheDefaultRecordAndDumpShowsIt) {
    testing::TemporaryFolder folder;
    const std::string path = folder.File("Options.dat");
    ASSERT_EQ(RunCommand({"options", "reset", path}).code, kExitOk);
    Options defaults;
    ResetOptions(defaults);
    EXPECT_EQ(testing::ReadFileBytes(path),
              std::string(reinterpret_cast<const char*>(&defaults), sizeof defaults));

    const Result dump = RunCommand({"options", "dump", path});
    ASSERT_EQ(dump.code, kExitOk) << dump.err;
    EXPECT_NE(dump.out.find("\"version\":\"2.4.0.3151\",\"versionMatches\":true"),
              std::string::npos);
    EXPECT_NE(dump.out.find("\"speedAlarmValues\":[50,60,70,80,90,100,110,120]"),
              std::string::npos);
    EXPECT_NE(dump.out.find("\"minimumSpeed\":0,"), std::string::npos);
}

TEST(ToolTest, UnreadableFilesNameTheFileAndExit1) {
    testing::TemporaryFolder folder;
    const Result missing = RunCommand({"options", "dump", folder.File("none.dat")});
    EXPECT_EQ(missing.code, kExitFailure);
    EXPECT_NE(missing.err.find(folder.File("none.dat")), std::string::npos);
    EXPECT_NE(missing.err.find("No such file"), std::string::npos);

    testing::WriteFileBytes(folder.File("short.dat"), std::string(4903, '\0'));
    const Result shortRecord = RunCommand({"options", "dump", folder.File("short.dat")});
    EXPECT_EQ(shortRecord.code, kExitFailure);
    EXPECT_NE(shortRecord.err.find("4903 bytes"), std::string::npos);

    EXPECT_EQ(RunCommand({"options", "reset", folder.File("no/such/dir/Options.dat")}).code,
              kExitFailure);
    EXPECT_EQ(RunCommand({"lang", "dump", folder.File("short.dat")}).code, kExitFailure);
}

TEST(ToolTest, OversizedForeignAndEmptyInputsAreRefusedSayingWhy) {
    for (const Arguments& arguments :
         {Arguments{"options", "dump", "/dev/zero"}, Arguments{"lang", "dump", "/dev/zero"}}) {
        const Result result = RunCommand(arguments);
        EXPECT_EQ(result.code, kExitFailure);
        EXPECT_NE(result.err.find("/dev/zero: larger than the"), std::string::npos) << result.err;
    }

    testing::TemporaryFolder folder;
    testing::WriteFileBytes(folder.File("junk.csv"), "no,points\nhere\n");
    const std::string log = testing::TestDataFile("gpsd/garmin48.log");
    for (const auto& [list, reason] : {std::pair{folder.Path(), "it is a folder"},
                                       {"/dev/zero", "not a file of at most 16 MB"},
                                       {folder.File("junk.csv"), "has no readable point line"}}) {
        const Result result = RunCommand({"replay", log, "--destinations", list});
        EXPECT_EQ(result.code, kExitFailure);
        EXPECT_NE(result.err.find(reason), std::string::npos) << result.err;
    }

    // A foreign record's version bytes are shown as text, never copied
    // into the JSON as they stand.
    std::string record(kOptionsSize, '\0');
    record.replace(0, 4,
                   "\x7f"
                   "E\xffL");
    testing::WriteFileBytes(folder.File("foreign.dat"), record);
    const Result dump = RunCommand({"options", "dump", folder.File("foreign.dat")});
    ASSERT_EQ(dump.code, kExitOk) << dump.err;
    EXPECT_EQ(nlohmann::json::parse(dump.out)["version"],
              "\x7f"
              "E\xc3\xbfL");
}

TEST(ToolTest, ACompileThatCannotBeWrittenLeavesTheOldFileWhole) {
    testing::TemporaryFolder folder;
    std::string source;
    for (int id = 1; id <= 100; ++id) source += std::to_string(id) + "\tsome text of the file\n";
    testing::WriteFileBytes(folder.File("src.txt"), source);
    testing::WriteFileBytes(folder.File("out.dat"), "old");
    // A file size limit of 1 KB stands in for a full disk.
    const testing::ShellResult full =
        testing::RunShell("trap '' XFSZ; ulimit -f 2; " + std::string(TOLVANE_PROGRAM_DIR) +
                          "/tolvane-tool lang compile " + folder.File("src.txt") + " " +
                          folder.File("out.dat") + " 2>&1");
    EXPECT_EQ(full.exitCode, 1) << full.output;
    EXPECT_NE(full.output.find("File too large"), std::string::npos) << full.output;
    EXPECT_EQ(testing::ReadFileBytes(folder.File("out.dat")), "old");
    EXPECT_FALSE(std::filesystem::exists(folder.File("out.dat.new")));
}

TEST(ToolTest, LanguageCompileAndDumpRoundTrip) {
    testing::TemporaryFolder folder;
    testing::WriteFileBytes(folder.File("src.txt"),
                            "# texts\n10000\tTolvane GPS Utilities\n5\tA\\nB\n");
    ASSERT_EQ(RunCommand({"lang", "compile", folder.File("src.txt"), folder.File("out.dat")}).code,
              kExitOk);
    const Result dump = RunCommand({"lang", "dump", folder.File("out.dat")});
    EXPECT_EQ(dump.out, "10000\tTolvane GPS Utilities\n5\tA\\nB\n");

    testing::WriteFileBytes(folder.File("bad.txt"), "1\tok\n2\n");
    const Result bad =
        RunCommand({"lang", "compile", folder.File("bad.txt"), folder.File("out.dat")});
    EXPECT_EQ(bad.code, kExitFailure);
    EXPECT_NE(bad.err.find("line 2"), std::string::npos);
}

// The shipped English file must carry every text the program looks up.
TEST(ToolTest, ShippedEnglishFileHoldsTheRequiredIds) {
    std::vector<LanguageEntry> entries;
    ASSERT_TRUE(DecodeLanguageFile(
        testing::ReadFileBytes(std::string(TOLVANE_PROGRAM_DIR) + "/tolvane_ENU.dat"), entries));
    std::map<std::uint32_t, std::string> texts;
    for (const LanguageEntry& entry : entries) texts[entry.id] = entry.text;
    EXPECT_EQ(texts[10000], "Tolvane GPS Utilities");
    std::vector<std::uint32_t> required = {10400, 10402, 10405, 10717, 10750, 10813,
                                           10814, 10815, 10866, 12000, 12001, 40007,
                                           40008, 40009, 40010, 40011, 40048, 40266};
    for (std::uint32_t id = 10700; id <= 10706; ++id) required.push_back(id);
    for (std::uint32_t id = 12500; id <= 12507; ++id) required.push_back(id);
    for (std::uint32_t id = 13001; id <= 13003; ++id) required.push_back(id);
    for (std::uint32_t id = 40034; id <= 40047; ++id) required.push_back(id);
    for (const std::uint32_t id : required) EXPECT_FALSE(texts[id].empty()) << id;
    // The texts that carry the error code take exactly one string argument.
    for (const std::uint32_t id : {10701u, 10702u, 10703u}) {
        EXPECT_EQ(texts[id].find("%s"), texts[id].rfind("%s")) << id;
        EXPECT_NE(texts[id].find("%s"), std::string::npos) << id;
    }
}

}  // namespace
}  // namespace tolvane::tool
