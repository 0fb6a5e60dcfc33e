#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

#include "core/gps/port_source.h"
#include "core/state/app_state.h"
#include "headless/headless_host.h"
#include "platform/command_line_sound.h"
#include "platform/process_runner.h"
#include "platform/speech_engine_finder.h"

namespace tolvane::headless {

// The sound, process and speech services of a run: quiet, or the
// machine's own when the run speaks its arrivals (--voice 1).
class RunServices {
  public:
    explicit RunServices(bool speak) : speak_(speak) {}
    SoundService& Sound() { return speak_ ? static_cast<SoundService&>(sound_) : quiet_; }
    ProcessRunner& Processes() { return speak_ ? static_cast<ProcessRunner&>(processes_) : quiet_; }
    const SpeechEngineFinder& Speech() const {
        return speak_ ? static_cast<const SpeechEngineFinder&>(speech_) : quiet_;
    }

  private:
    bool speak_;
    QuietServices quiet_;
    platform::CommandLineSoundService sound_;
    platform::LinuxProcessRunner processes_;
    platform::LinuxSpeechEngineFinder speech_;
};

// What the replay and the watch take from their command lines besides
// their own arguments.
struct RunSettings {
    bool json = false;
    std::string optionsFile;  // the settings record to start from; defaults when empty
    std::optional<std::int32_t> dataProcessor;
    std::optional<std::int32_t> unitSystem;
    std::optional<double> minimumSpeed;

    std::optional<std::int32_t> trackFormat;  // the logger is on when set
    std::optional<std::int32_t> trackInterval;
    std::string trackFolder;       // --out: the track files go straight here
    std::string destinationsFile;  // --destinations: the Go-To list
    std::optional<std::int32_t> navigation;
    std::optional<std::int32_t> defaultRange;
    bool alwaysDefaultRange = false;
    std::optional<std::int32_t> speedAlarm;
    bool voice = false;      // arrivals are spoken; otherwise they take the alarm sound
    bool multiGnss = false;  // --multi-gnss: the other satellite talkers read as GP
};

// The settings of the run: the record of --options (else the defaults) with
// the single options over it, whatever their order. False with error set
// when the record cannot be read.
bool MakeRunOptions(const RunSettings& settings, Options& options, std::string& error);

// Prepares the application state of a run for its settings: the track
// folder, the destination list, the alarm sound beside the program, the
// talkers the port source reads. False with error set when the
// destination list cannot be read.
bool PrepareRun(AppState& app, const RunSettings& settings, std::string& error);

// One second of the program: the main timer's procedure, then the track
// timer's.
void RunTimers(AppState& app, Host& host);

// "N ticks, F fixes, D dropped sentences (C checksum failures, B broken)":
// the dropped sentences are those the parser threw away; zero bytes taken
// out of the stream are counted inside the brackets when there were any.
// A run without fixes says why when the reason is known: "0 fixes: 3600
// $GNRMC sentences were ignored; this program reads GP sentences
// (--multi-gnss reads the others too)".
std::string RunSummary(int ticks, int fixes, const NmeaParseStats& stats);

// The program without its window, running the port source: the
// application state, the port source over a given device, and the tool's
// host whose timer is the source's watchdog.
class PortRun {
  public:
    PortRun(const Clock& clock, SerialDevice& device, const Options& options, RunServices& services,
            std::ostream& messages);
    ~PortRun();
    PortRun(const PortRun&) = delete;
    PortRun& operator=(const PortRun&) = delete;

    // Starts the GPS from the named port at the baud rate through the same
    // function as the window's "Start GPS" command. False with
    // port.lastErrorCode set.
    bool Start(const std::string& portName, std::uint32_t baudRate, ReaderDrive drive);

    // The watchdog's second: it asks the reader for a parse, and stops the
    // source when the receiver went away or fell silent.
    void FireWatchdog() { host_.FireTimers(); }

    // One second of the program's timers; counts ticks and fixes.
    void Tick();

    // Writes what the track logger held back and tells of a track file
    // that could not be written; false when one could not.
    bool FinishTrack();

    bool Lost() const { return lost_; }
    int Ticks() const { return ticks_; }
    int Fixes() const { return fixes_; }
    // What the parser has seen since the start.
    NmeaParseStats ParseStats();

    AppState app;
    PortSource port;

  private:
    HeadlessHost host_;
    bool lost_ = false;
    int ticks_ = 0;
    int fixes_ = 0;
};

}  // namespace tolvane::headless
