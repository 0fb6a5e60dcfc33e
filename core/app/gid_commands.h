#pragma once

#include "core/app/host.h"
#include "core/app/language_messages.h"
#include "core/base/device_helpers.h"
#include "core/base/dynamic_library.h"
#include "core/gps/gid_source.h"
#include "core/state/app_state.h"

namespace tolvane {

// The GPS source of the settings that runs through the shared GPS service;
// it is also taken for any value other than the port sources 1 and 2.
inline constexpr int kGpsSourceGid = 0;

// What starting the shared GPS service source needs from the program: the
// host for the message boxes, the machine's answers for the device-type
// check, the loader of the companion library, and the two handles the
// library is given (opaque to the core).
struct GidStartContext {
    Host& host;
    const DeviceQueries& deviceQueries;
    DynamicLibraryLoader& libraryLoader;
    void* moduleInstance = nullptr;
    void* mainWindow = nullptr;
};

// The source's part of the "Start GPS" command: refuses device types 31 and
// 32 (string 10700, information icon), loads the library (string 12000, stop
// icon, when it is missing or incomplete), initialises it and opens the
// device (string 12001, stop icon, when it will not open). True when the
// device is open; the caller then runs the first update, marks GPS as
// running and repaints.
bool StartGidSource(GidSource& source, const GidStartContext& context);

// The source's part of stopping the GPS: "GID_UnInit", unload, and clear the
// device and position records. The caller stops the sound and repaints.
void StopGidSource(GidSource& source);

// The source's reading for the per-second update: the connection state the
// library reports and, when it can be read, the position record.
SourceReading ReadGidSource(GidSource& source);

}  // namespace tolvane
