#include "core/app/main_timer.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

class CountingHost final : public Host {
  public:
    FileTime NowUtc() const override { return 0; }
    int StartTimer(int, std::function<void()>) override { return 1; }
    void KillTimer(int) override {}
    bool PlaySoundFile(const std::string&, SoundMode) override { return true; }
    bool StopSound() override { return true; }
    bool PlayLimitBeep() override { return true; }
    bool RunAndWait(const std::string&, const std::vector<std::string>&) override { return false; }
    std::string TemporaryFolder() const override { return "/tmp"; }
    void ShowMessage(const std::string&, const std::string&, MessageIcon) override {}
    bool AskYesNo(const std::string&, const std::string&) override { return false; }
    void Repaint() override { ++repaints; }
    void ResetIdleTimer() override { ++idleResets; }
    void NotifyRmcParsed() override {}

    int repaints = 0;
    int idleResets = 0;
};

TEST(MainTimerTest, TicksBlinkCountDownAndKeepTheMachineAwake) {
    AppState app;
    ResetOptions(app.options);
    CountingHost host;
    app.readActiveSource = [] { return SourceReading{1, GpsFix{}}; };  // connected, no fix
    app.currentView = kViewMap;
    app.mapCountdown = 2;
    for (int tick = 0; tick < 14; ++tick) MainTimerProc(app, host);
    EXPECT_EQ(host.repaints, 14);
    EXPECT_EQ(host.idleResets, 2);  // every seventh tick
    EXPECT_EQ(app.mapCountdown, 0);
    EXPECT_EQ(app.gps.noFixBlink, 0);  // toggled 14 times
    EXPECT_EQ(app.gps.connectedSeconds, 14);
    EXPECT_FALSE(app.mapFollow.havePosition);

    GpsFix fix;
    fix.fixValid = 1;
    fix.latitude = 48.1;
    app.readActiveSource = [fix] { return SourceReading{1, fix}; };
    MainTimerProc(app, host);
    EXPECT_EQ(app.gps.noFixBlink, 0);
    EXPECT_TRUE(app.mapFollow.havePosition);
    EXPECT_EQ(app.mapFollow.latitude, 48.1);
}

TEST(MainTimerTest, WithoutASourceNothingIsConnected) {
    AppState app;
    ResetOptions(app.options);
    CountingHost host;
    app.gps.latitude = 5;
    MainTimerProc(app, host);
    EXPECT_EQ(app.gps.connected, 0);
    EXPECT_EQ(app.gps.latitude, 0);  // the empty snapshot is published
    EXPECT_EQ(app.gps.fixType, 1.0);
}

}  // namespace
}  // namespace tolvane
