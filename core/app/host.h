#pragma once

#include <string>

#include "core/base/file_time.h"
#include "core/base/services.h"
#include "core/nav/voice_guide.h"

namespace tolvane {

enum class MessageIcon { kStop, kInformation, kQuestion };

// The answers to the question before work that is not saved would be lost.
enum class SaveAnswer { kSave, kDiscard, kCancel };

// The Bluetooth radio's modes, as the radio's get and set calls know them.
inline constexpr int kRadioNone = -1;
inline constexpr int kRadioOff = 0;
inline constexpr int kRadioConnectable = 1;

// What the About box shows.
struct AboutInfo {
    std::string name;     // the product name of the language file
    std::string version;  // "2.4.0.3151"
    std::string licence;
    std::string credits;  // one line for each part the program ships
};

// The services a host hands to the core, owned by the host's maker or by the
// host itself, and outliving every call into the core.
struct HostServices {
    const Clock& clock;
    TimerService& timers;
    SoundService& sound;
    ProcessRunner& processes;
    const SpeechEngineFinder& speech;
};

// Everything the core needs from the world it runs in: the window's host
// (Qt), the command-line tool's quiet host and the tests' fakes implement it.
// The services are handed in rather than inherited, so that each host picks
// its own and none forwards their calls.
class Host {
  public:
    explicit Host(const HostServices& services) : services_(services) {}
    virtual ~Host() = default;
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    const Clock& Time() const { return services_.clock; }
    TimerService& Timers() { return services_.timers; }
    SoundService& Sound() { return services_.sound; }
    ProcessRunner& Processes() { return services_.processes; }
    const SpeechEngineFinder& Speech() const { return services_.speech; }

    // A modal message box with the given caption.
    virtual void ShowMessage(const std::string& text, const std::string& caption,
                             MessageIcon icon) = 0;
    // A note that does not wait for the user, for news the program did
    // not ask about; a host without a window keeps quiet.
    virtual void ShowNotice(const std::string& /*text*/) {}
    // A yes/no question; true for yes.
    virtual bool AskYesNo(const std::string& text, const std::string& caption) = 0;
    // The question whether to save changes first, with Save, Discard and
    // Cancel (also the answer of Escape and of closing the box).
    virtual SaveAnswer AskSaveDiscardCancel(const std::string& text,
                                            const std::string& caption) = 0;
    // The file chooser for saving a destination list, starting at
    // suggestion; empty when the user cancels.
    virtual std::string ChooseDestinationFile(const std::string& suggestion) = 0;
    // Invalidates the main window and repaints it at once.
    virtual void Repaint() = 0;
    // The language changed: the window's title and soft keys take their
    // texts again and the view is repainted. A host without them keeps
    // quiet.
    virtual void Relabel() {}
    // Keeps the machine from blanking the screen or suspending.
    virtual void ResetIdleTimer() = 0;
    // Called on the port reader thread after an RMC sentence was parsed;
    // the host queues a notification to its user-interface thread.
    virtual void NotifyRmcParsed() = 0;
    // Holds the screen on ("Keep backlight on") until released.
    virtual void HoldScreenOn() = 0;
    virtual void ReleaseScreenOn() = 0;
    // Keeps the computer from suspending (hold) or lets it again. A host
    // without such a service does without.
    virtual void HoldSleep(bool /*hold*/) {}
    // Opens a document with the desktop's handler; false when it cannot.
    virtual bool OpenDocument(const std::string& path) = 0;
    virtual void ShowAbout(const AboutInfo& about) = 0;
    // Opens the dialog that carries out a command (settings, the point
    // editors, file choosers) and returns when the user has closed it. The
    // dialog works on the program through the core's own functions.
    virtual void OpenDialog(int commandId) = 0;
    // The Bluetooth radio's mode: kRadioNone without an adapter (or without
    // BlueZ), else kRadioOff or kRadioConnectable. A host without Bluetooth
    // keeps these defaults.
    virtual int BluetoothRadioMode() { return kRadioNone; }
    // Switches the radio and waits a few seconds at most for it to follow;
    // true when it did.
    virtual bool SetBluetoothRadioMode(int /*mode*/) { return false; }
    // The list of tile maps changed (Map > Tile Maps...): the World Map
    // drops the maps it has open and opens the listed ones. A host without
    // a map has none to read.
    virtual void ReloadTileSources() {}
    // Closes the main window after a confirmed exit; the program then ends
    // without asking again.
    virtual void CloseWindow() = 0;

  private:
    HostServices services_;
};

}  // namespace tolvane
