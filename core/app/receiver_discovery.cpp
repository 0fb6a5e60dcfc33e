#include "core/app/receiver_discovery.h"

#include "core/app/commands.h"
#include "core/app/gid_commands.h"
#include "core/app/gps_commands.h"
#include "core/base/string_manager.h"

namespace tolvane {

bool ShouldFindReceiver(const AppState& app) {
    return app.runtime.firstStart && !app.configuredGpsSource;
}

FoundReceiver FindReceiver(ReceiverProbes& probes, const std::string& gnssShareSocket) {
    FoundReceiver found;
    if (probes.SocketGivesNmea(gnssShareSocket)) {
        found.source = kSetupSourceGnssShare;
        found.where = gnssShareSocket;
    } else if (probes.ModemGivesNmea(found.where)) {
        found.source = kSetupSourceModemManager;
    } else if (probes.GpsdAnswers(found.where)) {
        found.source = kGpsSourceGid;
    } else if (probes.LoneUsbReceiverGivesNmea(found.where, found.baudIndex)) {
        found.source = kGpsSourcePort;
    }
    return found;
}

void TakeFoundReceiver(Program& program, const FoundReceiver& found) {
    if (found.source < 0) return;
    GpsSetupChoice choice = CurrentGpsSetup(program.app);
    choice.source = found.source;
    if (found.source == kGpsSourcePort) choice.baudIndex = found.baudIndex;
    ApplyGpsSetup(program, choice, found.baudIndex);
    if (!program.app.gpsRunning) OnCommand(program, kCommandStartGps);
    program.host.ShowNotice(
        FillLanguageText(kTextReceiverFound, {ListedSourceText(found.source, false), found.where}));
}

}  // namespace tolvane
