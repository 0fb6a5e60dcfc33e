#include "core/gps/gid_source.h"

#include <algorithm>
#include <iterator>

#include "core/base/program_paths.h"

namespace tolvane {
namespace {

template <typename Function>
bool ResolveInto(const DynamicLibrary& library, const char* name, Function& slot) {
    slot = reinterpret_cast<Function>(library.Resolve(name));
    return slot != nullptr;
}

bool ResolveAll(const DynamicLibrary& library, GidFunctionTable& table) {
    return ResolveInto(library, kGidInitName, table.init) &&
           ResolveInto(library, kGidUnInitName, table.unInit) &&
           ResolveInto(library, kGidOpenDeviceName, table.openDevice) &&
           ResolveInto(library, kGidCloseDeviceName, table.closeDevice) &&
           ResolveInto(library, kGidPositionInfoName, table.getPositionInfo) &&
           ResolveInto(library, kGidDeviceInfoName, table.getDeviceInfo) &&
           ResolveInto(library, kGidConnectionStateName, table.getConnectionState);
}

template <typename Element, std::size_t N>
void CopyArray(const Element (&from)[N], Element (&to)[N]) {
    std::copy(std::begin(from), std::end(from), std::begin(to));
}

}  // namespace

bool LoadGidLibrary(GidSource& source, DynamicLibraryLoader& loader) {
    source.library = loader.Load(ProgramLibraryFile(kGidLibraryFileName));
    if (source.library != nullptr && ResolveAll(*source.library, source.functions)) return true;
    UnloadGidLibrary(source);
    return false;
}

void UnloadGidLibrary(GidSource& source) {
    source.functions = GidFunctionTable{};
    source.library.reset();
}

int GidConnectionState(GidSource& source) {
    return source.functions.getConnectionState != nullptr ? source.functions.getConnectionState()
                                                          : 0;
}

bool GidReadSnapshot(GidSource& source, GpsFix& snapshot) {
    const GidFunctionTable& functions = source.functions;
    if (functions.getPositionInfo == nullptr || functions.getDeviceInfo == nullptr) return false;
    functions.getPositionInfo(&source.positionInfo);
    functions.getDeviceInfo(&source.deviceInfo);

    const GidPositionInfo& info = source.positionInfo;
    snapshot.fixValid = info.fixValid;
    snapshot.latitude = info.latitude;
    snapshot.longitude = info.longitude;
    snapshot.altitude = info.altitude;
    snapshot.course = info.course;
    snapshot.speedKnots = info.speedKnots;
    snapshot.satellitesInView = info.satellitesInView;
    snapshot.satellitesUsed = info.satellitesUsed;
    CopyArray(info.satPrn, snapshot.satPrn);
    CopyArray(info.satSnr, snapshot.satSnr);
    CopyArray(info.satElevation, snapshot.satElevation);
    CopyArray(info.satAzimuth, snapshot.satAzimuth);
    snapshot.pdop = info.pdop;
    snapshot.hdop = info.hdop;
    snapshot.vdop = info.vdop;
    snapshot.fixType = info.fixType;
    snapshot.fixTime = info.fixTime;
    return true;
}

}  // namespace tolvane
