#include "core/nav/voice_guide.h"

#include <vector>

#include "core/base/services.h"

namespace tolvane {
namespace {

constexpr int kEspeakEngineIndex = 0;

}  // namespace

std::string VoiceGuide::EngineProgram(int engineIndex) const {
    if (engineIndex != kEspeakEngineIndex) return {};
    return finder_.FindEngineProgram();
}

bool VoiceGuide::IsVoiceEngineAvailable(int engineIndex) const {
    return !EngineProgram(engineIndex).empty();
}

bool VoiceGuide::SpeakText(int engineIndex, const std::string& text) {
    const std::string program = EngineProgram(engineIndex);
    if (program.empty()) return false;
    const std::string wavePath = processes_.TemporaryFolder() + "/" + kVoiceGuideWaveName;
    // The engine's whole contract: "-w", the output file, the text as one
    // argument.
    if (!processes_.RunAndWait(program, {"-w", wavePath, text})) return false;
    sound_.PlaySoundFile(wavePath, SoundMode::kOnce);
    return true;
}

}  // namespace tolvane
