#include "core/app/value_dialogs.h"

#include <gtest/gtest.h>

#include "core/app/commands.h"
#include "core/app/menu_model.h"
#include "core/nav/speed_alarm.h"
#include "tests/core/app/program_fixture.h"

namespace tolvane {
namespace {

std::string ItemText(const MenuItem& menu, int id) {
    for (const MenuItem& child : menu.children) {
        if (child.id == id) return child.text;
        if (std::string text = ItemText(child, id); !text.empty()) return text;
    }
    return {};
}

TEST(ValueDialogsTest, TrackIntervalOkClampsEverySlotAndOpensWithTheStoredValues) {
    Options options;
    ResetOptions(options);
    EXPECT_EQ(TrackIntervalFieldsOf(options), (TrackIntervalFields{"10", "20", "30", "60"}));
    StoreTrackIntervalFields(options, {"0", "5000", "3600", ""});
    EXPECT_EQ(TrackIntervalFieldsOf(options), (TrackIntervalFields{"1", "3600", "3600", "1"}));
}

// Both commands open their dialogs now; OK's limits are what the menu
// shows, and a limit stored negative is shown unsigned and kept.
TEST(ValueDialogsTest, SpeedAlarmOkFeedsTheMenuAndTheCommandsOpenTheDialogs) {
    testing::ProgramFixture fixture;
    Program& program = fixture.program;
    for (const int command : {kCommandCustomSpeedAlarm, kCommandCustomInterval}) {
        EXPECT_EQ(OnCommand(program, command), CommandResult::kDone);
        EXPECT_EQ(fixture.host.events.back(), "dialog " + std::to_string(command));
    }
    Options& options = program.app.options;
    options.speedAlarmValues[7] = -1;
    SpeedAlarmFields fields = SpeedAlarmFieldsOf(options);
    EXPECT_EQ(fields[0], "50");
    EXPECT_EQ(fields[7], "4294967295");
    fields[0] = "85";
    fields[1] = "";
    StoreSpeedAlarmFields(options, fields);
    EXPECT_EQ(options.speedAlarmValues[1], 0);
    EXPECT_EQ(options.speedAlarmValues[7], -1);
    const MenuItem menu = BuildCommandMenu(program);
    EXPECT_EQ(ItemText(menu, kCommandFirstSpeedAlarm), "85 km/h");
    EXPECT_EQ(ItemText(menu, kCommandFirstSpeedAlarm + 1), "0 km/h");
}

}  // namespace
}  // namespace tolvane
