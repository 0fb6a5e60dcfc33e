#include "core/data/whole_file.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <thread>

namespace tolvane {
namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePointer = std::unique_ptr<std::FILE, FileCloser>;

// Opens with retries; a file that is busy or briefly missing (a card being
// remounted) often comes back within a second.
template <typename Opener>
FilePointer OpenWithRetries(int attempts, int* lastError, Opener open) {
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (attempt > 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(kWholeFileRetryMilliseconds));
        }
        errno = 0;
        FilePointer file(open());
        if (file) return file;
        if (lastError != nullptr) *lastError = errno;
    }
    return nullptr;
}

}  // namespace

int ReadWholeFile(const std::string& path, void* buffer, std::size_t size, int attempts,
                  int* lastError) {
    std::unique_ptr<unsigned char[]> scratch(new (std::nothrow) unsigned char[size]);
    if (!scratch) return 0;
    FilePointer file =
        OpenWithRetries(attempts, lastError, [&] { return std::fopen(path.c_str(), "rb"); });
    if (!file) return 0;
    std::memset(scratch.get(), 0, size);
    const std::size_t read = std::fread(scratch.get(), 1, size, file.get());
    if (read != size) return 0;
    std::memcpy(buffer, scratch.get(), size);
    return 1;
}

int WriteWholeFile(const std::string& path, const void* buffer, std::size_t size, int attempts,
                   int* lastError) {
    FilePointer file = OpenWithRetries(attempts, lastError, [&] {
        std::FILE* existing = std::fopen(path.c_str(), "r+b");
        return existing != nullptr ? existing : std::fopen(path.c_str(), "w+b");
    });
    if (!file) return 0;
    const std::size_t written = std::fwrite(buffer, 1, size, file.get());
    const bool flushed = std::fflush(file.get()) == 0;
    if (written != size || !flushed) {
        if (lastError != nullptr) *lastError = errno;
        return 0;
    }
    return 1;
}

}  // namespace tolvane
