#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "core/base/program_paths.h"

namespace tolvane::testing {

// A fresh folder under the system's temporary folder, removed at the end;
// it also serves as the program folder of the test.
class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& Path() const { return path_; }
    std::string File(const std::string& name) const { return path_ + "/" + name; }

    // Makes this folder the program folder for the rest of the test.
    void UseAsProgramFolder() const;

  private:
    std::string path_;
};

std::string ReadFileBytes(const std::string& path);
void WriteFileBytes(const std::string& path, const std::string& bytes);

// The folder of the test data copied into the repository.
std::string TestDataFile(const std::string& name);

}  // namespace tolvane::testing
