#pragma once

#include <string>

#include "core/app/host.h"
#include "core/base/device_helpers.h"
#include "core/base/dynamic_library.h"
#include "core/gps/gid_source.h"
#include "core/gps/port_source.h"
#include "core/gps/serial_device.h"
#include "core/state/app_state.h"

namespace tolvane {

// The services of the machine the program runs on, all owned by the caller
// and outliving the program.
struct ProgramServices {
    Host& host;
    const DeviceQueries& deviceQueries;
    DynamicLibraryLoader& libraryLoader;
    SerialDevice& serialDevice;  // the device the port sources read
};

// Where the program's own files lie.
struct ProgramFiles {
    std::string optionsPath;      // Options.dat
    std::string alarmPath;        // Alarm.wav
    std::string manualPath;       // the user manual; empty when none is installed
    std::string documentsFolder;  // the user's documents folder, the default data root
};

// The screen as the window reads it before it is created.
struct ScreenMetrics {
    int dpiX = 96;
    int dpiY = 96;
    int width = 0;
    int height = 0;
};

// The running program: the application state, both GPS sources and what
// the commands, keys and timers need. The window's shell makes one and
// hands it to every core call.
struct Program {
    Program(const ProgramServices& services, const ProgramFiles& files);
    // Stops a running source, so that no reader thread outlives the host.
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    Host& host;
    const DeviceQueries& deviceQueries;
    DynamicLibraryLoader& libraryLoader;
    ProgramFiles files;

    AppState app;
    PortSource port;
    GidSource gid;

    std::string title;  // the product name of the language file, every box's caption
    ScreenMetrics screen;
    int mainTimerId = 0;
    int trackTimerId = 0;
    bool screenHeld = false;  // "Keep backlight on" holds the screen on
    // The source the running GPS was started with, so that a change of the
    // setting while it runs still stops the right one.
    int runningSource = 0;
    // "Auto turn on/off Bluetooth" switched the radio on for Start GPS, so
    // exit switches it off again.
    bool radioSwitchedOn = false;
};

// The product name of the language file, as the window title and caption.
std::string ProductTitle();

}  // namespace tolvane
