#pragma once

#include <string>
#include <vector>

#include "core/app/program.h"
#include "tests/core/app/recording_host.h"
#include "tests/core/test_support.h"

namespace tolvane::testing {

// A host that writes what the program asks of the window and of its timers
// and sounds into one list, in order, and answers questions as told. It is
// its own clock, timers, sound and speech engine finder.
class EventHost final : public RecordingHost,
                        public Clock,
                        public TimerService,
                        public SoundService,
                        public SpeechEngineFinder {
  public:
    EventHost() : RecordingHost({*this, *this, *this, quiet_, *this}) {}

    FileTime NowUtc() const override { return now; }
    void ShowMessage(const std::string& text, const std::string& caption,
                     MessageIcon icon) override {
        RecordingHost::ShowMessage(text, caption, icon);
        events.push_back("message " + text);
    }
    bool AskYesNo(const std::string& text, const std::string&) override {
        events.push_back("ask " + text);
        if (onQuestion) onQuestion();
        return answer;
    }
    SaveAnswer AskSaveDiscardCancel(const std::string& text, const std::string&) override {
        events.push_back("ask to save " + text);
        return saveAnswer;
    }
    std::string ChooseDestinationFile(const std::string& suggestion) override {
        events.push_back("choose " + suggestion);
        return chosenFile;
    }
    void Repaint() override { events.push_back("repaint"); }
    int StartTimer(int milliseconds, std::function<void()>) override {
        events.push_back("timer " + std::to_string(milliseconds));
        return ++lastTimer == timerToFail ? 0 : lastTimer;
    }
    void KillTimer(int id) override { events.push_back("kill " + std::to_string(id)); }
    bool PlaySoundFile(const std::string&, SoundMode) override { return true; }
    bool StopSound() override { return true; }
    bool PlayLimitBeep() override {
        events.push_back("beep");
        return true;
    }
    void HoldScreenOn() override { events.push_back("hold screen"); }
    void ReleaseScreenOn() override { events.push_back("release screen"); }
    bool OpenDocument(const std::string& path) override {
        events.push_back("open " + path);
        return opensDocuments;
    }
    void ShowAbout(const AboutInfo& about) override {
        events.push_back("about " + about.name + " " + about.version);
    }
    void OpenDialog(int commandId) override {
        events.push_back("dialog " + std::to_string(commandId));
    }
    void CloseWindow() override { events.push_back("close window"); }
    void ReloadTileSources() override { events.push_back("reload tile maps"); }
    int BluetoothRadioMode() override { return radioMode; }
    bool SetBluetoothRadioMode(int mode) override {
        events.push_back("radio " + std::to_string(mode));
        radioMode = mode;
        return true;
    }
    std::string FindEngineProgram() const override { return engineProgram; }

    std::vector<std::string> events;
    FileTime now = 0;
    bool answer = true;
    int timerToFail = 0;  // counted from 1; 0 lets every timer start
    bool opensDocuments = false;
    int lastTimer = 0;
    std::function<void()> onQuestion;
    int radioMode = kRadioNone;
    std::string engineProgram;  // empty: no speech engine
    std::string chosenFile;     // empty: the file chooser is cancelled
};

// A receiver that opens, unless told to refuse, and then stays silent.
class SilentDevice final : public SerialDevice {
  public:
    bool Open(const std::string& name) override {
        opened.push_back(name);
        return open = !refuses;
    }
    std::string FailureReason() const override { return refuses ? "Host is down" : ""; }
    bool IsOpen() const override { return open; }
    bool Configure(const SerialSettings&) override { return true; }
    bool SetReadTimeouts() override { return true; }
    int Read(char*, int) override { return 0; }
    bool IsGone() override { return false; }
    void Close() override { open = false; }
    bool open = false;
    bool refuses = false;
    std::vector<std::string> opened;
};

class NoLibraries final : public DynamicLibraryLoader {
  public:
    std::unique_ptr<DynamicLibrary> Load(const std::string&) override { return nullptr; }
};

class Desktop final : public DeviceQueries {
  public:
    int QueryPlatformName(std::string& name) const override {
        name.clear();
        return 0;
    }
    int OperatingSystemMajorVersion() const override { return 0; }
};

// A program in a temporary folder: Options.dat, the manual and the
// documents folder lie there, and the GPS source is the serial port.
class ProgramFixture {
  public:
    ProgramFixture()
        : program({host, desktop, libraries, device},
                  {folder.File("Options.dat"), folder.File("Alarm.wav"), folder.File("README.md"),
                   folder.File("Documents")}) {
        program.app.options.gpsSource = 1;
    }

    TemporaryFolder folder;
    EventHost host;
    Desktop desktop;
    NoLibraries libraries;
    SilentDevice device;
    Program program;
};

}  // namespace tolvane::testing
