#pragma once

#include <cstdint>
#include <string>

#include "core/app/gps_commands.h"
#include "core/data/options.h"
#include "core/gps/serial_device.h"
#include "platform/demo_receiver.h"
#include "platform/port_device.h"

namespace tolvane::shell {

// The serial device of a run: the platform's port device, which in a demo run
// opens the demo receiver's terminal whatever port the settings name.
class RunSerialDevice final : public SerialDevice {
  public:
    // Every port opens the given device; a real port when demoDevice is empty.
    void UseDemoDevice(std::string demoDevice) { demoDevice_ = std::move(demoDevice); }

    bool Open(const std::string& name) override {
        return device_.Open(demoDevice_.empty() ? name : demoDevice_);
    }
    bool IsOpen() const override { return device_.IsOpen(); }
    bool Configure(const SerialSettings& settings) override { return device_.Configure(settings); }
    bool SetReadTimeouts() override { return device_.SetReadTimeouts(); }
    int Read(char* buffer, int size) override { return device_.Read(buffer, size); }
    bool IsGone() override { return device_.IsGone(); }
    void Close() override { device_.Close(); }
    std::string FailureReason() const override { return device_.FailureReason(); }

  private:
    platform::PortDevice device_;
    std::string demoDevice_;
};

// The demo receiver as the GPS source of one run: the settings read the
// serial port while the run lasts, and hold the configured source again
// whenever they are saved, so the demo never reaches Options.dat.
class DemoRun {
  public:
    // Starts the demo receiver on the recording and points device at it.
    // False when the recording cannot be read or no terminal can be had.
    bool Start(const std::string& recordingPath, RunSerialDevice& device);
    bool Running() const { return running_; }

    // Makes the settings, just loaded, read the demo receiver.
    void Apply(Options& options);
    // Runs save with the configured source in the settings.
    template <typename Save>
    void WithConfiguredSource(Options& options, Save save) {
        if (!running_) return save();
        options.gpsSource = configuredSource_;
        save();
        options.gpsSource = kGpsSourcePort;
    }

  private:
    platform::DemoReceiver receiver_;
    bool running_ = false;
    std::int32_t configuredSource_ = 0;
};

}  // namespace tolvane::shell
