#include "core/nav/voice_guide.h"

#include <gtest/gtest.h>

#include "tests/core/nav/fake_services.h"

namespace tolvane {
namespace {

using Arguments = std::vector<std::string>;

class VoiceGuideTest : public ::testing::Test {
  protected:
    testing::FakeEngineFinder finder;
    testing::FakeProcessRunner runner;
    testing::RecordingSound sound;
    VoiceGuide voice{finder, runner, sound};
};

TEST_F(VoiceGuideTest, SpeaksThroughTheEngineAndPlaysItsWaveOnce) {
    EXPECT_TRUE(voice.IsVoiceEngineAvailable(0));
    EXPECT_TRUE(voice.SpeakText(0, "Turn \"left\""));
    const std::string wave = "/tmp/fake/geotool_goto_voice_guide.wav";
    ASSERT_EQ(runner.runs.size(), 1u);
    EXPECT_EQ(runner.runs[0], (Arguments{"/usr/bin/espeak-ng", "-w", wave, "Turn \"left\""}));
    ASSERT_EQ(sound.calls.size(), 1u);
    EXPECT_EQ(sound.calls[0].path, wave);
    EXPECT_EQ(sound.calls[0].mode, SoundMode::kOnce);
}

// Only engine 0 exists, and only while its program is installed; a refused
// text runs nothing.
TEST_F(VoiceGuideTest, OtherEnginesAndAMissingProgramFailWithoutRunningAnything) {
    EXPECT_FALSE(voice.IsVoiceEngineAvailable(1));
    EXPECT_FALSE(voice.SpeakText(1, "Hello"));
    EXPECT_FALSE(voice.IsVoiceEngineAvailable(-1));
    finder.program.clear();
    EXPECT_FALSE(voice.IsVoiceEngineAvailable(0));
    EXPECT_FALSE(voice.SpeakText(0, "Hello"));
    EXPECT_TRUE(runner.runs.empty());
    EXPECT_TRUE(sound.calls.empty());
}

}  // namespace
}  // namespace tolvane
