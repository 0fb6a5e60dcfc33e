#pragma once

#include <memory>
#include <string>

namespace tolvane {

// A function of a loaded library, as the loader hands it out; the caller
// converts it to the function's real type.
using LibraryFunction = void (*)();

// A shared library loaded at run time. Unloaded when destroyed.
class DynamicLibrary {
  public:
    virtual ~DynamicLibrary() = default;
    // The exported function of that name, or null when the library lacks it.
    virtual LibraryFunction Resolve(const std::string& name) const = 0;
};

// Loads companion libraries by path; platform/ implements it over the system
// loader and tests with fakes.
class DynamicLibraryLoader {
  public:
    virtual ~DynamicLibraryLoader() = default;
    // Null when the file is missing or is no loadable library.
    virtual std::unique_ptr<DynamicLibrary> Load(const std::string& path) = 0;
};

}  // namespace tolvane
