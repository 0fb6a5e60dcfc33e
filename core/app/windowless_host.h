#pragma once

#include <string>
#include <vector>

#include "core/app/host.h"

namespace tolvane {

// Services that do nothing: no sound plays, no program starts and no speech
// engine is found. The headless runs that do not speak, and the tests'
// hosts, use them.
class QuietServices final : public SoundService, public ProcessRunner, public SpeechEngineFinder {
  public:
    bool PlaySoundFile(const std::string&, SoundMode) override { return true; }
    bool StopSound() override { return true; }
    bool PlayLimitBeep() override { return true; }
    bool RunAndWait(const std::string&, const std::vector<std::string>&) override { return false; }
    std::string TemporaryFolder() const override { return "/tmp"; }
    std::string FindEngineProgram() const override { return {}; }
};

// A host without a window: there is nothing to repaint, to keep awake, to
// open or to close. The headless runs and the tests build their hosts on
// it, each showing messages and answering questions its own way.
class WindowlessHost : public Host {
  public:
    using Host::Host;

    void Repaint() override {}
    void ResetIdleTimer() override {}
    void NotifyRmcParsed() override {}
    void HoldScreenOn() override {}
    void ReleaseScreenOn() override {}
    bool OpenDocument(const std::string&) override { return false; }
    void ShowAbout(const AboutInfo&) override {}
    void OpenDialog(int) override {}
    std::string ChooseDestinationFile(const std::string&) override { return {}; }
    void CloseWindow() override {}
};

}  // namespace tolvane
