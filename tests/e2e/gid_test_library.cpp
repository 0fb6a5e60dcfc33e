// A stand-in for GID.QX.so that lacks the export named by the compile
// definition LEAVE_OUT_<name> (or none), for the loader's refusal tests.

#include <cstdint>

#define TEST_EXPORT extern "C" __attribute__((visibility("default")))

#ifndef LEAVE_OUT_GID_Init
TEST_EXPORT std::int32_t GID_Init() {
    return 1;
}
#endif
#ifndef LEAVE_OUT_GID_UnInit
TEST_EXPORT std::int32_t GID_UnInit() {
    return 1;
}
#endif
#ifndef LEAVE_OUT_GID_OpenGIDDevice
TEST_EXPORT std::int32_t GID_OpenGIDDevice(void*, void*, std::int32_t) {
    return 1;
}
#endif
#ifndef LEAVE_OUT_GID_CloseGIDDevice
TEST_EXPORT std::int32_t GID_CloseGIDDevice() {
    return 1;
}
#endif
#ifndef LEAVE_OUT_GID_GetGPSPositionInfo
TEST_EXPORT std::int32_t GID_GetGPSPositionInfo(void*) {
    return 1;
}
#endif
#ifndef LEAVE_OUT_GID_GetGPSDeviceInfo
TEST_EXPORT std::int32_t GID_GetGPSDeviceInfo(void*) {
    return 1;
}
#endif
#ifndef LEAVE_OUT_GID_GetGPSConnectionState
TEST_EXPORT std::int32_t GID_GetGPSConnectionState() {
    return 1;
}
#endif
