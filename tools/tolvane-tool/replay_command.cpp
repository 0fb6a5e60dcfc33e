#include <ostream>
#include <string>

#include "core/base/string_manager.h"
#include "headless/replay.h"
#include "platform/program_location.h"
#include "tools/tolvane-tool/run_options.h"
#include "tools/tolvane-tool/tick_json.h"

namespace tolvane::tool {

int RunReplayCommand(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    headless::RunSettings settings;
    std::string logPath, error;
    for (std::size_t index = 0; index < arguments.size() && error.empty(); ++index) {
        if (ParseRunOption(arguments, index, settings, error)) continue;
        if (!logPath.empty() || arguments[index].starts_with("--")) {
            error = "unexpected argument '" + arguments[index] + "'";
        } else {
            logPath = arguments[index];
        }
    }
    if (error.empty() && logPath.empty()) error = "the NMEA log to play is missing";
    if (error.empty()) error = CheckRunSettings(settings);
    if (!error.empty()) {
        err << "tolvane-tool: replay: " << error << "\n\n" << UsageText();
        return kExitUsage;
    }
    Options options;
    if (!headless::MakeRunOptions(settings, options, error)) {
        err << "tolvane-tool: replay: " << error << '\n';
        return kExitFailure;
    }
    // The message of a track file that cannot be written comes from the
    // language file in the program folder.
    platform::InstallProgramPaths({});
    CStringManager::GetInstance().Load(kLanguageEnglish, kSubLanguageEnglishUs);
    const auto printTick = [&out](AppState& app, FileTime /*utc*/) {
        out << TickJson(app) << '\n';
        return true;
    };
    headless::ReplayTotals totals;
    if (!headless::ReplayRecordingFile(logPath, settings, options, err,
                                       settings.json ? headless::TickObserver(printTick) : nullptr,
                                       totals, error)) {
        if (!error.empty()) err << "tolvane-tool: replay: " << error << '\n';
        return kExitFailure;
    }
    if (!settings.json) {
        out << logPath << ": " << headless::RunSummary(totals.ticks, totals.fixes, totals.parse)
            << '\n';
    }
    return totals.trackWritten ? kExitOk : kExitFailure;
}

}  // namespace tolvane::tool
