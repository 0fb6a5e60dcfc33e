#include "core/app/shutdown.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "core/app/commands.h"
#include "core/app/startup.h"
#include "tests/core/app/program_fixture.h"

namespace tolvane {
namespace {

// The settings are saved before the question, so a No keeps the program
// running with Options.dat already written; a Yes takes everything down.
TEST(ShutdownTest, ExitSavesBeforeAskingAndNoKeepsTheProgramRunning) {
    testing::ProgramFixture fixture;
    Program& program = fixture.program;
    program.app.options.keepBacklightOn = 1;
    ASSERT_TRUE(StartAfterWindow(program));
    OnCommand(program, kCommandStartGps);
    program.app.options.unitSystem = 2;
    const std::string optionsPath = fixture.folder.File("Options.dat");
    bool savedBeforeQuestion = false;
    fixture.host.onQuestion = [&] {
        Options saved{};
        savedBeforeQuestion =
            LoadOptions(optionsPath, saved, 1) && saved.unitSystem == 2 &&
            ReadWideField(saved.storageLocation) == fixture.folder.File("Documents");
    };
    fixture.host.answer = false;
    fixture.host.events.clear();
    EXPECT_EQ(OnCommand(program, kCommandExit), CommandResult::kDone);
    EXPECT_TRUE(savedBeforeQuestion);
    // The question and nothing else, in the built-in English without a
    // language file.
    EXPECT_EQ(fixture.host.events,
              std::vector<std::string>{"ask Do you want to exit Tolvane GPS Utilities?"});
    EXPECT_TRUE(program.app.gpsRunning);
    EXPECT_NE(program.mainTimerId, 0);

    fixture.host.answer = true;
    fixture.host.events.clear();
    OnCommand(program, kCommandExit);
    EXPECT_EQ(fixture.host.events,
              (std::vector<std::string>{fixture.host.events[0], "kill 2", "kill 1", "kill 3",
                                        "release screen", "close window"}));
    EXPECT_FALSE(program.app.gpsRunning);
    EXPECT_FALSE(fixture.device.open);
    EXPECT_EQ(program.mainTimerId, 0);
}

}  // namespace
}  // namespace tolvane
