#include "core/app/single_instance_rule.h"

#include <gtest/gtest.h>

#include <deque>

#include "core/app/startup.h"
#include "core/base/language_file.h"
#include "tests/core/app/program_fixture.h"

namespace tolvane {
namespace {

// Answers each pass with the next scripted lock result and each look for the
// first window with the next scripted answer (not found when none is left).
class ScriptedLock final : public InstanceLock {
  public:
    Result CreateLock(const std::string& name) override {
        EXPECT_EQ(name, "Tolvane_GPS_Utilities");
        const Result next = locks.empty() ? Result::kAlreadyExists : locks.front();
        if (!locks.empty()) locks.pop_front();
        return next;
    }
    bool BringFirstInstanceForward(const std::string&, const std::string& title) override {
        EXPECT_EQ(title, "Tolvane GPS Utilities");
        ++looks;
        const bool found = !windows.empty() && windows.front();
        if (!windows.empty()) windows.pop_front();
        return found;
    }
    void Sleep(int milliseconds) override { slept += milliseconds; }

    std::deque<Result> locks;
    std::deque<bool> windows;
    int looks = 0;
    int slept = 0;
};

using Result = InstanceLock::Result;

InstanceCheck Check(ScriptedLock& lock) {
    return ActivatePreviousInstance(lock, kInstanceName, "Tolvane GPS Utilities");
}

TEST(SingleInstanceTest, TheFirstProgramStartsAndASecondBringsItForward) {
    ScriptedLock first;
    first.locks = {Result::kCreated};
    EXPECT_TRUE(Check(first).MayStart());
    EXPECT_EQ(first.looks, 0);

    ScriptedLock second;
    second.windows = {false, true};  // found at the second look, 500 ms later
    const InstanceCheck check = Check(second);
    EXPECT_TRUE(check.succeeded);
    EXPECT_TRUE(check.foundPrevious);
    EXPECT_FALSE(check.MayStart());
    EXPECT_EQ(second.slept, 500);

    ScriptedLock broken;
    broken.locks = {Result::kFailed};
    EXPECT_FALSE(Check(broken).MayStart());
}

// A first program that is ending holds the lock without a window: after
// five passes (2.5 s) the new one starts. But a lock that comes free only in
// the last pass, or a window found only then, ends the start.
TEST(SingleInstanceTest, TheLastPassIsAsymmetric) {
    ScriptedLock dying;
    EXPECT_TRUE(Check(dying).MayStart());
    EXPECT_EQ(dying.looks, 10);
    EXPECT_EQ(dying.slept, 2500);

    ScriptedLock freedLate;
    freedLate.locks = {Result::kAlreadyExists, Result::kAlreadyExists, Result::kAlreadyExists,
                       Result::kAlreadyExists, Result::kCreated};
    EXPECT_FALSE(Check(freedLate).succeeded);

    ScriptedLock foundLate;
    foundLate.windows = {false, false, false, false, false, false, false, false, true};
    const InstanceCheck late = Check(foundLate);
    EXPECT_FALSE(late.succeeded);
    EXPECT_TRUE(late.foundPrevious);

    ScriptedLock freedInFourthPass;
    freedInFourthPass.locks = {Result::kAlreadyExists, Result::kAlreadyExists,
                               Result::kAlreadyExists, Result::kCreated};
    EXPECT_TRUE(Check(freedInFourthPass).MayStart());
}

// Before the window: a second start ends without reading the settings; the
// first reads them and mends the two selectors a bad record may carry.
TEST(SingleInstanceTest, OnlyTheFirstProgramLoadsItsSettings) {
    testing::ProgramFixture fixture;
    Options stored;
    ResetOptions(stored);
    stored.unitSystem = 9;
    stored.speedAlarmIndex = 8;
    stored.nightView = 1;
    ASSERT_TRUE(SaveOptions(fixture.folder.File("Options.dat"), stored, 1));
    fixture.folder.UseAsProgramFolder();
    testing::WriteFileBytes(fixture.folder.File("tolvane_ENU.dat"),
                            EncodeLanguageFile({{10000, "Tolvane GPS Utilities"}}));

    ScriptedLock second;
    second.windows = {true};
    EXPECT_FALSE(StartBeforeWindow(fixture.program, second));
    EXPECT_EQ(fixture.program.app.options.nightView, 0);

    ScriptedLock first;
    first.locks = {Result::kCreated};
    EXPECT_TRUE(StartBeforeWindow(fixture.program, first));
    EXPECT_EQ(fixture.program.app.options.nightView, 1);
    EXPECT_EQ(fixture.program.app.options.unitSystem, 0);
    EXPECT_EQ(fixture.program.app.options.speedAlarmIndex, kSpeedAlarmOff);
}

}  // namespace
}  // namespace tolvane
