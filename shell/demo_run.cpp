#include "shell/demo_run.h"

#include <fstream>
#include <sstream>

#include "headless/demo_recording.h"

namespace tolvane::shell {

bool DemoRun::Start(const std::string& recordingPath, RunSerialDevice& device) {
    std::ifstream in(recordingPath, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    headless::DemoRecording demo = headless::MakeDemoRecording(text.str());
    if (!receiver_.Start(std::move(demo.seconds), demo.loopFrom)) return false;
    device.UseDemoDevice(receiver_.DevicePath());
    running_ = true;
    return true;
}

void DemoRun::Apply(AppState& app) const {
    if (!running_) return;
    app.configuredGpsSource = app.options.gpsSource;
    app.options.gpsSource = kGpsSourcePort;
}

}  // namespace tolvane::shell
