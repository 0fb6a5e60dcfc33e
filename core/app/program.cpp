#include "core/app/program.h"

#include "core/app/commands.h"
#include "core/app/gid_commands.h"
#include "core/app/gps_commands.h"
#include "core/base/string_manager.h"

namespace tolvane {

Program::Program(const ProgramServices& services, const ProgramFiles& programFiles)
    : host(services.host),
      deviceQueries(services.deviceQueries),
      libraryLoader(services.libraryLoader),
      files(programFiles) {
    ResetOptions(app.options);
    app.alarm.path = files.alarmPath;
    port.links.device = &services.serialDevice;
    port.links.logNmeaSetting = &app.options.logNmea;
    LinkPortSourceToHost(port, host);
    // The watchdog runs on the user-interface loop, so the lost-GPS command
    // runs there like any other command.
    port.links.lostGps = [this] { OnCommand(*this, kCommandStopGps); };
}

Program::~Program() {
    StopPortSource(port);
    StopGidSource(gid);
}

std::string ProductTitle() {
    return LanguageText(kTextProductName);
}

}  // namespace tolvane
