#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <map>
#include <memory>

#include "core/app/host.h"
#include "platform/process_runner.h"
#include "platform/speech_engine_finder.h"
#include "shell/screen_saver.h"
#include "shell/sound_player.h"

class QTimer;
class QWidget;

namespace tolvane::shell {

// The core's host in the window: message boxes over the main window, timers
// of the Qt event loop, sound through Qt Multimedia and the desktop's
// screen saver over D-Bus.
class QtHost final : public QObject, public Host {
    Q_OBJECT

  public:
    explicit QtHost(QObject* parent = nullptr);
    ~QtHost() override;

    // The window the boxes belong to and that repaints; none for the
    // screenshots.
    void SetWindow(QWidget* window) { window_ = window; }
    // What the user-interface thread does with the notice of a parsed RMC
    // sentence.
    void SetRmcHandler(std::function<void()> handler) { rmcHandler_ = std::move(handler); }

    FileTime NowUtc() const override { return clock_.NowUtc(); }

    int StartTimer(int intervalMilliseconds, std::function<void()> callback) override;
    void KillTimer(int timerId) override;

    bool PlaySoundFile(const std::string& path, SoundMode mode) override;
    bool StopSound() override;
    bool PlayLimitBeep() override;

    bool RunAndWait(const std::string& program,
                    const std::vector<std::string>& arguments) override {
        return processes_.RunAndWait(program, arguments);
    }
    std::string TemporaryFolder() const override { return processes_.TemporaryFolder(); }
    std::string FindEngineProgram() const override { return speech_.FindEngineProgram(); }

    void ShowMessage(const std::string& text, const std::string& caption,
                     MessageIcon icon) override;
    bool AskYesNo(const std::string& text, const std::string& caption) override;
    void Repaint() override;
    void ResetIdleTimer() override { screenSaver_.SimulateUserActivity(); }
    void NotifyRmcParsed() override;

  private:
    SystemClock clock_;
    platform::LinuxProcessRunner processes_;
    platform::LinuxSpeechEngineFinder speech_;
    SoundPlayer sound_;
    ScreenSaver screenSaver_;
    QWidget* window_ = nullptr;
    std::function<void()> rmcHandler_;
    std::map<int, std::unique_ptr<QTimer>> timers_;
    int nextTimerId_ = 1;
};

}  // namespace tolvane::shell
