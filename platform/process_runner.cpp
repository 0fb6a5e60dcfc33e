#include "platform/process_runner.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

extern char** environ;

namespace tolvane::platform {
namespace {

// The posix_spawn attribute and file-action objects, released on every path.
class SpawnSettings {
  public:
    SpawnSettings() {
        attributesReady_ = posix_spawnattr_init(&attributes_) == 0;
        actionsReady_ = posix_spawn_file_actions_init(&actions_) == 0;
    }
    ~SpawnSettings() {
        if (attributesReady_) posix_spawnattr_destroy(&attributes_);
        if (actionsReady_) posix_spawn_file_actions_destroy(&actions_);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    bool Prepare(const ChildSetup& setup) {
        if (!attributesReady_ || !actionsReady_) return false;
        return PrepareSignals(setup) && PrepareDescriptors(setup);
    }

    pid_t Spawn(const std::string& program, const std::vector<std::string>& arguments) {
        std::vector<char*> argv;
        argv.push_back(const_cast<char*>(program.c_str()));
        for (const std::string& argument : arguments) {
            argv.push_back(const_cast<char*>(argument.c_str()));
        }
        argv.push_back(nullptr);
        pid_t process = -1;
        if (posix_spawn(&process, program.c_str(), &actions_, &attributes_, argv.data(), environ) !=
            0) {
            return -1;
        }
        return process;
    }

  private:
    // Our threads may block or ignore signals (a closed pipe, for one); the
    // child must start clean, or it could not even be stopped.
    bool PrepareSignals(const ChildSetup& setup) {
        sigset_t none;
        sigset_t defaults;
        sigemptyset(&none);
        sigemptyset(&defaults);
        for (int number : {SIGTERM, SIGINT, SIGHUP, SIGPIPE, SIGCHLD}) sigaddset(&defaults, number);
        short flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
        if (setup.ownProcessGroup) flags |= POSIX_SPAWN_SETPGROUP;
        return posix_spawnattr_setsigmask(&attributes_, &none) == 0 &&
               posix_spawnattr_setsigdefault(&attributes_, &defaults) == 0 &&
               posix_spawnattr_setpgroup(&attributes_, 0) == 0 &&
               posix_spawnattr_setflags(&attributes_, flags) == 0;
    }

    // Only the three standard descriptors reach the child: a serial port or
    // a log file of ours must not stay open in a program we do not control.
    bool PrepareDescriptors(const ChildSetup& setup) {
        return posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY,
                                                0) == 0 &&
               posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY,
                                                0) == 0 &&
               (!setup.discardErrors ||
                posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY,
                                                 0) == 0) &&
               posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1) == 0;
    }

    posix_spawnattr_t attributes_;
    posix_spawn_file_actions_t actions_;
    bool attributesReady_ = false;
    bool actionsReady_ = false;
};

}  // namespace

pid_t StartProcess(const std::string& program, const std::vector<std::string>& arguments,
                   const ChildSetup& setup) {
    SpawnSettings settings;
    if (!settings.Prepare(setup)) return -1;
    return settings.Spawn(program, arguments);
}

int WaitForProcess(pid_t process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0) {
        if (errno != EINTR) return -1;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool IsExecutableFile(const std::string& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

std::string FindProgramOnPath(const std::string& name, const char* searchPath) {
    if (searchPath == nullptr) return {};
    const std::string path = searchPath;
    std::size_t start = 0;
    while (start <= path.size()) {
        std::size_t end = path.find(':', start);
        if (end == std::string::npos) end = path.size();
        if (end > start) {
            const std::string candidate =
                WithoutTrailingSlash(path.substr(start, end - start)) + "/" + name;
            if (IsExecutableFile(candidate)) return candidate;
        }
        start = end + 1;
    }
    return {};
}

std::string WithoutTrailingSlash(std::string folder) {
    if (!folder.empty() && folder.back() == '/') folder.pop_back();
    return folder;
}

bool LinuxProcessRunner::RunAndWait(const std::string& program,
                                    const std::vector<std::string>& arguments) {
    const pid_t process = StartProcess(program, arguments, ChildSetup{});
    if (process < 0) return false;
    WaitForProcess(process);
    return true;
}

std::string LinuxProcessRunner::TemporaryFolder() const {
    const char* folder = std::getenv("TMPDIR");
    return WithoutTrailingSlash(folder != nullptr && *folder != '\0' ? folder : "/tmp");
}

}  // namespace tolvane::platform
