#pragma once

#include <cstdint>
#include <string>

namespace tolvane {

struct GpsState;
struct Options;
class SoundService;

inline constexpr int kSpeedAlarmOff = -1;
inline constexpr int kLastSpeedAlarm = 7;

// Menu commands of the "Speed Alarm" popup: "Off", then the eight limits.
inline constexpr int kCommandSpeedAlarmOff = 40034;
inline constexpr int kCommandFirstSpeedAlarm = 40035;
inline constexpr int kCommandLastSpeedAlarm = 40042;

// The alarm sound that the speed alarm loops and the arrival announcement
// plays once.
struct AlarmSound {
    std::string path;  // Alarm.wav beside the program
    // The looping alarm has been started and not stopped. Whoever plays
    // another sound over it clears this, so the next check starts the alarm
    // again if the speed is still too high.
    bool sounding = false;
};

// The check of every second: while the GPS is connected (a fix is not
// needed) and a limit is selected, a speed in the current unit at or above
// the limit starts the looping alarm once; below the limit, with the alarm
// off or the GPS gone, a sounding alarm is stopped.
void CheckSpeedAlarm(const GpsState& state, const Options& options, AlarmSound& alarm,
                     SoundService& sound);

// The Left and Right keys of the Speed view.
enum class SpeedAlarmStep { kDown, kUp };

// The alarm index after one step: down goes k to k - 1 and 0 to "Off"; up
// goes "Off" to 0 and k to k + 1; "Off" and 7 are the ends.
int StepSpeedAlarmIndex(int index, SpeedAlarmStep step);

// The menu command that selects an index ("Off" for -1); the checked item of
// the radio group is the command of the current index.
int SpeedAlarmCommand(int index);

// The index a menu command selects, or false for a command outside the
// "Off" and limit items.
bool SpeedAlarmIndexFromCommand(int command, int& index);

// The text of a limit item: the value and the speed unit, "80 km/h".
std::string SpeedAlarmMenuText(std::int32_t value, int unitSystem);

// The "Speed Alarms" dialog shows each value as an unsigned decimal and
// reads it back the same way: digits only, an empty or unreadable box gives
// 0, so the value round-trips even when it was stored negative.
std::string SpeedAlarmValueText(std::int32_t value);
std::int32_t SpeedAlarmValueFromText(const std::string& text);

// The dialog's unit label, "(km/h)".
std::string SpeedAlarmUnitLabel(int unitSystem);

}  // namespace tolvane
