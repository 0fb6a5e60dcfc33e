#include "core/app/menu_model.h"

#include <gtest/gtest.h>

#include <set>

#include "core/app/commands.h"
#include "core/base/language_file.h"
#include "core/base/string_manager.h"
#include "tests/core/app/program_fixture.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

void Collect(const MenuItem& menu, std::vector<MenuItem>& items) {
    for (const MenuItem& child : menu.children) {
        if (child.id != 0) items.push_back(child);
        Collect(child, items);
    }
}

std::vector<MenuItem> AllItems(Program& program) {
    std::vector<MenuItem> items;
    Collect(BuildViewsMenu(program), items);
    Collect(BuildCommandMenu(program), items);
    return items;
}

// The pop-up that holds the item with id.
const MenuItem* FindPopup(const MenuItem& menu, int id) {
    for (const MenuItem& child : menu.children) {
        if (child.id == id) return &menu;
        if (const MenuItem* found = FindPopup(child, id)) return found;
    }
    return nullptr;
}

const MenuItem& Find(const std::vector<MenuItem>& items, int id) {
    for (const MenuItem& item : items) {
        if (item.id == id) return item;
    }
    ADD_FAILURE() << "no item " << id;
    return items.front();
}

// Every command of the table is in the menus once, and each either runs or
// is greyed and refused: no item the user can choose does nothing.
TEST(MenuModelTest, EveryCommandIsInTheMenusAndRunsOrIsGreyed) {
    testing::ProgramFixture fixture;
    fixture.host.answer = false;  // Exit asks and stays
    const std::vector<MenuItem> items = AllItems(fixture.program);
    std::set<int> ids;
    for (const MenuItem& item : items) EXPECT_TRUE(ids.insert(item.id).second) << item.id;
    std::set<int> table = {40004, 40009, 40011, 40012, 40014, 40015, 40019, 40020, 40022,
                           40023, 40024, 40030, 40031, 40033, 40043, 40048, 40200, 40201,
                           40207, 40208, 40227, 40228, 40233, 40235, 40236, 40240, 40242,
                           40243, 40244, 40245, 40246, 40254, 40255, 40256, 40257, 40258,
                           40259, 40260, 40262, 40263, 40266, 40267};
    for (int id = 40025; id <= 40029; ++id) table.insert(id);
    for (int id = 40034; id <= 40047; ++id) table.insert(id);
    for (int id = 40202; id <= 40206; ++id) table.insert(id);
    for (int id = 40237; id <= 40239; ++id) table.insert(id);
    EXPECT_EQ(ids, table);
    for (const MenuItem& item : items) {
        const CommandResult expected =
            item.enabled ? CommandResult::kDone : CommandResult::kUnavailable;
        EXPECT_EQ(OnCommand(fixture.program, item.id), expected) << item.id;
    }
    EXPECT_TRUE(fixture.program.app.gpsRunning);
    EXPECT_EQ(OnCommand(fixture.program, 40001), CommandResult::kUnknown);
}

TEST(MenuModelTest, ChecksGreysAndTextsFollowTheState) {
    testing::ProgramFixture fixture;
    fixture.folder.UseAsProgramFolder();
    testing::WriteFileBytes(fixture.folder.File("tolvane_ENU.dat"),
                            EncodeLanguageFile({{40009, "Connect GPS\t[0]"}}));
    ASSERT_TRUE(CStringManager::GetInstance().Load(kLanguageEnglish, kSubLanguageEnglishUs));
    Program& program = fixture.program;
    AppState& app = program.app;
    app.options.speedAlarmIndex = 3;
    app.options.nightView = 1;
    app.currentView = kViewSpeed;
    std::vector<MenuItem> items = AllItems(program);
    EXPECT_EQ(Find(items, kCommandStartGps).text, "Connect GPS\t[0]");  // from the language file
    EXPECT_EQ(Find(items, kCommandExit).text, "Exit");                  // built in
    EXPECT_TRUE(Find(items, kCommandGpsSetup).enabled);
    EXPECT_TRUE(Find(items, kCommandNightView).checked);
    EXPECT_FALSE(Find(items, kCommandFullScreen).checked);
    EXPECT_TRUE(Find(items, kCommandSpeed).checked);
    EXPECT_FALSE(Find(items, kCommandGpsInfo).checked);
    EXPECT_EQ(Find(items, kCommandFirstSpeedAlarm).text, "50 km/h");
    EXPECT_TRUE(Find(items, 40038).checked && Find(items, 40038).radio);
    EXPECT_EQ(Find(items, 40038).text, "80 km/h");
    EXPECT_FALSE(Find(items, kCommandSpeedAlarmOff).checked);
    EXPECT_FALSE(Find(items, kCommandNextDestination).enabled);
    EXPECT_FALSE(Find(items, kCommandCloseDestinationList).enabled);
    EXPECT_FALSE(Find(items, kCommandPointManager).enabled);  // no waypoint file
    // "Off", a separator, then the limits at positions 2 to 9.
    const MenuItem speedAlarm = *FindPopup(BuildCommandMenu(program), kCommandSpeedAlarmOff);
    EXPECT_EQ(speedAlarm.children[0].id, kCommandSpeedAlarmOff);
    EXPECT_TRUE(speedAlarm.children[1].separator);
    for (int i = 0; i <= kLastSpeedAlarm; ++i) {
        EXPECT_EQ(speedAlarm.children[i + 2].id, kCommandFirstSpeedAlarm + i);
    }

    // An open list with navigation off: only the list's own items run.
    app.options.unitSystem = 1;
    app.options.navigation = 0;
    app.runtime.waypointFile = fixture.folder.File("Waypoint.csv");
    DynamicList<GeoPoint> destinations;
    destinations.Append(GeoPoint{});
    OpenDestinationList(app.navigation, destinations);
    items = AllItems(program);
    for (const int id : {kCommandGoToDestination, kCommandNextDestination,
                         kCommandPreviousDestination, kCommandResetDestinations}) {
        EXPECT_FALSE(Find(items, id).enabled) << id;
    }
    EXPECT_TRUE(Find(items, kCommandCloseDestinationList).enabled);
    EXPECT_TRUE(Find(items, kCommandPointManager).enabled);

    app.options.navigation = 1;
    ASSERT_EQ(OnCommand(program, kCommandStartGps), CommandResult::kDone);
    items = AllItems(program);
    EXPECT_EQ(Find(items, kCommandFirstSpeedAlarm).text, "50 MPH");
    for (const int id : {kCommandGoToDestination, kCommandNextDestination,
                         kCommandPreviousDestination, kCommandResetDestinations}) {
        EXPECT_TRUE(Find(items, id).enabled) << id;
    }
    EXPECT_TRUE(Find(items, kCommandCloseDestinationList).enabled);
    EXPECT_EQ(Find(items, kCommandStopGps).text, "Stop GPS\t[0]");
}

}  // namespace
}  // namespace tolvane
