#include "platform/program_location.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "core/base/diagnostic_log.h"

namespace tolvane::platform {

std::string ExecutablePath() {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string() : path.string();
}

std::string ExecutableFolder() {
    const std::string path = ExecutablePath();
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string(".") : path.substr(0, slash);
}

namespace {

// The installed resource folder for an executable folder <prefix>/bin, when
// the language file lies there; empty for a build tree or a portable copy.
std::string InstalledResourceFolder(const std::string& executableFolder) {
    const std::filesystem::path bin(executableFolder);
    if (bin.filename() != "bin") return {};
    const std::filesystem::path resources = bin.parent_path() / "share" / "tolvane";
    std::error_code error;
    return std::filesystem::exists(resources / "tolvane_ENU.dat", error) ? resources.string()
                                                                         : std::string();
}

std::string UserSettingsFolder() {
    const char* config = std::getenv("XDG_CONFIG_HOME");
    const char* home = std::getenv("HOME");
    std::filesystem::path folder;
    if (config != nullptr && *config == '/') {
        folder = config;
    } else {
        folder = std::filesystem::path(home != nullptr ? home : "/tmp") / ".config";
    }
    folder /= "tolvane";
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    return folder.string();
}

}  // namespace

ProgramPaths ResolveProgramPaths(const std::string& home) {
    ProgramPaths paths;
    const char* environmentHome = std::getenv("TOLVANE_HOME");
    if (!home.empty()) {
        paths.programFolder = home;
    } else if (environmentHome != nullptr && *environmentHome != '\0') {
        paths.programFolder = environmentHome;
    } else {
        paths.programFolder = ExecutableFolder();
        const std::string installed = InstalledResourceFolder(paths.programFolder);
        if (!installed.empty()) {
            paths.programFolder = installed;
            paths.settingsFolder = UserSettingsFolder();
        }
    }
    while (paths.programFolder.size() > 1 && paths.programFolder.back() == '/') {
        paths.programFolder.pop_back();
    }
    return paths;
}

void InstallProgramPaths(const std::string& home) {
    SetProgramPaths(ResolveProgramPaths(home));
    LogEnvironment environment;
    environment.executablePath = ExecutablePath();
    environment.processId = static_cast<std::uint32_t>(getpid());
    environment.threadId = [] { return static_cast<std::uint32_t>(syscall(SYS_gettid)); };
    DiagnosticLog::SetEnvironment(std::move(environment));
}

}  // namespace tolvane::platform
