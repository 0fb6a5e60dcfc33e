#pragma once

#include <memory>
#include <string>

#include "core/base/services.h"

class QSoundEffect;

namespace tolvane::shell {

// Plays wave files and the built-in limit beep through Qt Multimedia,
// always asynchronously. A machine without an audio output plays nothing
// and the calls return at once: the core repeats a sound call until it
// succeeds, so nothing here may fail or wait: every call reports success.
class SoundPlayer final : public SoundService {
  public:
    SoundPlayer();
    ~SoundPlayer() override;

    // Plays the file once or in a loop, replacing what plays; a missing
    // file plays nothing.
    bool PlaySoundFile(const std::string& path, SoundMode mode) override;
    bool StopSound() override;
    bool PlayLimitBeep() override;

  private:
    bool HaveAudioOutput();
    QSoundEffect& Effect(std::unique_ptr<QSoundEffect>& effect);

    int audioOutputKnown_ = -1;  // -1 not asked yet, else 0 or 1
    int plays_ = 0;
    std::unique_ptr<QSoundEffect> file_;
    std::unique_ptr<QSoundEffect> beep_;
};

}  // namespace tolvane::shell
