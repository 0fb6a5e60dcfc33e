#include "core/base/dynamic_list.h"

#include <gtest/gtest.h>

#include "core/base/program_paths.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

std::vector<int> Contents(DynamicList<int>& list) {
    std::vector<int> values;
    list.ForEach([&](int value) { values.push_back(value); });
    return values;
}

TEST(DynamicListTest, AppendInsertAndCursorFollowTheNewRecord) {
    DynamicList<int> list;
    EXPECT_EQ(list.Position(), -1);
    list.InsertAfterCurrent(1);  // on an empty list: append
    list.Append(3);
    EXPECT_EQ(list.Position(), 1);
    list.SeekTo(0);
    list.InsertAfterCurrent(2);
    EXPECT_EQ(list.Position(), 1);
    EXPECT_EQ(list.Current(), 2);
    EXPECT_EQ(Contents(list), (std::vector<int>{1, 2, 3}));

    // A cursor that ran off the end inserts after the tail.
    list.SeekTo(2);
    list.MoveNext();
    EXPECT_FALSE(list.HasCurrent());
    list.InsertAfterCurrent(4);
    EXPECT_EQ(list.Current(), 4);
    EXPECT_EQ(list.Position(), 3);
    list.Append(5);
    EXPECT_EQ(Contents(list), (std::vector<int>{1, 2, 3, 4, 5}));
}

TEST(DynamicListTest, RemovingTheTailMovesTailAndPositionBack) {
    DynamicList<int> list;
    for (int i = 0; i < 3; ++i) list.Append(i);
    list.SeekTo(2);
    list.RemoveCurrent();
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(list.Position(), 1);
    EXPECT_FALSE(list.HasCurrent());
    list.Append(7);  // the tail must be the old second node
    EXPECT_EQ(Contents(list), (std::vector<int>{0, 1, 7}));

    list.SeekTo(0);
    list.RemoveCurrent();  // head: cursor moves to the next node
    EXPECT_EQ(list.Current(), 1);
    EXPECT_EQ(list.PopFront(), 1);
    EXPECT_EQ(list.PopFront(), 7);
    EXPECT_EQ(list.Count(), 0);
    list.SeekTo(5);  // a no-op on an empty list
    list.Clear();
    EXPECT_EQ(list.Position(), -1);
}

// Every misuse writes the same log line with its own line number and ends
// the process with exit code 1.
class DynamicListMisuseTest : public ::testing::TestWithParam<std::pair<const char*, int>> {};

void Misuse(const std::string& kind) {
    DynamicList<int> list;
    if (kind == "current") list.Current();
    if (kind == "pop") list.PopFront();
    if (kind == "remove") list.RemoveCurrent();
    if (kind == "seek") {
        list.Append(1);
        list.SeekTo(1);
    }
}

TEST_P(DynamicListMisuseTest, EndsTheProcessWithTheLoggedLine) {
    const auto [kind, line] = GetParam();
    testing::TemporaryFolder folder;
    folder.UseAsProgramFolder();
    EXPECT_EXIT(Misuse(kind), ::testing::ExitedWithCode(1), "");
    const std::string log = testing::ReadFileBytes(folder.File("tolvane_log.txt"));
    EXPECT_NE(log.find(" : Critical Error: LinkedList\t(from dynamiclist," + std::to_string(line) +
                       ")\r\n"),
              std::string::npos)
        << log;
}

INSTANTIATE_TEST_SUITE_P(Lines, DynamicListMisuseTest,
                         ::testing::Values(std::make_pair("seek", 259),
                                           std::make_pair("current", 296),
                                           std::make_pair("pop", 579),
                                           std::make_pair("remove", 598)));

}  // namespace
}  // namespace tolvane
