#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tolvane {

// The services the core needs from the world. The window's host, the
// command-line tool and the tests each implement them; the core only ever
// sees these interfaces.

// One-shot-free repeating timers of the user-interface loop. Callbacks run on
// the thread that runs the loop, never concurrently with each other.
class TimerService {
  public:
    virtual ~TimerService() = default;
    // Returns the timer's id, 0 when no timer could be made.
    virtual int StartTimer(int intervalMilliseconds, std::function<void()> callback) = 0;
    virtual void KillTimer(int timerId) = 0;
};

enum class SoundMode { kOnce, kLoop };

// Sound playback, always asynchronous. Each call reports success; a missing
// file or a machine without an audio device reports success too, because
// callers repeat a call until it succeeds.
class SoundService {
  public:
    virtual ~SoundService() = default;
    virtual bool PlaySoundFile(const std::string& path, SoundMode mode) = 0;
    // Stops whatever is playing.
    virtual bool StopSound() = 0;
    // The short built-in beep of a step that cannot be taken.
    virtual bool PlayLimitBeep() = 0;
};

// Repeats a sound call until the service reports success, as every sound
// user of the program does.
template <typename Call>
void RepeatUntilSuccess(Call call) {
    while (!call()) {
    }
}

// Starting a helper program (the speech engine) and waiting for it.
class ProcessRunner {
  public:
    virtual ~ProcessRunner() = default;
    // Starts program with the arguments and waits, without a time limit, for
    // it to end. False when it could not be started.
    virtual bool RunAndWait(const std::string& program,
                            const std::vector<std::string>& arguments) = 0;
    // The folder for temporary files ($TMPDIR or /tmp), without a trailing
    // separator.
    virtual std::string TemporaryFolder() const = 0;
};

}  // namespace tolvane
