#pragma once

#include <string>

namespace tolvane::platform {

// The lock that tells a running copy of the program from a second one: a
// file locked for as long as the first copy lives. The kernel drops the
// lock when its process ends, however it ends, so a crashed copy never
// keeps the next one out.
class LockFile {
  public:
    enum class Result { kAcquired, kHeldElsewhere, kFailed };

    LockFile() = default;
    ~LockFile();
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;

    // Takes the lock at path, creating the file when missing. kFailed when
    // the file cannot be opened.
    Result Acquire(const std::string& path);
    bool Held() const { return fd_ >= 0; }

  private:
    int fd_ = -1;
};

// The folder of per-session files such as the lock: $XDG_RUNTIME_DIR, else
// a folder of this user's own in the temporary folder.
std::string RuntimeFolder();

}  // namespace tolvane::platform
