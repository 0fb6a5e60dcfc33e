#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "core/base/services.h"

namespace tolvane::platform {

// How a helper program is started. Its standard input and output are
// /dev/null in every case, so nothing it prints mixes into ours.
struct ChildSetup {
    bool discardErrors = false;    // standard error to /dev/null as well
    bool ownProcessGroup = false;  // so that it and its children can be stopped together
};

// Starts program (a path, not searched) with the arguments and returns the
// child's process id, or -1 when it could not be started. The child gets no
// descriptor of ours besides 0..2, and default signal handling.
pid_t StartProcess(const std::string& program, const std::vector<std::string>& arguments,
                   const ChildSetup& setup);

// Waits without a time limit for the child to end. Its exit code, or -1 when
// it was killed by a signal or could not be waited for.
int WaitForProcess(pid_t process);

// The first directory of searchPath (a $PATH value) that holds an executable
// file called name, joined with name; empty when there is none. Empty
// entries (the current directory) are skipped on purpose.
std::string FindProgramOnPath(const std::string& name, const char* searchPath);

bool IsExecutableFile(const std::string& path);

// Removes one trailing "/", as a configured folder may carry it.
std::string WithoutTrailingSlash(std::string folder);

// Runs the speech engine and waits for it; the temporary folder is $TMPDIR,
// else /tmp.
class LinuxProcessRunner final : public ProcessRunner {
  public:
    bool RunAndWait(const std::string& program, const std::vector<std::string>& arguments) override;
    std::string TemporaryFolder() const override;
};

}  // namespace tolvane::platform
