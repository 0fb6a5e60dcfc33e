#include "platform/speech_engine_finder.h"

#include <cstdlib>

#include "platform/process_runner.h"

namespace tolvane::platform {
namespace {

constexpr const char* kEngineNames[] = {"espeak-ng", "espeak"};

}  // namespace

std::string FindSpeechEngine(const char* engineFolder, const char* searchPath) {
    const bool folderConfigured = engineFolder != nullptr && *engineFolder != '\0';
    for (const char* name : kEngineNames) {
        const std::string program = folderConfigured
                                        ? WithoutTrailingSlash(engineFolder) + "/" + name
                                        : FindProgramOnPath(name, searchPath);
        if (!program.empty() && IsExecutableFile(program)) return program;
    }
    return {};
}

std::string LinuxSpeechEngineFinder::FindEngineProgram() const {
    return FindSpeechEngine(std::getenv("TOLVANE_ESPEAK_DIR"), std::getenv("PATH"));
}

}  // namespace tolvane::platform
