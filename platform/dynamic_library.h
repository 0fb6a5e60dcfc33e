#pragma once

#include <memory>
#include <string>

#include "core/base/dynamic_library.h"

namespace tolvane::platform {

// Loads libraries with the system's dynamic loader (dlopen). Each library is
// loaded with its symbols kept to itself, so two companion libraries never
// see each other's functions. Why a library would not load goes to the
// debug trace.
class SystemLibraryLoader final : public DynamicLibraryLoader {
  public:
    std::unique_ptr<DynamicLibrary> Load(const std::string& path) override;
};

}  // namespace tolvane::platform
