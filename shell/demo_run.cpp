#include "shell/demo_run.h"

#include <fstream>
#include <sstream>

#include "headless/recording_device.h"

namespace tolvane::shell {

bool DemoRun::Start(const std::string& recordingPath, RunSerialDevice& device) {
    std::ifstream in(recordingPath, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    const std::string recording = text.str();
    std::vector<std::string> seconds;
    for (const headless::RecordedSecond& second : headless::SplitIntoSeconds(recording)) {
        seconds.push_back(recording.substr(second.begin, second.end - second.begin));
    }
    if (!receiver_.Start(std::move(seconds))) return false;
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
