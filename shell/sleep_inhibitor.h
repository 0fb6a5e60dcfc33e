#pragma once

#include <QDBusUnixFileDescriptor>
#include <QObject>

namespace tolvane::shell {

// systemd-logind's "sleep" inhibitor on the system bus: while it is held
// the computer does not suspend, so a track recorded on a phone whose
// screen locks keeps its end. logind hands a file descriptor that holds the
// lock until it is closed. The call does not wait on the window's thread;
// without logind (or a system bus) nothing is held, silently.
class SleepInhibitor {
  public:
    void Hold();
    void Release();
    bool Held() const { return lock_.isValid(); }

  private:
    QObject calls_;  // the parent of the calls under way, which end with it
    QDBusUnixFileDescriptor lock_;
    bool wanted_ = false;
    bool asking_ = false;
};

}  // namespace tolvane::shell
