#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "core/base/services.h"

namespace tolvane::platform {

// The sound service of the command-line tool: a wave file is played in the
// background with paplay or aplay when one of them is on $PATH. Every call
// reports success, also for a missing file, a missing player or a machine
// without an audio device, because the program repeats sound calls until
// they succeed.
class CommandLineSoundService final : public SoundService {
  public:
    CommandLineSoundService();
    ~CommandLineSoundService() override;
    CommandLineSoundService(const CommandLineSoundService&) = delete;
    CommandLineSoundService& operator=(const CommandLineSoundService&) = delete;

    // A new sound replaces the one playing, as with every sound service.
    bool PlaySoundFile(const std::string& path, SoundMode mode) override;
    bool StopSound() override;
    // The tool has no built-in sounds.
    bool PlayLimitBeep() override { return true; }

  private:
    void StopPlayer();

    std::vector<std::string> playerCommand_;  // program and options; empty without a player
    pid_t player_ = -1;
};

}  // namespace tolvane::platform
