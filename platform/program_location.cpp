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

// The installed prefix of an executable folder <prefix>/bin whose resource
// folder holds the language file; empty for a build tree or a portable copy.
std::filesystem::path InstalledPrefix(const std::string& executableFolder) {
    const std::filesystem::path bin(executableFolder);
    if (bin.filename() != "bin") return {};
    std::error_code error;
    const bool installed = std::filesystem::exists(
        bin.parent_path() / TOLVANE_RESOURCE_INSTALL_DIR / "tolvane_ENU.dat", error);
    return installed ? bin.parent_path() : std::filesystem::path();
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
        const std::filesystem::path prefix = InstalledPrefix(paths.programFolder);
        if (!prefix.empty()) {
            paths.programFolder = (prefix / TOLVANE_RESOURCE_INSTALL_DIR).string();
            paths.libraryFolder = (prefix / TOLVANE_LIBRARY_INSTALL_DIR).string();
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
