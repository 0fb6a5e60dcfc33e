#include "core/nav/speed_alarm.h"

#include <cstdint>
#include <limits>

#include "core/base/services.h"
#include "core/data/options.h"
#include "core/geo/formatting.h"
#include "core/geo/units.h"
#include "core/gps/gps_state.h"

namespace tolvane {
namespace {

void StartAlarm(AlarmSound& alarm, SoundService& sound) {
    if (alarm.sounding) return;
    RepeatUntilSuccess([&] { return sound.PlaySoundFile(alarm.path, SoundMode::kLoop); });
    alarm.sounding = true;
}

void StopAlarm(AlarmSound& alarm, SoundService& sound) {
    if (!alarm.sounding) return;
    RepeatUntilSuccess([&] { return sound.StopSound(); });
    alarm.sounding = false;
}

bool IsLimitIndex(int index) {
    return index >= 0 && index <= kLastSpeedAlarm;
}

}  // namespace

void CheckSpeedAlarm(const GpsState& state, const Options& options, AlarmSound& alarm,
                     SoundService& sound) {
    const double speed = SpeedInUnit(state.speedKnots, options.unitSystem);
    const int index = options.speedAlarmIndex;
    // The loader keeps the index in -1..7; anything else counts as "Off"
    // rather than reading past the eight values.
    if (state.connected == 0 || !IsLimitIndex(index)) {
        StopAlarm(alarm, sound);
        return;
    }
    // The values carry no unit: they are read in the current speed unit.
    const double limit = static_cast<double>(options.speedAlarmValues[index]);
    if (speed >= limit) {
        StartAlarm(alarm, sound);
    } else {
        StopAlarm(alarm, sound);
    }
}

int StepSpeedAlarmIndex(int index, SpeedAlarmStep step) {
    if (step == SpeedAlarmStep::kDown) return index > kSpeedAlarmOff ? index - 1 : kSpeedAlarmOff;
    return index < kLastSpeedAlarm ? index + 1 : kLastSpeedAlarm;
}

int SpeedAlarmCommand(int index) {
    return kCommandFirstSpeedAlarm + index;
}

bool SpeedAlarmIndexFromCommand(int command, int& index) {
    if (command < kCommandSpeedAlarmOff || command > kCommandLastSpeedAlarm) return false;
    index = command - kCommandFirstSpeedAlarm;
    return true;
}

std::string SpeedAlarmMenuText(std::int32_t value, int unitSystem) {
    return std::to_string(value) + " " + SpeedUnitText(unitSystem);
}

std::string SpeedAlarmValueText(std::int32_t value) {
    return std::to_string(static_cast<std::uint32_t>(value));
}

std::int32_t SpeedAlarmValueFromText(const std::string& text) {
    std::size_t i = text.find_first_not_of(' ');
    if (i == std::string::npos) return 0;
    std::uint64_t value = 0;
    for (; i < text.size(); ++i) {
        const char c = text[i];
        if (c < '0' || c > '9') return 0;
        value = value * 10 + static_cast<std::uint64_t>(c - '0');
        if (value > std::numeric_limits<std::uint32_t>::max()) return 0;
    }
    // Stored in the signed field bit for bit, as the dialog shows it back.
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

std::string SpeedAlarmUnitLabel(int unitSystem) {
    return std::string("(") + SpeedUnitText(unitSystem) + ")";
}

}  // namespace tolvane
