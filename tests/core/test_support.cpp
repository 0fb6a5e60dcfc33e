#include "tests/core/test_support.h"

#include <atomic>
#include <cstdlib>
#include <random>
#include <sstream>

namespace tolvane::testing {

TemporaryFolder::TemporaryFolder() {
    static std::atomic<int> counter{0};
    const auto base = std::filesystem::temp_directory_path();
    std::random_device::result_type seed = std::random_device{}();
    path_ = (base / ("tolvane-test-" + std::to_string(seed) + "-" + std::to_string(counter++)))
                .string();
    std::filesystem::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
}

void TemporaryFolder::UseAsProgramFolder() const {
    ProgramPaths paths;
    paths.programFolder = path_;
    SetProgramPaths(paths);
}

std::string ReadFileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream buffer;
    buffer << in.rdbuf();
    return buffer.str();
}

void WriteFileBytes(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string TestDataFile(const std::string& name) {
    return std::string(TOLVANE_TEST_DATA_DIR) + "/" + name;
}

}  // namespace tolvane::testing
