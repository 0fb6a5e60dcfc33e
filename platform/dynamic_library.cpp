#include "platform/dynamic_library.h"

#include <dlfcn.h>

#include "core/base/debug_trace.h"

namespace tolvane::platform {
namespace {

class SystemLibrary final : public DynamicLibrary {
  public:
    explicit SystemLibrary(void* handle) : handle_(handle) {}
    ~SystemLibrary() override { dlclose(handle_); }
    SystemLibrary(const SystemLibrary&) = delete;
    SystemLibrary& operator=(const SystemLibrary&) = delete;

    LibraryFunction Resolve(const std::string& name) const override {
        // POSIX guarantees that a symbol's address converts to a function
        // pointer.
        return reinterpret_cast<LibraryFunction>(dlsym(handle_, name.c_str()));
    }

  private:
    void* handle_;
};

}  // namespace

std::unique_ptr<DynamicLibrary> SystemLibraryLoader::Load(const std::string& path) {
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* error = dlerror();
        DebugTrace(error != nullptr ? std::string(error) + "\n" : "cannot load " + path + "\n");
        return nullptr;
    }
    return std::make_unique<SystemLibrary>(handle);
}

}  // namespace tolvane::platform
