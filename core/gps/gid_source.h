#pragma once

#include <memory>

#include "core/base/dynamic_library.h"
#include "core/gps/gid_records.h"
#include "core/gps/gps_state.h"

namespace tolvane {

// One slot per export of the companion library; all null while it is not
// loaded.
struct GidFunctionTable {
    GidInitFunction init = nullptr;
    GidUnInitFunction unInit = nullptr;
    GidOpenDeviceFunction openDevice = nullptr;
    // Never called (the library closes the device in "GID_UnInit"), but a
    // library without it is refused all the same.
    GidCloseDeviceFunction closeDevice = nullptr;
    GidPositionInfoFunction getPositionInfo = nullptr;
    GidDeviceInfoFunction getDeviceInfo = nullptr;
    GidConnectionStateFunction getConnectionState = nullptr;
};

// The shared GPS service source: the loaded library, its function table and
// the two records it fills. Lives in the application state; the library is
// loaded only while this source runs.
struct GidSource {
    std::unique_ptr<DynamicLibrary> library;
    GidFunctionTable functions;
    GidPositionInfo positionInfo{};
    GidDeviceInfo deviceInfo{};
};

// Loads ProgramLibraryFile("GID.QX.so") and resolves the seven exports in table
// order. Succeeds only when the library loaded and every export was found;
// otherwise the source is unloaded again.
bool LoadGidLibrary(GidSource& source, DynamicLibraryLoader& loader);

// Nulls the slots and frees the library when loaded.
void UnloadGidLibrary(GidSource& source);

// The connection state the library reports, 0 while that slot is null.
int GidConnectionState(GidSource& source);

// When the position and device slots are both set: fills the two records
// from the library and copies every field of the position record into
// snapshot; returns whether it did. Otherwise snapshot is left alone.
bool GidReadSnapshot(GidSource& source, GpsFix& snapshot);

}  // namespace tolvane
