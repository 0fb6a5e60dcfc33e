#include "core/app/gps_source_name.h"

#include "core/app/gid_commands.h"
#include "core/app/gps_commands.h"
#include "core/base/string_manager.h"

namespace tolvane {
namespace {

std::string PortSourceName(const AppState& app, const SourcePlaces& places) {
    switch (app.runtime.daemonReceiver) {
        case DaemonReceiver::kGnssShare:
            return FillLanguageText(kTextSourceGnssShare, {app.runtime.gnssShareSocket});
        case DaemonReceiver::kModemManager:
            return LanguageText(kTextSourceModem);
        case DaemonReceiver::kNone:
            break;
    }
    const std::string port = PortDeviceName(app.options.portIndex);
    if (places.portDevice.empty()) return FillLanguageText(kTextSourcePort, {port});
    return FillLanguageText(kTextSourcePortDevice, {port, places.portDevice});
}

std::string BluetoothSourceName(const OptionsRuntime& runtime) {
    if (!runtime.receiverChosen) return LanguageText(kTextSourceNoBluetooth);
    return FillLanguageText(kTextSourceBluetooth, {runtime.bluetoothName});
}

}  // namespace

std::string GpsSourceName(const AppState& app, const SourcePlaces& places) {
    if (app.configuredGpsSource) return LanguageText(kTextSourceDemo);
    switch (app.options.gpsSource) {
        case kGpsSourceGid:
            return FillLanguageText(kTextSourceGpsd, {places.gpsdAddress});
        case kGpsSourcePort:
            return PortSourceName(app, places);
        case kGpsSourceBluetooth:
            return BluetoothSourceName(app.runtime);
        default:
            return {};
    }
}

}  // namespace tolvane
