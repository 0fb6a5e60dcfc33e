#pragma once

#include <memory>

#include "core/app/program.h"
#include "platform/device_queries.h"
#include "platform/dynamic_library.h"
#include "shell/command_line.h"
#include "shell/demo_run.h"
#include "shell/dialogs/modem_manager.h"
#include "shell/first_start_search.h"
#include "shell/main_window.h"
#include "shell/qt_host.h"
#include "shell/single_instance_lock.h"

namespace tolvane::shell {

// The program with its window: the host, the machine's services, the core
// program and the window, made and started in the order of start-up.
class ProgramWindow {
  public:
    explicit ProgramWindow(const CommandLine& line);
    ~ProgramWindow();
    ProgramWindow(const ProgramWindow&) = delete;
    ProgramWindow& operator=(const ProgramWindow&) = delete;

    // Runs start-up on a screen of the given metrics, up to the window shown,
    // the timers running and, for the demo, the GPS started. False when the
    // start ends there; ExitCode() then says how.
    bool Start(const ScreenMetrics& screen);
    int ExitCode() const { return exitCode_; }

    // Takes the receiver the first start's search found.
    void TakeFound(const FoundReceiver& found);

    // Sends a command as the menu does.
    void RunCommand(int id);

    Program& Core() { return program_; }
    QtHost& Host() { return host_; }
    MainWindow& Window() { return *window_; }

  private:
    bool demo_;
    QtHost host_;
    const platform::LinuxDeviceQueries deviceQueries_;
    platform::SystemLibraryLoader libraryLoader_;
    ModemManagerLocation modemLocation_;
    ModemSerialDevice modemDevice_{modemLocation_};
    RunSerialDevice serialDevice_;
    DemoRun demoRun_;
    SingleInstance instance_;
    Program program_;
    std::unique_ptr<MainWindow> window_;
    // Ends before the window goes, which its answer is posted to.
    FirstStartSearch firstStartSearch_;
    int exitCode_ = 0;
};

// The primary screen's logical dots per inch and size.
ScreenMetrics ReadScreen();

// The whole program: start-up, the event loop and shutdown. Returns the
// program's exit code.
int RunProgram(const CommandLine& line);

}  // namespace tolvane::shell
