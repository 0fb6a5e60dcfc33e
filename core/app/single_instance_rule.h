#pragma once

#include <string>

namespace tolvane {

// The name of the lock that marks a running program, and of the channel
// through which a second start asks the first to come forward.
inline constexpr char kInstanceName[] = "Tolvane_GPS_Utilities";

// What the single-instance check needs from the machine; the shell
// implements it with a lock file and a local socket, tests with a fake.
class InstanceLock {
  public:
    enum class Result { kFailed, kCreated, kAlreadyExists };

    virtual ~InstanceLock() = default;
    // Creates the named lock. kCreated: this process now holds it for the
    // rest of its life. kAlreadyExists: another process holds it, and
    // nothing is kept open.
    virtual Result CreateLock(const std::string& name) = 0;
    // Looks for the first program's window and brings it forward; false
    // when no window answers.
    virtual bool BringFirstInstanceForward(const std::string& name, const std::string& title) = 0;
    virtual void Sleep(int milliseconds) = 0;
};

struct InstanceCheck {
    bool succeeded = false;      // false: the start ends silently
    bool foundPrevious = false;  // true: the first program came forward, the start ends
    // Whether this start goes on.
    bool MayStart() const { return succeeded && !foundPrevious; }
};

// Five passes: a pass that creates the lock lets the program start; one that
// finds the lock held looks for the first program's window, twice 500 ms
// apart, and brings it forward. When four passes find neither, the first
// program is taken to be dying and the fifth lets this one start; a lock
// that disappears only in that last pass ends the start.
InstanceCheck ActivatePreviousInstance(InstanceLock& lock, const std::string& name,
                                       const std::string& title);

}  // namespace tolvane
