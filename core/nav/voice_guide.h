#pragma once

#include <string>

namespace tolvane {

class ProcessRunner;
class SoundService;

// The file the speech engine writes every utterance to, in the temporary
// folder; it is overwritten each time and never deleted.
inline constexpr char kVoiceGuideWaveName[] = "geotool_goto_voice_guide.wav";

// Where the eSpeak program is installed; platform/ looks at the configured
// folder and the search path.
class SpeechEngineFinder {
  public:
    virtual ~SpeechEngineFinder() = default;
    // The full path of an existing engine program, empty when there is none.
    virtual std::string FindEngineProgram() const = 0;
};

// Speaks destination texts through the external eSpeak program: the engine
// writes the text to a wave file, which is then played. Only engine index 0,
// eSpeak, exists; every other index is unavailable.
class VoiceGuide {
  public:
    VoiceGuide(const SpeechEngineFinder& finder, ProcessRunner& processes, SoundService& sound)
        : finder_(finder), processes_(processes), sound_(sound) {}

    bool IsVoiceEngineAvailable(int engineIndex) const;

    // Runs the engine, waiting without a time limit for it to end, then
    // starts playing its wave file once. True when the engine ran; whether
    // the sound could be played is not checked. Callers refuse empty texts.
    bool SpeakText(int engineIndex, const std::string& text);

  private:
    std::string EngineProgram(int engineIndex) const;

    const SpeechEngineFinder& finder_;
    ProcessRunner& processes_;
    SoundService& sound_;
};

}  // namespace tolvane
