#pragma once

#include <QtGlobal>

namespace tolvane::shell {

// The desktop's screen saver over D-Bus (org.freedesktop.ScreenSaver): the
// per-tick idle reset and the hold that keeps the screen on. Where there is
// no session bus or no such service every call does nothing.
class ScreenSaver {
  public:
    ~ScreenSaver();

    // Tells the screen saver the user is active, so it starts counting again.
    void SimulateUserActivity();
    // Keeps the screen on until Release; a second hold changes nothing.
    void Hold();
    void Release();
    bool Held() const { return cookie_ != 0; }

  private:
    bool Available();

    int available_ = -1;  // -1 not looked for yet, else 0 or 1
    quint32 cookie_ = 0;
};

}  // namespace tolvane::shell
