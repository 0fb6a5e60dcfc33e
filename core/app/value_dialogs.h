#pragma once

#include <array>
#include <string>

#include "core/data/options.h"

namespace tolvane {

// The two dialogs that edit a row of numbers of the settings: "Track
// Interval" (the four interval slots, "Customize..." in the Track Interval
// menu) and "Speed Alarms" (the eight limits, "Customize..." in the Speed
// Alarm menu). Each field shows its value as an unsigned decimal and takes
// digits only; OK stores every field, Cancel nothing.
using TrackIntervalFields = std::array<std::string, kTrackIntervalCount>;
using SpeedAlarmFields = std::array<std::string, kSpeedAlarmCount>;

// The fields as the dialogs open: the present values.
TrackIntervalFields TrackIntervalFieldsOf(const Options& options);
SpeedAlarmFields SpeedAlarmFieldsOf(const Options& options);

// OK: each interval field is read as an unsigned number into its slot and
// clamped to 1..3600; each limit field is read into its limit as it
// stands, an empty field as 0. The track timer and the Speed Alarm menu
// take the new values at their next look.
void StoreTrackIntervalFields(Options& options, const TrackIntervalFields& fields);
void StoreSpeedAlarmFields(Options& options, const SpeedAlarmFields& fields);

}  // namespace tolvane
