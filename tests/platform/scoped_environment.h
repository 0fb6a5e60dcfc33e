#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace tolvane::testing {

// Sets (or, for null, removes) an environment variable for one scope and
// restores its old value afterwards.
class ScopedEnvironment {
  public:
    ScopedEnvironment(std::string name, const char* value) : name_(std::move(name)) {
        if (const char* old = std::getenv(name_.c_str())) old_ = old;
        Set(value);
    }
    ~ScopedEnvironment() { Set(old_ ? old_->c_str() : nullptr); }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

  private:
    void Set(const char* value) {
        if (value != nullptr) {
            setenv(name_.c_str(), value, 1);
        } else {
            unsetenv(name_.c_str());
        }
    }

    std::string name_;
    std::optional<std::string> old_;
};

// Puts the process into a time zone for one scope. The C library is told of
// the zone put back only after the variable is restored, so the member that
// tells it is the one destroyed last.
class ScopedTimeZone {
  public:
    explicit ScopedTimeZone(const char* zone) : tz_("TZ", zone) { tzset(); }

  private:
    struct ZoneReload {
        ~ZoneReload() { tzset(); }
    };
    ZoneReload reload_;
    ScopedEnvironment tz_;
};

}  // namespace tolvane::testing
