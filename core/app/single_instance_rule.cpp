#include "core/app/single_instance_rule.h"

namespace tolvane {
namespace {

constexpr int kInstancePasses = 5;
constexpr int kSecondLookMilliseconds = 500;

bool FindAndBringForward(InstanceLock& lock, const std::string& name, const std::string& title) {
    if (lock.BringFirstInstanceForward(name, title)) return true;
    lock.Sleep(kSecondLookMilliseconds);
    return lock.BringFirstInstanceForward(name, title);
}

}  // namespace

InstanceCheck ActivatePreviousInstance(InstanceLock& lock, const std::string& name,
                                       const std::string& title) {
    for (int counter = kInstancePasses - 1;; --counter) {
        const InstanceLock::Result result = lock.CreateLock(name);
        if (result == InstanceLock::Result::kFailed) return {false, false};
        // The lock was free, so this is the first program, unless the lock
        // only came free in the last pass.
        if (result == InstanceLock::Result::kCreated) return {counter > 0, false};
        if (FindAndBringForward(lock, name, title)) return {counter > 0, true};
        // After five fruitless passes the first program is taken to be
        // dying, and this one starts.
        if (counter == 0) return {true, false};
    }
}

}  // namespace tolvane
