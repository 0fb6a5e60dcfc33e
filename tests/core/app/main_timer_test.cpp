#include "core/app/main_timer.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "core/geo/distance.h"
#include "tests/core/app/recording_host.h"
#include "tests/core/nav/fake_services.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

// Counts repaints and idle resets and keeps what was played; it is its own
// clock and sound.
class CountingHost final : public testing::RecordingHost, public Clock, public SoundService {
  public:
    CountingHost() : RecordingHost({*this, noTimers_, *this, quiet_, quiet_}) {}

    FileTime NowUtc() const override { return now; }
    bool PlaySoundFile(const std::string& path, SoundMode mode) override {
        played.push_back(path + (mode == SoundMode::kLoop ? " loop" : " once"));
        return true;
    }
    void Repaint() override { ++repaints; }
    void ResetIdleTimer() override { ++idleResets; }
    bool StopSound() override { return true; }
    bool PlayLimitBeep() override { return true; }

    FileTime now = *CivilToFileTime({2011, 7, 4, 16, 5, 9, 0});
    std::vector<std::string> played;
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

// The arrival check runs before the speed-alarm check, on the distance of
// the tick before; a tick without a source connects nothing.
TEST(MainTimerTest, ArrivalAdvancesTheDestinationAndTheSpeedAlarmSounds) {
    AppState app;
    ResetOptions(app.options);
    app.options.voiceGuide = 0;
    app.options.speedAlarmIndex = 0;  // 50 km/h
    app.alarm.path = "/opt/tolvane/Alarm.wav";
    DynamicList<GeoPoint> destinations;
    destinations.Append(testing::Destination(48.0, 0));
    destinations.Append(testing::Destination(49.0, 0));
    OpenDestinationList(app.navigation, destinations);
    CountingHost host;
    // Without a source nothing is connected: the empty snapshot is published.
    app.gps.latitude = 5;
    MainTimerProc(app, host);
    EXPECT_EQ(app.gps.connected, 0);
    EXPECT_EQ(app.gps.latitude, 0);
    EXPECT_EQ(app.gps.fixType, 1.0);
    EXPECT_TRUE(host.played.empty());

    GpsFix fix;
    fix.fixValid = 1;
    fix.latitude = 48.001;  // about 111 m away: inside the default 200 m
    fix.speedKnots = 30;    // 55.6 km/h
    app.readActiveSource = [fix] { return SourceReading{1, fix}; };
    MainTimerProc(app, host);
    EXPECT_EQ(CurrentDestinationIndex(app.navigation), 1);
    EXPECT_EQ(host.played, (std::vector<std::string>{"/opt/tolvane/Alarm.wav once",
                                                     "/opt/tolvane/Alarm.wav loop"}));
    MainTimerProc(app, host);
    EXPECT_NEAR(app.gps.destinationDistanceKm, DistanceKm(48.001, 0, 49.0, 0), 1e-9);
}

TEST(MainTimerTest, TrackTimerLogsIntoTheTrackFolderAndRepaintsTheMapViews) {
    testing::TemporaryFolder folder;
    AppState app;
    ResetOptions(app.options);
    app.options.trackLoggerEnabled = 1;
    app.options.trackLogFormat = 1;  // GPX
    app.folders = MakeDataFolders(folder.Path());
    std::filesystem::create_directories(app.folders.trackLogDir);
    app.gpsRunning = true;
    app.gps.connected = 1;
    app.gps.fixValid = 1;
    app.currentView = kViewWorldMap;
    CountingHost host;
    TrackTimerProc(app, host);
    const std::string gpx =
        testing::ReadFileBytes(folder.Path() + "/My GPS/Track Log/20110704160509.gpx");
    EXPECT_NE(gpx.find("<time>2011-07-04T16:05:09Z</time>"), std::string::npos);
    EXPECT_EQ(host.repaints, 1);
    // Only the two map views draw the track live.
    for (int view = kViewGpsInfo; view <= kViewTripStat; ++view) {
        app.currentView = view;
        host.repaints = 0;
        TrackTimerProc(app, host);
        EXPECT_EQ(host.repaints, view == kViewWorldMap || view == kViewMap ? 1 : 0) << view;
    }
}

}  // namespace
}  // namespace tolvane
