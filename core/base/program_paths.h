#pragma once

#include <string>

namespace tolvane {

// Where the program keeps its own files: the language file, Options.dat,
// the diagnostic log, Alarm.wav and the companion library. Start-up sets it
// once (the executable's folder, or --home / TOLVANE_HOME).
struct ProgramPaths {
    std::string programFolder = ".";
    // Where the files the program writes live: Options.dat, the diagnostic
    // log and the port folder. The program folder itself when empty; an
    // installed program, whose folder is not the user's to write, keeps
    // them in the user's configuration folder.
    std::string settingsFolder;
    // Where the companion library lies. The program folder itself when
    // empty; an installed program keeps it under <prefix>/lib, because a
    // library built for one architecture has no place among the shared
    // data files.
    std::string libraryFolder{};
    // The name every per-program file is derived from, as if the program
    // file were programFolder/baseName.
    std::string baseName = "tolvane";
};

const ProgramPaths& GetProgramPaths();
void SetProgramPaths(const ProgramPaths& paths);

// programFolder + "/" + name.
std::string ProgramFile(const std::string& name);

// The companion library called name: in the library folder, else in the
// program folder.
std::string ProgramLibraryFile(const std::string& name);

// The folder of the files the program writes, and name in it.
std::string SettingsFolder();
std::string SettingsFile(const std::string& name);

// The program's own path with its extension (from the last "." of the file
// name) replaced by suffix: "tolvane" + "_ENU.dat" gives "tolvane_ENU.dat".
std::string ProgramFileWithSuffix(const std::string& suffix);
// The same name in the settings folder, for the diagnostic log.
std::string SettingsFileWithSuffix(const std::string& suffix);

}  // namespace tolvane
