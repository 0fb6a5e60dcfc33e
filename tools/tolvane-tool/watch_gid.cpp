#include "tools/tolvane-tool/watch_gid.h"

#include <chrono>
#include <ostream>
#include <thread>

#include "core/app/gid_commands.h"
#include "core/app/main_timer.h"
#include "core/base/string_manager.h"
#include "headless/headless_host.h"
#include "platform/device_queries.h"
#include "platform/dynamic_library.h"
#include "platform/program_location.h"
#include "tools/tolvane-tool/tick_json.h"
#include "tools/tolvane-tool/tool_commands.h"

namespace tolvane::tool {

int RunGidWatch(const GidWatch& watch, std::ostream& out, std::ostream& err) {
    // The library and the language file with the start's messages are
    // found in the program folder.
    platform::InstallProgramPaths(watch.home);
    CStringManager::GetInstance().Load(kLanguageEnglish, kSubLanguageEnglishUs);

    const SystemClock clock;
    headless::RunServices services(watch.settings.voice);
    headless::HeadlessHost host(clock, services.Sound(), services.Processes(), services.Speech(),
                                err);
    const platform::LinuxDeviceQueries machine;
    platform::SystemLibraryLoader loader;

    AppState app;
    app.options = watch.options;
    app.options.gpsSource = kGpsSourceGid;
    std::string error;
    if (!headless::PrepareRun(app, watch.settings, error)) {
        err << "tolvane-tool: watch: " << error << '\n';
        return kExitFailure;
    }
    GidSource source;
    if (!StartGidSource(source, {host, machine, loader, nullptr, nullptr})) return kExitFailure;
    app.readActiveSource = [&source] { return ReadGidSource(source); };
    UpdateGpsState(app);
    app.gpsRunning = true;

    int fixes = 0;
    const auto start = std::chrono::steady_clock::now();
    for (long long tick = 1; watch.seconds < 0 || tick <= watch.seconds; ++tick) {
        std::this_thread::sleep_until(start + std::chrono::seconds(tick));
        headless::RunTimers(app, host);
        if (app.gps.connected && app.gps.fixValid) ++fixes;
        if (watch.settings.json) out << TickJson(app) << std::endl;
    }
    StopGidSource(source);
    if (!watch.settings.json) {
        out << "shared GPS service: " << watch.seconds << " ticks, " << fixes << " fixes\n";
    }
    return app.track.failedPath.empty() ? kExitOk : kExitFailure;
}

}  // namespace tolvane::tool
