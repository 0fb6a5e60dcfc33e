#include "core/app/gps_setup_form.h"

#include "core/app/gid_commands.h"
#include "core/app/gps_commands.h"
#include "core/app/local_settings.h"
#include "core/app/shutdown.h"
#include "core/base/string_manager.h"

namespace tolvane {

std::string LiveLineText(const NmeaListenSummary& summary, std::uint32_t baudRate,
                         std::int64_t nowMilliseconds) {
    const std::string baud = std::to_string(baudRate);
    if (summary.sentences == 0) return FillLanguageText(kTextLiveNothingYet, {baud});
    const std::int64_t seconds = nowMilliseconds > summary.lastMilliseconds
                                     ? (nowMilliseconds - summary.lastMilliseconds) / 1000
                                     : 0;
    return FillLanguageText(kTextLiveHeard, {std::to_string(summary.sentences), baud,
                                             summary.lastSentence, std::to_string(seconds)});
}

std::string OtherGnssAdvice(const NmeaListenSummary& summary, bool multiGnss) {
    if (!TalksOnlyOtherGnss(summary)) return {};
    return FillLanguageText(multiGnss ? kTextLiveOtherGnssRead : kTextLiveOtherGnss,
                            {summary.otherTalker});
}

std::string ProbeLineText(const ProbeStatus& status, std::int64_t nowMilliseconds) {
    if (status.problem.fault != DeviceFault::kNone) return DeviceProblemText(status.problem);
    if (status.exhausted) return FillLanguageText(kTextLiveNoNmea);
    if (status.searching && status.summary.sentences == 0) {
        return FillLanguageText(kTextLiveTrying, {std::to_string(status.baudRate)});
    }
    return LiveLineText(status.summary, status.baudRate, nowMilliseconds);
}

std::string DeviceProblemText(const DeviceProblem& problem) {
    switch (problem.fault) {
        case DeviceFault::kNone:
            return {};
        case DeviceFault::kGone:
            return FillLanguageText(kTextDeviceGone, {problem.devicePath});
        case DeviceFault::kNoPermission:
            return FillLanguageText(kTextDeviceNoPermission,
                                    {problem.devicePath, problem.group, problem.group});
        case DeviceFault::kCannotOpen:
            return FillLanguageText(kTextDeviceCannotOpen, {problem.devicePath, problem.reason});
        case DeviceFault::kOther:
            break;
    }
    return problem.reason;
}

std::string GpsdStateText(bool answers, const std::string& address) {
    return FillLanguageText(answers ? kTextGpsdRunning : kTextGpsdNotRunning, {address});
}

std::string ListedSourceText(int source, bool found) {
    if (source < 0 || source >= kSetupSourceCount) return {};
    const std::string name = LanguageText(kSetupSourceTexts[source]);
    return found ? FillLanguageText(kTextSourceFound, {name}) : name;
}

std::string GnssShareStateText(bool answers, const std::string& path, const std::string& reason) {
    return answers ? FillLanguageText(kTextGnssShareAnswers, {path})
                   : FillLanguageText(kTextGnssShareSilent, {path, reason});
}

std::string ModemStateText(ModemFault fault, const std::string& modemPath) {
    return fault == ModemFault::kNone ? FillLanguageText(kTextModemFound, {modemPath})
                                      : ModemFaultText(fault);
}

std::string LinkNotWrittenText(const std::string& portName, const std::string& devicePath,
                               const std::string& reason) {
    return FillLanguageText(kTextLinkNotWritten, {portName, devicePath, reason});
}

int ShownGpsSource(int chosenSource) {
    return chosenSource > kGpsSourceGid && chosenSource < kSetupSourceCount ? chosenSource
                                                                             : kGpsSourceGid;
}

SourceActions ActionsOfSource(int source) {
    return {source == kGpsSourcePort, source == kGpsSourceGid, source == kSetupSourceGnssShare,
            source == kSetupSourceModemManager};
}

int ShownBaudIndex(const std::string& linkedDevice, int storedBaudIndex) {
    return linkedDevice.empty() ? kAutoBaudIndex : storedBaudIndex;
}

std::uint32_t ProbeBaudRate(int baudIndex) {
    return baudIndex == kAutoBaudIndex ? 0 : BaudRateForIndex(baudIndex);
}

int FoundBaudIndex(const ProbeStatus& status) {
    if (status.searching || status.summary.sentences == 0) return -1;
    return BaudIndexForRate(status.baudRate);
}

int BaudIndexForRate(std::uint32_t baudRate) {
    for (int index = 0; index < kBaudCount; ++index) {
        if (BaudRateForIndex(index) == baudRate) return index;
    }
    return -1;
}

namespace {

// The listed source of a stored source and the receiver beside it.
int SetupSourceOf(int storedSource, DaemonReceiver receiver) {
    if (storedSource != kGpsSourcePort) return storedSource;
    switch (receiver) {
        case DaemonReceiver::kGnssShare:
            return kSetupSourceGnssShare;
        case DaemonReceiver::kModemManager:
            return kSetupSourceModemManager;
        case DaemonReceiver::kNone:
            break;
    }
    return kGpsSourcePort;
}

DaemonReceiver DaemonReceiverOf(int setupSource) {
    if (setupSource == kSetupSourceGnssShare) return DaemonReceiver::kGnssShare;
    if (setupSource == kSetupSourceModemManager) return DaemonReceiver::kModemManager;
    return DaemonReceiver::kNone;
}

}  // namespace

GpsSetupChoice CurrentGpsSetup(const AppState& app) {
    GpsSetupChoice choice;
    choice.source = SetupSourceOf(ConfiguredGpsSource(app), app.runtime.daemonReceiver);
    choice.gnssShareSocket = app.runtime.gnssShareSocket;
    choice.portIndex = app.options.portIndex;
    choice.baudIndex = app.options.baudIndex;
    choice.bluetoothName = app.runtime.bluetoothName;
    choice.bluetoothAddress = app.runtime.bluetoothAddress;
    choice.bluetoothChannel = app.runtime.bluetoothChannel;
    choice.autoBluetooth = app.options.autoBluetooth != 0;
    choice.multiGnss = app.multiGnss;
    return choice;
}

void ApplyGpsSetup(Program& program, const GpsSetupChoice& choice, int foundBaudIndex) {
    Options& options = program.app.options;
    // A run that reads another source keeps reading it; the choice is what
    // the settings will name.
    const int stored = DaemonReceiverOf(choice.source) == DaemonReceiver::kNone
                           ? choice.source
                           : static_cast<int>(kGpsSourcePort);
    if (program.app.configuredGpsSource) {
        program.app.configuredGpsSource = stored;
    } else {
        options.gpsSource = stored;
    }
    if (choice.portIndex >= 0 && choice.portIndex < kPortCount)
        options.portIndex = choice.portIndex;
    const int baudIndex = choice.baudIndex >= 0 ? choice.baudIndex : foundBaudIndex;
    if (baudIndex >= 0 && baudIndex < kBaudCount) options.baudIndex = baudIndex;
    WriteWideField(options.bluetoothName, choice.bluetoothName);
    options.bluetoothAddress[0] = static_cast<std::uint32_t>(choice.bluetoothAddress);
    options.bluetoothAddress[1] = static_cast<std::uint32_t>(choice.bluetoothAddress >> 32);
    options.autoBluetooth = choice.autoBluetooth ? 1 : 0;
    // The runtime copies are made the way start-up makes them, so a
    // receiver counts as chosen by the same rule.
    OptionsRuntime& runtime = program.app.runtime;
    const OptionsRuntime kept = runtime;
    CopyOptionsToRuntime(options, runtime);
    runtime.storageLocation = kept.storageLocation;
    runtime.poiFolder = kept.poiFolder;
    runtime.waypointFile = kept.waypointFile;
    runtime.bluetoothChannel = choice.bluetoothChannel;
    runtime.daemonReceiver = DaemonReceiverOf(choice.source);
    // What the user chose is never searched for again.
    runtime.firstStart = false;
    if (!choice.gnssShareSocket.empty()) runtime.gnssShareSocket = choice.gnssShareSocket;
    program.app.multiGnss = choice.multiGnss;
    SaveLocalSettings(program);
    SaveProgramSettings(program);
}

std::string ReceiverText(const std::string& name, std::uint64_t address) {
    if (address == 0) return LanguageText(kTextSetupNoReceiver);
    const std::string shown = name.empty() ? std::string() : name + " ";
    return shown + "(" + BluetoothAddressText(address) + ")";
}

std::string SearchProblemText(const SearchProblem& problem) {
    std::string code = kErrorBluetoothPort;
    if (problem.error != 0) code += ", " + std::to_string(problem.error);
    if (problem.noAdapter) return FillLanguageText(kTextSearchNoAdapter, {code});
    return FillLanguageText(kTextSearchFailed, {problem.words, code});
}

std::string SearchEndText(const std::string& problem, std::size_t found) {
    if (!problem.empty()) return problem;
    if (found == 0) return LanguageText(kTextSearchNoneFound);
    return FillLanguageText(kTextSearchFound, {std::to_string(found)});
}

void AddFoundReceiver(std::vector<BluetoothReceiver>& receivers, const BluetoothReceiver& found) {
    for (BluetoothReceiver& known : receivers) {
        if (known.address != found.address) continue;
        if (known.name.empty()) known.name = found.name;
        if (known.channel == 0) known.channel = found.channel;
        return;
    }
    receivers.push_back(found);
}

}  // namespace tolvane
