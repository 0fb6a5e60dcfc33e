#pragma once

#include <string>
#include <vector>

#include "core/app/host.h"

namespace tolvane::testing {

// A host without a window: it records the message boxes it is asked to show
// and answers everything else quietly.
class RecordingHost : public Host {
  public:
    struct Message {
        std::string text;
        std::string caption;
        MessageIcon icon;
    };

    std::vector<Message> messages;

    void ShowMessage(const std::string& text, const std::string& caption,
                     MessageIcon icon) override {
        messages.push_back({text, caption, icon});
    }
    bool AskYesNo(const std::string&, const std::string&) override { return true; }
    void Repaint() override {}
    void ResetIdleTimer() override {}
    void NotifyRmcParsed() override {}
    void HoldScreenOn() override {}
    void ReleaseScreenOn() override {}
    bool OpenDocument(const std::string&) override { return false; }
    void ShowAbout(const AboutInfo&) override {}
    void OpenDialog(int) override {}
    void CloseWindow() override {}
    FileTime NowUtc() const override { return 0; }
    int StartTimer(int, std::function<void()>) override { return 0; }
    void KillTimer(int) override {}
    bool PlaySoundFile(const std::string&, SoundMode) override { return true; }
    bool StopSound() override { return true; }
    bool PlayLimitBeep() override { return true; }
    bool RunAndWait(const std::string&, const std::vector<std::string>&) override { return false; }
    std::string TemporaryFolder() const override { return "/tmp"; }
    std::string FindEngineProgram() const override { return {}; }
};

}  // namespace tolvane::testing
