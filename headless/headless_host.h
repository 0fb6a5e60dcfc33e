#pragma once

#include <functional>
#include <iosfwd>
#include <map>

#include "core/app/windowless_host.h"

namespace tolvane::headless {

// The timers of a run without an event loop: the run's own loop fires them
// (the replay once per second of the recording, the watch once per real
// second).
class LoopTimers final : public TimerService {
  public:
    int StartTimer(int intervalMilliseconds, std::function<void()> callback) override;
    void KillTimer(int timerId) override;
    // Runs every timer's callback once, in the order they were started.
    void FireTimers();

  private:
    std::map<int, std::function<void()>> timers_;
    int nextTimerId_ = 1;
};

// The host of the headless runs: no window, and messages go to a stream
// (standard error in the command-line tool).
class HeadlessHost final : public WindowlessHost {
  public:
    HeadlessHost(const Clock& clock, SoundService& sound, ProcessRunner& processes,
                 const SpeechEngineFinder& speech, std::ostream& messages)
        : WindowlessHost({clock, timers_, sound, processes, speech}), messages_(messages) {}

    // Runs every timer's callback once, in the order they were started.
    void FireTimers() { timers_.FireTimers(); }

    void ShowMessage(const std::string& text, const std::string& caption,
                     MessageIcon icon) override;
    // A script cannot answer questions: the answer is always no, and Cancel
    // to a question about saving, so that nothing is lost.
    bool AskYesNo(const std::string& text, const std::string& caption) override;
    SaveAnswer AskSaveDiscardCancel(const std::string& text, const std::string& caption) override;

  private:
    // Made after the base, which only keeps a reference to it.
    LoopTimers timers_;
    std::ostream& messages_;
};

}  // namespace tolvane::headless
