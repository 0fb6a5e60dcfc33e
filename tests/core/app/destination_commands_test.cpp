#include "core/app/destination_commands.h"

#include <gtest/gtest.h>

#include "core/app/commands.h"
#include "core/app/point_commands.h"
#include "core/base/string_manager.h"
#include "core/data/geo_point_file.h"
#include "core/nav/destination_list.h"
#include "tests/core/app/program_fixture.h"

namespace tolvane {
namespace {

using Events = std::vector<std::string>;

GeoPoint Named(const std::string& name) {
    GeoPoint point;
    point.name = name;
    return point;
}

void AddDestinationNamed(Navigation& navigation, const std::string& name) {
    DestinationDraft draft = CopyDestinations(navigation);
    InsertDestination(draft, static_cast<int>(draft.points.size()), Named(name));
    ApplyDestinations(navigation, draft);
}

int PointsIn(const std::string& path) {
    DynamicList<GeoPoint> points;
    LoadPointFile(path, points);
    return points.Count();
}

// Only work the user did asks before the list goes: a Go-To list and the
// choice of the current destination do not. Cancel keeps the list; Save asks
// for a file when the list has none, and a cancelled chooser or a file that
// cannot be written keeps it too; Discard lets it go unsaved.
TEST(DestinationCommandsTest, ClosingAChangedListAsksAndDoesWhatTheAnswerSays) {
    testing::ProgramFixture fixture;
    Program& program = fixture.program;
    Navigation& navigation = program.app.navigation;
    testing::EventHost& host = fixture.host;

    ASSERT_TRUE(StartGoTo(program, Named("Home")));
    SelectDestination(navigation, 0);
    host.events.clear();
    OnCommand(program, kCommandCloseDestinationList);
    EXPECT_EQ(host.events, (Events{"repaint"}));
    EXPECT_FALSE(navigation.open);

    ASSERT_TRUE(StartGoTo(program, Named("Home")));
    AddDestinationNamed(navigation, "Harbour");
    const std::string askNew = "ask to save " + LanguageText(kTextSaveNewDestinationList);
    host.saveAnswer = SaveAnswer::kCancel;
    host.events.clear();
    OnCommand(program, kCommandCloseDestinationList);
    EXPECT_FALSE(StartGoTo(program, Named("Elsewhere")));
    EXPECT_EQ(host.events, (Events{askNew, askNew}));
    EXPECT_EQ(CopyDestinations(navigation).points.size(), 2u);

    host.saveAnswer = SaveAnswer::kSave;
    const std::string choose = "choose " + DefaultDestinationPath(program.app);
    const std::string unwritable = fixture.folder.File("missing/Walk.csv");
    const std::string walk = fixture.folder.File("Walk.csv");
    for (const std::string& file : {std::string(), unwritable}) {
        host.chosenFile = file;
        host.events.clear();
        OnCommand(program, kCommandCloseDestinationList);
        EXPECT_EQ(host.events.at(1), choose);
        EXPECT_TRUE(navigation.open) << file;
    }
    EXPECT_EQ(host.events.back(), "message " + PointFileNotSavedMessage(unwritable));
    host.chosenFile = walk;
    host.events.clear();
    OnCommand(program, kCommandCloseDestinationList);
    EXPECT_EQ(host.events, (Events{askNew, choose, "repaint"}));
    EXPECT_FALSE(navigation.open);
    EXPECT_EQ(PointsIn(walk), 2);

    ASSERT_TRUE(OpenDestinationFile(navigation, walk).opened);
    AddDestinationNamed(navigation, "Lighthouse");
    host.saveAnswer = SaveAnswer::kDiscard;
    host.events.clear();
    OnCommand(program, kCommandCloseDestinationList);
    EXPECT_EQ(host.events,
              (Events{"ask to save " + FillLanguageText(kTextSaveDestinationChanges, {"Walk.csv"}),
                      "repaint"}));
    EXPECT_FALSE(navigation.open);
    EXPECT_EQ(PointsIn(walk), 2);
}

// Exit asks about the list after its own question: Cancel keeps the program
// running with the list, Save writes the list to its file and ends it.
TEST(DestinationCommandsTest, ExitAsksAboutAChangedListAfterItsOwnQuestion) {
    testing::ProgramFixture fixture;
    Program& program = fixture.program;
    Navigation& navigation = program.app.navigation;
    const std::string walk = fixture.folder.File("Walk.csv");
    NewDestinationList(navigation, walk);
    AddDestinationNamed(navigation, "Harbour");

    fixture.host.saveAnswer = SaveAnswer::kCancel;
    fixture.host.events.clear();
    OnCommand(program, kCommandExit);
    const std::string askToSave =
        "ask to save " + FillLanguageText(kTextSaveDestinationChanges, {"Walk.csv"});
    ASSERT_EQ(fixture.host.events.size(), 2u);
    EXPECT_EQ(fixture.host.events[0].rfind("ask ", 0), 0u);
    EXPECT_NE(fixture.host.events[0], askToSave);
    EXPECT_EQ(fixture.host.events[1], askToSave);
    EXPECT_TRUE(navigation.open);

    fixture.host.saveAnswer = SaveAnswer::kSave;
    fixture.host.events.clear();
    OnCommand(program, kCommandExit);
    EXPECT_EQ(fixture.host.events.back(), "close window");
    EXPECT_EQ(PointsIn(walk), 1);
}

}  // namespace
}  // namespace tolvane
