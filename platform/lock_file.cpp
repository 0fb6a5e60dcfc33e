#include "platform/lock_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "platform/process_runner.h"

namespace tolvane::platform {

LockFile::~LockFile() {
    if (fd_ >= 0) close(fd_);
}

LockFile::Result LockFile::Acquire(const std::string& path) {
    if (fd_ >= 0) return Result::kAcquired;
    const int fd = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0) return Result::kFailed;
    if (flock(fd, LOCK_EX | LOCK_NB) != 0) {
        close(fd);
        return Result::kHeldElsewhere;
    }
    fd_ = fd;
    return Result::kAcquired;
}

std::string RuntimeFolder() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime != nullptr && *runtime != '\0') return WithoutTrailingSlash(runtime);
    // Without a session's folder, one of this user's own in the temporary
    // folder: a lock there must not keep another user's program out.
    const std::string folder =
        LinuxProcessRunner().TemporaryFolder() + "/tolvane-" + std::to_string(getuid());
    mkdir(folder.c_str(), 0700);
    return folder;
}

}  // namespace tolvane::platform
