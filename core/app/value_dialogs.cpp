#include "core/app/value_dialogs.h"

#include <cstddef>
#include <cstdint>

#include "core/data/track_logger.h"
#include "core/nav/speed_alarm.h"

namespace tolvane {
namespace {

// Each value as an unsigned decimal, so that a value stored negative comes
// back unchanged when its field is left alone.
template <std::size_t Count>
std::array<std::string, Count> UnsignedFields(const std::int32_t (&values)[Count]) {
    std::array<std::string, Count> fields;
    for (std::size_t i = 0; i < Count; ++i) {
        fields[i] = std::to_string(static_cast<std::uint32_t>(values[i]));
    }
    return fields;
}

template <std::size_t Count, typename Read>
void StoreFields(std::int32_t (&values)[Count], const std::array<std::string, Count>& fields,
                 Read read) {
    for (std::size_t i = 0; i < Count; ++i) values[i] = read(fields[i]);
}

}  // namespace

TrackIntervalFields TrackIntervalFieldsOf(const Options& options) {
    return UnsignedFields(options.trackIntervalValues);
}

SpeedAlarmFields SpeedAlarmFieldsOf(const Options& options) {
    return UnsignedFields(options.speedAlarmValues);
}

void StoreTrackIntervalFields(Options& options, const TrackIntervalFields& fields) {
    StoreFields(options.trackIntervalValues, fields,
                [](const std::string& field) { return TrackIntervalFromField(field); });
}

void StoreSpeedAlarmFields(Options& options, const SpeedAlarmFields& fields) {
    StoreFields(options.speedAlarmValues, fields, SpeedAlarmValueFromText);
}

}  // namespace tolvane
