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

// Moves the process into another time zone (a POSIX rule such as "XST-2"
// needs no zone database) for one scope; only platform tests may do this.
class ScopedTimeZone {
  public:
    explicit ScopedTimeZone(const char* zone) {
        zone_.emplace("TZ", zone);
        tzset();
    }
    ~ScopedTimeZone() {
        zone_.reset();
        tzset();
    }
    ScopedTimeZone(const ScopedTimeZone&) = delete;
    ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

  private:
    std::optional<ScopedEnvironment> zone_;
};

}  // namespace tolvane::testing
