#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace tolvane::fuzz {

// The fuzzer's input as a file in memory, for the readers that take a path.
class InputFile {
  public:
    InputFile(const std::uint8_t* data, std::size_t size)
        : fd_(memfd_create("fuzz-input", MFD_CLOEXEC)) {
        if (fd_ < 0 || write(fd_, data, size) != static_cast<ssize_t>(size)) std::abort();
    }
    ~InputFile() { close(fd_); }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    std::string Path() const { return "/proc/self/fd/" + std::to_string(fd_); }

  private:
    int fd_;
};

}  // namespace tolvane::fuzz
