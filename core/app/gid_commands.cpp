#include "core/app/gid_commands.h"

#include "core/app/language_messages.h"

namespace tolvane {
namespace {

// Platform codes of the generation-4 devices, on which the shared GPS
// service is not offered.
constexpr int kPlatformCodeKeysGeneration4 = 31;
constexpr int kPlatformCodeTouchGeneration4 = 32;

}  // namespace

bool StartGidSource(GidSource& source, const GidStartContext& context) {
    const int platform = GetPlatformCode(context.deviceQueries);
    if (platform == kPlatformCodeKeysGeneration4 || platform == kPlatformCodeTouchGeneration4) {
        ShowLanguageMessage(context.host, kTextNoReceiverChosen, MessageIcon::kInformation);
        return false;
    }
    if (!LoadGidLibrary(source, context.libraryLoader)) {
        UnloadGidLibrary(source);
        ShowLanguageMessage(context.host, kTextGidLibraryMissing, MessageIcon::kStop);
        return false;
    }
    source.functions.init();
    if (source.functions.openDevice(context.moduleInstance, context.mainWindow, 0) != 0) {
        return true;
    }
    source.functions.unInit();
    UnloadGidLibrary(source);
    ShowLanguageMessage(context.host, kTextGidOpenFailed, MessageIcon::kStop);
    return false;
}

void StopGidSource(GidSource& source) {
    if (source.functions.unInit != nullptr) source.functions.unInit();
    UnloadGidLibrary(source);
    source.deviceInfo = GidDeviceInfo{};
    source.positionInfo = GidPositionInfo{};
}

SourceReading ReadGidSource(GidSource& source) {
    SourceReading reading;
    reading.connected = GidConnectionState(source);
    GidReadSnapshot(source, reading.snapshot);
    return reading;
}

}  // namespace tolvane
