#pragma once

#include "core/base/file_time.h"
#include "core/data/options.h"
#include "core/gps/gps_state.h"

namespace tolvane::testing {

// A clock the test sets and advances by hand, as a replay does.
class ManualClock final : public Clock {
  public:
    explicit ManualClock(const CivilTime& start) : now_(*CivilToFileTime(start)) {}
    FileTime NowUtc() const override { return now_; }
    void AdvanceSeconds(int seconds) { now_ += seconds * kFileTimeTicksPerSecond; }

  private:
    FileTime now_;
};

// Options with the track logger on in the given format, the rest defaults.
inline Options LoggingOptions(std::int32_t format) {
    Options options;
    ResetOptions(options);
    options.trackLoggerEnabled = 1;
    options.trackLogFormat = format;
    return options;
}

// A valid fix west of Greenwich at 10 knots.
inline GpsState MovingFix() {
    GpsState gps;
    gps.fixValid = 1;
    gps.latitude = 52.5;
    gps.longitude = -1.25;
    gps.altitude = 123.4;
    gps.course = 45;
    gps.speedKnots = 10;
    return gps;
}

}  // namespace tolvane::testing
