#pragma once

#include <string>
#include <vector>

#include "core/app/windowless_host.h"

namespace tolvane::testing {

// A host without a window: it records the message boxes it is asked to show
// and answers everything else quietly. Its clock stands at 0 and no timer
// starts, unless a test hands in services of its own.
class RecordingHost : public WindowlessHost {
  public:
    struct Message {
        std::string text;
        std::string caption;
        MessageIcon icon;
    };

    RecordingHost() : WindowlessHost({stoppedClock_, noTimers_, quiet_, quiet_, quiet_}) {}
    explicit RecordingHost(const HostServices& services) : WindowlessHost(services) {}

    std::vector<Message> messages;
    SaveAnswer saveAnswer = SaveAnswer::kCancel;  // to every question about saving

    void ShowMessage(const std::string& text, const std::string& caption,
                     MessageIcon icon) override {
        messages.push_back({text, caption, icon});
    }
    bool AskYesNo(const std::string&, const std::string&) override { return true; }
    SaveAnswer AskSaveDiscardCancel(const std::string&, const std::string&) override {
        return saveAnswer;
    }

  protected:
    class StoppedClock final : public Clock {
      public:
        FileTime NowUtc() const override { return 0; }
    };
    class NoTimers final : public TimerService {
      public:
        int StartTimer(int, std::function<void()>) override { return 0; }
        void KillTimer(int) override {}
    };

    // Made after the base, which only keeps references to them. A test's
    // host that is its own clock or sound takes the others from here.
    StoppedClock stoppedClock_;
    NoTimers noTimers_;
    QuietServices quiet_;
};

}  // namespace tolvane::testing
