#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "core/data/options.h"
#include "core/gps/gps_state.h"
#include "core/nav/navigation.h"
#include "core/nav/speed_alarm.h"
#include "core/nav/voice_guide.h"
#include "platform/process_runner.h"
#include "platform/speech_engine_finder.h"
#include "tests/core/nav/fake_services.h"
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

// The real engine and process runner on arrival: espeak-ng writes the wave
// file of a one-character text, which is then played once.
TEST(SpokenArrivalTest, EspeakNgWritesTheWaveFileOfAOneCharacterText) {
    TemporaryFolder temporary;
    const ScopedEnvironment temporaryFolder("TMPDIR", temporary.Path().c_str());
    const ScopedEnvironment noFolder("TOLVANE_ESPEAK_DIR", nullptr);
    LinuxProcessRunner runner;
    LinuxSpeechEngineFinder finder;
    testing::RecordingSound sound;
    VoiceGuide voice{finder, runner, sound};
    ASSERT_TRUE(voice.IsVoiceEngineAvailable(0)) << "espeak-ng must be installed";

    Options options;
    ResetOptions(options);
    GpsState state;
    state.connected = 1;
    state.fixValid = 1;
    Navigation navigation;
    DynamicList<GeoPoint> loaded;
    loaded.Append(testing::Destination(0, 0, -1, "A"));
    OpenDestinationList(navigation, loaded);
    AlarmSound alarm;
    alarm.path = temporary.File("Alarm.wav");
    alarm.sounding = true;
    EXPECT_TRUE(CheckArrival(state, options, navigation, voice, alarm, sound));

    const std::string wave = testing::ReadFileBytes(temporary.File(kVoiceGuideWaveName));
    EXPECT_EQ(wave.substr(0, 4), "RIFF");
    EXPECT_EQ(wave.substr(8, 4), "WAVE");
    EXPECT_GT(wave.size(), 1000u);
    ASSERT_EQ(sound.calls.size(), 1u);
    EXPECT_EQ(sound.calls[0].path, temporary.File(kVoiceGuideWaveName));
    // Spoken, so the alarm sound did not replace the looping alarm.
    EXPECT_TRUE(alarm.sounding);
}

}  // namespace
}  // namespace tolvane::platform
