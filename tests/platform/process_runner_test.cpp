#include "platform/process_runner.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/command_line_sound.h"
#include "tests/core/test_support.h"
#include "tests/platform/scoped_environment.h"

namespace tolvane::platform {
namespace {

using tolvane::testing::ScopedEnvironment;
using tolvane::testing::TemporaryFolder;

TEST(ProcessRunnerTest, StartsWaitsAndReportsTheExitCode) {
    const pid_t child = StartProcess("/bin/sh", {"-c", "exit 3"}, ChildSetup{});
    ASSERT_GT(child, 0);
    EXPECT_EQ(WaitForProcess(child), 3);
    EXPECT_EQ(StartProcess("/nonexistent/espeak-ng", {}, ChildSetup{}), -1);

    LinuxProcessRunner runner;
    EXPECT_TRUE(runner.RunAndWait("/bin/sh", {"-c", "exit 1"}));
    EXPECT_FALSE(runner.RunAndWait("/nonexistent/espeak-ng", {"-w", "x.wav", "text"}));
}

TEST(ProcessRunnerTest, ArgumentsArriveUnchanged) {
    TemporaryFolder folder;
    const std::string out = folder.File("arguments.txt");
    LinuxProcessRunner runner;
    ASSERT_TRUE(runner.RunAndWait(
        "/bin/sh", {"-c", "printf '%s|' \"$@\" > \"$0\"", out, "-w", "a b.wav", "say \"hi\""}));
    EXPECT_EQ(testing::ReadFileBytes(out), "-w|a b.wav|say \"hi\"|");
}

TEST(ProcessRunnerTest, ChildGetsOnlyTheStandardDescriptors) {
    // A descriptor opened without close-on-exec, as a careless caller would.
    const int opened = open("/dev/null", O_RDONLY);
    const int inherited = dup2(opened, 57);
    close(opened);
    ASSERT_EQ(inherited, 57);
    const pid_t child = StartProcess("/bin/sh", {"-c", "test -e /proc/self/fd/57"}, ChildSetup{});
    EXPECT_EQ(WaitForProcess(child), 1);
    close(inherited);
}

TEST(ProcessRunnerTest, TemporaryFolderComesFromTheEnvironment) {
    LinuxProcessRunner runner;
    const ScopedEnvironment tmp("TMPDIR", "/var/tmp/");
    EXPECT_EQ(runner.TemporaryFolder(), "/var/tmp");
    unsetenv("TMPDIR");
    EXPECT_EQ(runner.TemporaryFolder(), "/tmp");
}

TEST(ProcessRunnerTest, SearchPathFindsExecutableFilesOnly) {
    TemporaryFolder first, second;
    testing::WriteFileBytes(first.File("tool"), "#!/bin/sh\n");  // not executable
    testing::WriteFileBytes(second.File("tool"), "#!/bin/sh\n");
    chmod(second.File("tool").c_str(), 0755);
    const std::string path = ":" + first.Path() + ":" + second.Path() + "/";
    EXPECT_EQ(FindProgramOnPath("tool", path.c_str()), second.File("tool"));
    EXPECT_EQ(FindProgramOnPath("other", path.c_str()), "");
    EXPECT_EQ(FindProgramOnPath("tool", nullptr), "");
    EXPECT_EQ(FindProgramOnPath("tool", ""), "");
}

TEST(CommandLineSoundTest, EveryCallSucceedsWithoutSoundHardware) {
    TemporaryFolder folder;
    testing::WriteFileBytes(folder.File("Alarm.wav"), "not a real wave file");
    CommandLineSoundService sound;
    EXPECT_TRUE(sound.PlaySoundFile(folder.File("missing.wav"), SoundMode::kOnce));
    EXPECT_TRUE(sound.PlaySoundFile(folder.File("Alarm.wav"), SoundMode::kLoop));
    EXPECT_TRUE(sound.StopSound());
    EXPECT_TRUE(sound.StopSound());
    EXPECT_TRUE(sound.PlayLimitBeep());
}

}  // namespace
}  // namespace tolvane::platform
