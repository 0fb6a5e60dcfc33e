// The seven exports of GID.QX.so, the program's window on the shared GPS
// service. Everything else in the library is hidden (see gid_exports.map).

#include <cstdint>
#include <type_traits>

#include "core/gps/gid_records.h"
#include "gid/gpsd_session.h"

namespace {

// One session per process: the program loads the library while the GPS
// source runs. Its destructor stops the worker if the library is unloaded
// without "GID_UnInit".
tolvane::gid::GpsdSession& Session() {
    static tolvane::gid::GpsdSession session;
    return session;
}

}  // namespace

#define GID_EXPORT extern "C" __attribute__((visibility("default")))

GID_EXPORT std::int32_t GID_Init() {
    Session().Clear();
    return 1;
}

// Closes the device as well: the program never calls "GID_CloseGIDDevice".
GID_EXPORT std::int32_t GID_UnInit() {
    Session().Close();
    Session().Clear();
    return 1;
}

// The instance and window handles are not needed: the program polls.
GID_EXPORT std::int32_t GID_OpenGIDDevice(void* /*instance*/, void* /*window*/,
                                          std::int32_t /*flags*/) {
    return Session().Open() ? 1 : 0;
}

GID_EXPORT std::int32_t GID_CloseGIDDevice() {
    Session().Close();
    return 1;
}

GID_EXPORT std::int32_t GID_GetGPSPositionInfo(tolvane::GidPositionInfo* info) {
    if (info == nullptr) return 0;
    *info = Session().Position();
    return 1;
}

GID_EXPORT std::int32_t GID_GetGPSDeviceInfo(tolvane::GidDeviceInfo* info) {
    if (info == nullptr) return 0;
    *info = Session().Device();
    return 1;
}

GID_EXPORT std::int32_t GID_GetGPSConnectionState() {
    return Session().ReceiverConnected() ? 1 : 0;
}

// The exports must have exactly the types the program calls them through.
static_assert(std::is_same_v<decltype(&GID_Init), tolvane::GidInitFunction>);
static_assert(std::is_same_v<decltype(&GID_UnInit), tolvane::GidUnInitFunction>);
static_assert(std::is_same_v<decltype(&GID_OpenGIDDevice), tolvane::GidOpenDeviceFunction>);
static_assert(std::is_same_v<decltype(&GID_CloseGIDDevice), tolvane::GidCloseDeviceFunction>);
static_assert(std::is_same_v<decltype(&GID_GetGPSPositionInfo), tolvane::GidPositionInfoFunction>);
static_assert(std::is_same_v<decltype(&GID_GetGPSDeviceInfo), tolvane::GidDeviceInfoFunction>);
static_assert(
    std::is_same_v<decltype(&GID_GetGPSConnectionState), tolvane::GidConnectionStateFunction>);
