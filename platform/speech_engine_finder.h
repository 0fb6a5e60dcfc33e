#pragma once

#include <string>

#include "core/nav/voice_guide.h"

namespace tolvane::platform {

// Finds eSpeak: in the folder named by $TOLVANE_ESPEAK_DIR when that is set,
// else on $PATH; "espeak-ng" is preferred over the older "espeak".
class LinuxSpeechEngineFinder final : public SpeechEngineFinder {
  public:
    std::string FindEngineProgram() const override;
};

// The search itself, for the given folder setting (null or empty when not
// set) and $PATH value. A configured folder is the only place looked at, so
// that a wrong setting shows as a missing engine rather than silently using
// another one.
std::string FindSpeechEngine(const char* engineFolder, const char* searchPath);

}  // namespace tolvane::platform
