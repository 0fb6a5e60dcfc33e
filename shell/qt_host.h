#pragma once

#include <QObject>
#include <QString>
#include <functional>

#include "core/app/host.h"
#include "platform/process_runner.h"
#include "platform/speech_engine_finder.h"
#include "shell/bluetooth_radio.h"
#include "shell/qt_timers.h"
#include "shell/screen_saver.h"
#include "shell/sleep_inhibitor.h"
#include "shell/sound_player.h"

class QWidget;

namespace tolvane::shell {

// What the host needs of the main window.
class HostWindow {
  public:
    virtual ~HostWindow() = default;
    // The parent of the message boxes.
    virtual QWidget* Widget() = 0;
    // Paints the current view at once.
    virtual void RepaintNow() = 0;
    // Closes the window without asking again: the exit has been confirmed.
    virtual void CloseForGood() = 0;
    // Opens the tile maps of the settings again.
    virtual void ReloadTileSources() = 0;
    // Shows the title and soft keys of the language now loaded.
    virtual void Relabel() = 0;
};

// The core's host in the window: message boxes over the main window, timers
// of the Qt event loop, sound through Qt Multimedia and the desktop's
// screen saver over D-Bus.
class QtHost final : public QObject, public Host {
    Q_OBJECT

  public:
    explicit QtHost(QObject* parent = nullptr);
    ~QtHost() override;

    // The window the boxes belong to and that repaints; until it exists the
    // boxes have no parent and repainting does nothing.
    void SetWindow(HostWindow* window) { window_ = window; }
    // Who opens the dialogs of the commands; until it is set, none opens.
    void SetDialogOpener(std::function<void(int commandId)> opener) {
        dialogOpener_ = std::move(opener);
    }

    void ShowMessage(const std::string& text, const std::string& caption,
                     MessageIcon icon) override;
    void ShowNotice(const std::string& text) override;
    bool AskYesNo(const std::string& text, const std::string& caption) override;
    SaveAnswer AskSaveDiscardCancel(const std::string& text, const std::string& caption) override;
    std::string ChooseDestinationFile(const std::string& suggestion) override;
    void Repaint() override;
    void Relabel() override;
    void ResetIdleTimer() override { screenSaver_.SimulateUserActivity(); }
    void NotifyRmcParsed() override;
    void HoldScreenOn() override { screenSaver_.Hold(); }
    void ReleaseScreenOn() override { screenSaver_.Release(); }
    void HoldSleep(bool hold) override { hold ? sleepInhibitor_.Hold() : sleepInhibitor_.Release(); }
    void ReloadTileSources() override {
        if (window_ != nullptr) window_->ReloadTileSources();
    }
    bool OpenDocument(const std::string& path) override;
    void ShowAbout(const AboutInfo& about) override;
    void OpenDialog(int commandId) override {
        if (dialogOpener_) dialogOpener_(commandId);
    }
    int BluetoothRadioMode() override { return ReadRadioMode(); }
    bool SetBluetoothRadioMode(int mode) override { return SwitchRadio(mode); }
    void CloseWindow() override;

  private:
    QWidget* Parent() const;

    // The services the core reaches through the host; they are made after
    // the host's base, which only keeps references to them.
    SystemClock clock_;
    platform::LinuxProcessRunner processes_;
    platform::LinuxSpeechEngineFinder speech_;
    SoundPlayer sound_;
    QtTimers timers_;
    ScreenSaver screenSaver_;
    SleepInhibitor sleepInhibitor_;
    HostWindow* window_ = nullptr;
    std::function<void(int)> dialogOpener_;
};

}  // namespace tolvane::shell
