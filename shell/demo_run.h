#pragma once

#include <string>

#include "core/app/gps_commands.h"
#include "core/gps/serial_device.h"
#include "core/state/app_state.h"
#include "platform/demo_receiver.h"
#include "platform/port_device.h"

namespace tolvane::shell {

// The serial device of a run: the platform's port device, which in a demo run
// opens the demo receiver's terminal whatever port the settings name.
class RunSerialDevice final : public SerialDevice {
  public:
    // Every port opens the given device; a real port when demoDevice is empty.
    void UseDemoDevice(std::string demoDevice) { demoDevice_ = std::move(demoDevice); }
    // The device of ModemManager's modem.
    void SetModemDevice(SerialDevice* modem) { device_.SetModemDevice(modem); }

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
// serial port while the run lasts, and the configured source is kept apart
// in the application state, which every save of the settings writes, so
// the demo never reaches Options.dat.
class DemoRun {
  public:
    // Starts the demo receiver on the recording and points device at it.
    // False when the recording cannot be read or no terminal can be had.
    bool Start(const std::string& recordingPath, RunSerialDevice& device);
    bool Running() const { return running_; }

    // Makes the settings, just loaded, read the demo receiver.
    void Apply(AppState& app) const;

  private:
    platform::DemoReceiver receiver_;
    bool running_ = false;
};

}  // namespace tolvane::shell
