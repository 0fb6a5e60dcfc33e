#include "core/data/whole_file.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <new>
#include <string>
#include <system_error>
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

// What path holds beyond its first size bytes: a write of the record keeps
// it, as a write in place over the record's bytes alone would.
std::string BytesBeyond(const std::string& path, std::size_t size) {
    std::string tail;
    const FilePointer file(std::fopen(path.c_str(), "rb"));
    if (!file || std::fseek(file.get(), static_cast<long>(size), SEEK_SET) != 0) return tail;
    char block[4096];
    std::size_t read = 0;
    while ((read = std::fread(block, 1, sizeof block, file.get())) > 0) tail.append(block, read);
    return tail;
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
    const std::string temporary = path + kWholeFileTemporarySuffix;
    const std::string tail = BytesBeyond(path, size);
    FilePointer file = OpenWithRetries(attempts, lastError,
                                       [&] { return std::fopen(temporary.c_str(), "wb"); });
    if (!file) return 0;
    const bool written = std::fwrite(buffer, 1, size, file.get()) == size &&
                         std::fwrite(tail.data(), 1, tail.size(), file.get()) == tail.size();
    const bool closed = std::fclose(file.release()) == 0;
    std::error_code error;
    if (written && closed) {
        std::filesystem::rename(temporary, path, error);
        if (!error) return 1;
    }
    if (lastError != nullptr) *lastError = error ? error.value() : errno;
    std::filesystem::remove(temporary, error);
    return 0;
}

}  // namespace tolvane
