#include "core/base/program_paths.h"

namespace tolvane {
namespace {

ProgramPaths& Paths() {
    static ProgramPaths paths;
    return paths;
}

}  // namespace

const ProgramPaths& GetProgramPaths() {
    return Paths();
}

void SetProgramPaths(const ProgramPaths& paths) {
    Paths() = paths;
}

std::string ProgramFile(const std::string& name) {
    return Paths().programFolder + "/" + name;
}

std::string ProgramLibraryFile(const std::string& name) {
    return Paths().libraryFolder.empty() ? ProgramFile(name) : Paths().libraryFolder + "/" + name;
}

std::string SettingsFolder() {
    return Paths().settingsFolder.empty() ? Paths().programFolder : Paths().settingsFolder;
}

std::string SettingsFile(const std::string& name) {
    return SettingsFolder() + "/" + name;
}

namespace {

std::string NameWithSuffix(const std::string& suffix) {
    std::string name = Paths().baseName;
    const std::size_t dot = name.rfind('.');
    if (dot != std::string::npos) name.erase(dot);
    return name + suffix;
}

}  // namespace

std::string ProgramFileWithSuffix(const std::string& suffix) {
    return ProgramFile(NameWithSuffix(suffix));
}

std::string SettingsFileWithSuffix(const std::string& suffix) {
    return SettingsFile(NameWithSuffix(suffix));
}

}  // namespace tolvane
