#pragma once

#include <functional>
#include <iosfwd>
#include <map>

#include "core/app/host.h"

namespace tolvane::tool {

// The host of the command-line tool: no window, messages go to standard
// error, and the timers are fired by the tool's own loop (the replay fires
// them once per second of the recording, the watch once per real second).
class ToolHost final : public Host {
  public:
    ToolHost(const Clock& clock, SoundService& sound, ProcessRunner& processes,
             const SpeechEngineFinder& speech, std::ostream& messages)
        : clock_(clock),
          sound_(sound),
          processes_(processes),
          speech_(speech),
          messages_(messages) {}

    FileTime NowUtc() const override { return clock_.NowUtc(); }

    int StartTimer(int intervalMilliseconds, std::function<void()> callback) override;
    void KillTimer(int timerId) override;
    // Runs every timer's callback once, in the order they were started.
    void FireTimers();

    bool PlaySoundFile(const std::string& path, SoundMode mode) override {
        return sound_.PlaySoundFile(path, mode);
    }
    bool StopSound() override { return sound_.StopSound(); }
    bool PlayLimitBeep() override { return sound_.PlayLimitBeep(); }

    bool RunAndWait(const std::string& program,
                    const std::vector<std::string>& arguments) override {
        return processes_.RunAndWait(program, arguments);
    }
    std::string TemporaryFolder() const override { return processes_.TemporaryFolder(); }
    std::string FindEngineProgram() const override { return speech_.FindEngineProgram(); }

    void ShowMessage(const std::string& text, const std::string& caption,
                     MessageIcon icon) override;
    // A script cannot answer questions: the answer is always no.
    bool AskYesNo(const std::string& text, const std::string& caption) override;
    void Repaint() override {}
    void ResetIdleTimer() override {}
    void NotifyRmcParsed() override {}
    // The tool has no screen or window of its own.
    void HoldScreenOn() override {}
    void ReleaseScreenOn() override {}
    bool OpenDocument(const std::string&) override { return false; }
    void ShowAbout(const AboutInfo&) override {}
    void OpenDialog(int) override {}
    void CloseWindow() override {}

  private:
    const Clock& clock_;
    SoundService& sound_;
    ProcessRunner& processes_;
    const SpeechEngineFinder& speech_;
    std::ostream& messages_;
    std::map<int, std::function<void()>> timers_;
    int nextTimerId_ = 1;
};

}  // namespace tolvane::tool
