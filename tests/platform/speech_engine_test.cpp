#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include "core/data/options.h"
#include "core/gps/gps_state.h"
#include "core/nav/navigation.h"
#include "core/nav/speed_alarm.h"
#include "core/nav/voice_guide.h"
#include "platform/command_line_sound.h"
#include "platform/process_runner.h"
#include "platform/speech_engine_finder.h"
#include "tests/core/test_support.h"
#include "tests/platform/scoped_environment.h"

namespace tolvane::platform {
namespace {

using tolvane::testing::ScopedEnvironment;
using tolvane::testing::TemporaryFolder;

void WriteExecutable(const std::string& path) {
    testing::WriteFileBytes(path, "#!/bin/sh\n");
    chmod(path.c_str(), 0755);
}

TEST(SpeechEngineFinderTest, TheConfiguredFolderIsTheOnlyPlaceElseEspeakNgOnThePath) {
    TemporaryFolder configured, empty, first, second;
    WriteExecutable(configured.File("espeak"));
    WriteExecutable(first.File("espeak"));
    WriteExecutable(second.File("espeak-ng"));
    const std::string path = first.Path() + ":" + second.Path();
    // A folder with or without a trailing slash gives the same program.
    EXPECT_EQ(FindSpeechEngine(configured.Path().c_str(), path.c_str()), configured.File("espeak"));
    EXPECT_EQ(FindSpeechEngine((configured.Path() + "/").c_str(), path.c_str()),
              configured.File("espeak"));
    EXPECT_EQ(FindSpeechEngine(empty.Path().c_str(), path.c_str()), "");
    // Without a folder the search path is used, where espeak-ng wins anywhere.
    EXPECT_EQ(FindSpeechEngine("", path.c_str()), second.File("espeak-ng"));
    EXPECT_EQ(FindSpeechEngine(nullptr, path.c_str()), second.File("espeak-ng"));
    WriteExecutable(configured.File("espeak-ng"));
    EXPECT_EQ(FindSpeechEngine(configured.Path().c_str(), nullptr), configured.File("espeak-ng"));
}

// Counts what reaches the real sound service.
class CountingSound : public SoundService {
  public:
    bool PlaySoundFile(const std::string& path, SoundMode mode) override {
        plays.push_back(path);
        return inner_.PlaySoundFile(path, mode);
    }
    bool StopSound() override { return inner_.StopSound(); }
    bool PlayLimitBeep() override { return inner_.PlayLimitBeep(); }

    std::vector<std::string> plays;

  private:
    CommandLineSoundService inner_;
};

// The real engine and the real process runner, as on arrival.
class SpokenArrivalTest : public ::testing::Test {
  protected:
    SpokenArrivalTest() {
        ResetOptions(options);
        state.connected = 1;
        state.fixValid = 1;
        alarm.path = temporary.File("Alarm.wav");
        DynamicList<GeoPoint> loaded;
        GeoPoint point;
        point.voiceGuide = "A";
        loaded.Append(point);
        OpenDestinationList(navigation, loaded);
    }

    bool Arrive() { return CheckArrival(state, options, navigation, voice, alarm, sound); }

    TemporaryFolder temporary;
    const ScopedEnvironment temporaryFolder{"TMPDIR", temporary.Path().c_str()};
    Options options;
    GpsState state;
    Navigation navigation;
    AlarmSound alarm;
    CountingSound sound;
    LinuxProcessRunner runner;
    LinuxSpeechEngineFinder finder;
    VoiceGuide voice{finder, runner, sound};
};

TEST_F(SpokenArrivalTest, EspeakNgWritesTheWaveFileOfAOneCharacterText) {
    const ScopedEnvironment noFolder("TOLVANE_ESPEAK_DIR", nullptr);
    ASSERT_TRUE(voice.IsVoiceEngineAvailable(0)) << "espeak-ng must be installed";
    alarm.sounding = true;
    EXPECT_TRUE(Arrive());
    const std::string wave = testing::ReadFileBytes(temporary.File(kVoiceGuideWaveName));
    EXPECT_EQ(wave.substr(0, 4), "RIFF");
    EXPECT_EQ(wave.substr(8, 4), "WAVE");
    EXPECT_GT(wave.size(), 1000u);
    EXPECT_EQ(sound.plays, std::vector<std::string>{temporary.File(kVoiceGuideWaveName)});
    // Spoken, so the alarm sound did not replace the looping alarm.
    EXPECT_TRUE(alarm.sounding);
    EXPECT_EQ(CurrentDestinationIndex(navigation), kNoDestination);
}

TEST_F(SpokenArrivalTest, MissingEngineFallsBackToTheAlarmSound) {
    TemporaryFolder emptyFolder;
    const ScopedEnvironment folder("TOLVANE_ESPEAK_DIR", emptyFolder.Path().c_str());
    const ScopedEnvironment path("PATH", "/nonexistent");
    EXPECT_FALSE(voice.IsVoiceEngineAvailable(0));
    EXPECT_FALSE(voice.SpeakText(0, "A"));
    alarm.sounding = true;
    EXPECT_TRUE(Arrive());
    EXPECT_FALSE(alarm.sounding);
    EXPECT_EQ(sound.plays, std::vector<std::string>{alarm.path});
    EXPECT_EQ(CurrentDestinationIndex(navigation), kNoDestination);
    struct stat info {};
    EXPECT_NE(stat(temporary.File(kVoiceGuideWaveName).c_str(), &info), 0);
}

}  // namespace
}  // namespace tolvane::platform
