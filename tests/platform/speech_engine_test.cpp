#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
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

std::uint32_t ReadLittleEndian32(const std::string& bytes, std::size_t offset) {
    std::uint32_t value = 0;
    for (int i = 3; i >= 0; --i) {
        value =
            value << 8 | static_cast<unsigned char>(bytes[offset + static_cast<std::size_t>(i)]);
    }
    return value;
}

// The size of the "data" chunk of a RIFF/WAVE file, 0 when there is none.
std::uint32_t WaveDataSize(const std::string& bytes) {
    if (bytes.size() < 12 || bytes.compare(0, 4, "RIFF") != 0 || bytes.compare(8, 4, "WAVE") != 0) {
        return 0;
    }
    for (std::size_t offset = 12; offset + 8 <= bytes.size();) {
        const std::uint32_t size = ReadLittleEndian32(bytes, offset + 4);
        if (bytes.compare(offset, 4, "data") == 0) return size;
        offset += 8 + size + (size & 1);
    }
    return 0;
}

TEST(SpeechEngineFinderTest, ConfiguredFolderWithOrWithoutTrailingSlash) {
    TemporaryFolder folder;
    WriteExecutable(folder.File("espeak"));
    const std::string expected = folder.File("espeak");
    EXPECT_EQ(FindSpeechEngine(folder.Path().c_str(), nullptr), expected);
    EXPECT_EQ(FindSpeechEngine((folder.Path() + "/").c_str(), nullptr), expected);
    WriteExecutable(folder.File("espeak-ng"));
    EXPECT_EQ(FindSpeechEngine(folder.Path().c_str(), nullptr), folder.File("espeak-ng"));
}

TEST(SpeechEngineFinderTest, ConfiguredFolderIsTheOnlyPlaceLookedAt) {
    TemporaryFolder configured, onPath;
    WriteExecutable(onPath.File("espeak-ng"));
    EXPECT_EQ(FindSpeechEngine(configured.Path().c_str(), onPath.Path().c_str()), "");
    EXPECT_EQ(FindSpeechEngine("", onPath.Path().c_str()), onPath.File("espeak-ng"));
    EXPECT_EQ(FindSpeechEngine(nullptr, onPath.Path().c_str()), onPath.File("espeak-ng"));
}

TEST(SpeechEngineFinderTest, SearchPathPrefersEspeakNgAnywhere) {
    TemporaryFolder first, second;
    WriteExecutable(first.File("espeak"));
    WriteExecutable(second.File("espeak-ng"));
    const std::string path = first.Path() + ":" + second.Path();
    EXPECT_EQ(FindSpeechEngine(nullptr, path.c_str()), second.File("espeak-ng"));
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
    EXPECT_GT(WaveDataSize(wave), 1000u);
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
