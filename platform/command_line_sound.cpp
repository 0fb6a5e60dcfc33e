#include "platform/command_line_sound.h"

#include <signal.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/process_runner.h"

namespace tolvane::platform {
namespace {

std::vector<std::string> FindPlayer() {
    const char* searchPath = std::getenv("PATH");
    if (std::string paplay = FindProgramOnPath("paplay", searchPath); !paplay.empty()) {
        return {paplay};
    }
    if (std::string aplay = FindProgramOnPath("aplay", searchPath); !aplay.empty()) {
        return {aplay, "-q"};
    }
    return {};
}

bool IsReadableFile(const std::string& path) {
    return access(path.c_str(), R_OK) == 0;
}

}  // namespace

CommandLineSoundService::CommandLineSoundService() : playerCommand_(FindPlayer()) {}

CommandLineSoundService::~CommandLineSoundService() {
    StopPlayer();
}

bool CommandLineSoundService::PlaySoundFile(const std::string& path, SoundMode mode) {
    StopPlayer();
    if (playerCommand_.empty() || !IsReadableFile(path)) return true;
    std::vector<std::string> arguments(playerCommand_.begin() + 1, playerCommand_.end());
    arguments.push_back(path);
    const ChildSetup setup{.discardErrors = true, .ownProcessGroup = true};
    if (mode == SoundMode::kOnce) {
        player_ = StartProcess(playerCommand_.front(), arguments, setup);
        return true;
    }
    // The loop ends by itself when the player fails (no audio device), so a
    // machine without sound never spins.
    arguments.insert(arguments.begin(),
                     {"-c", "while \"$@\"; do :; done", "sh", playerCommand_.front()});
    player_ = StartProcess("/bin/sh", arguments, setup);
    return true;
}

bool CommandLineSoundService::StopSound() {
    StopPlayer();
    return true;
}

void CommandLineSoundService::StopPlayer() {
    if (player_ < 0) return;
    // The player runs in its own process group: the looping shell and the
    // player it started end together.
    kill(-player_, SIGTERM);
    WaitForProcess(player_);
    player_ = -1;
}

}  // namespace tolvane::platform
