#include "headless/headless_host.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvane::headless {
namespace {

TEST(HeadlessHostTest, TimersFireInStartOrderAndFollowKillsAndStartsWithinARound) {
    LoopTimers timers;
    std::string fired;
    int third = 0;
    int fourth = 0;
    const int first = timers.StartTimer(1000, [&] { fired += '1'; });
    timers.StartTimer(1000, [&] {
        fired += '2';
        if (third == 0) return;
        timers.KillTimer(third);  // a later timer killed: it does not run
        third = 0;
        timers.StartTimer(1000, [&] { fired += '5'; });  // runs from the next round on
    });
    third = timers.StartTimer(1000, [&] { fired += '3'; });
    fourth = timers.StartTimer(1000, [&] {
        fired += '4';
        timers.KillTimer(first);  // an earlier timer, then itself
        timers.KillTimer(fourth);
    });
    timers.FireTimers();
    EXPECT_EQ(fired, "124");
    timers.FireTimers();
    EXPECT_EQ(fired, "12425");
}

}  // namespace
}  // namespace tolvane::headless
