#pragma once

#include <cstdint>

namespace tolvane {

struct GpsState;
struct Options;

// What the instrument views remember from tick to tick. The painters keep
// nothing; once a second the main timer advances this record and the views
// only read it.

// The full scale of the Speed view's dial, in the speed unit it was chosen
// for. It rises at once and falls only after a minute of slow going, so the
// needle does not jump between scales at every stop.
struct SpeedScale {
    int fullScale = 0;  // 0 until the first tick
    int unitSystem = 0;
    int slowSeconds = 0;  // consecutive ticks below 40 % of the scale
};

// The last course that meant something: taken while moving at 2 km/h or
// more, then kept, ageing, while the speed is too low for a course.
struct CourseMemory {
    bool live = false;  // this tick's course is a real one
    bool have = false;  // a course was seen since the trip began
    double degrees = 0;
    int ageSeconds = 0;  // ticks since it was last live
};

// The trip figures beyond the GPS state's own: climbing with a 5 m dead
// band against the receiver's altitude noise, and the altitude's range.
// Kept beside the trip counters and cleared with them.
struct TripExtras {
    bool haveAltitude = false;
    double lowestMetres = 0;
    double highestMetres = 0;
    double anchorMetres = 0;  // the altitude at the last counted step
    double ascentMetres = 0;
    double descentMetres = 0;
};

// The trip as the Trip Stat and Speed views show it. The GPS state's own
// trip counters add up every step between two fixes, the wander of a
// receiver standing still and the jump of a fix that settles included, so
// their average can exceed their maximum. Here a step counts only while the
// receiver says it moves, and only as far as its speed carries it in the
// seconds the step took: jitter and jumps stay out, the moving and stopped
// times are the same ticks split two ways, and the average can never
// exceed the maximum, which is taken over the same moving ticks.
struct TripFigures {
    double distanceKm = 0;
    int movingSeconds = 0;
    int stoppedSeconds = 0;
    double maxSpeedKnots = 0;
    bool havePoint = false;  // a fix since the GPS was last connected
    double latitude = 0;     // that fix
    double longitude = 0;
    int pendingSeconds = 0;  // connected ticks since it, not yet counted
};

// The wait for the first fix after a start of the GPS: the connected
// seconds the receiver has searched so far, and once it has a fix, how long
// that took from the start. The time to first fix is the receiver's and not
// the trip's, so clearing the trip keeps it; only the next start forgets it.
struct FirstFix {
    bool searching = false;  // started and no fix since
    int startedSeconds = 0;  // ticks since the start, while searching
    int searchingSeconds = 0;
    int timeToFixSeconds = -1;  // -1 until the first fix
};

struct InstrumentMemory {
    SpeedScale speedScale;
    CourseMemory course;
    TripExtras trip;
    TripFigures tripFigures;
    FirstFix firstFix;
};

inline constexpr double kCourseMinimumKmh = 2.0;
inline constexpr double kClimbStepMetres = 5.0;
inline constexpr int kScaleStepDownSeconds = 60;

// The smallest dial scale of the unit system that is at least 1.2 times
// the speed and 1.1 times the alarm limit (0 for none); the largest scale
// when none is.
int ChooseFullScale(double speed, double alarmLimit, int unitSystem);

// One second of the dial scale: up at once, down to the fitting scale
// after kScaleStepDownSeconds below 40 % of the scale.
void AdvanceSpeedScale(SpeedScale& scale, double speed, double alarmLimit, int unitSystem);

// One second of the course memory, the trip extras and the trip figures.
void AdvanceCourseMemory(CourseMemory& memory, const GpsState& gps);
void AdvanceTripExtras(TripExtras& trip, const GpsState& gps);
void AdvanceTripFigures(TripFigures& trip, const GpsState& gps);

// Begins the wait for the first fix at a start of the GPS, from the state
// that the start's own update published: a fix there took no time.
void StartFirstFix(FirstFix& firstFix, const GpsState& gps);

// One second of the wait: while searching, a tick since the start, and a
// searching second while connected without a fix; the first fix ends it.
void AdvanceFirstFix(FirstFix& firstFix, const GpsState& gps);

// The trip's average speed over its moving time, 0 before it moved.
double TripAverageKnots(const TripFigures& trip);
// The trip's stopped time with the ticks since the last fix, which count as
// stopped until a fix shows the receiver moved through them.
int TripStoppedSeconds(const TripFigures& trip);

// The once-a-second update of everything above, after the GPS state and the
// alarms of this tick.
void AdvanceInstrumentMemory(InstrumentMemory& memory, const GpsState& gps, const Options& options);

// Clears the trip: the GPS state's trip counters (distance, moving and
// connected times, maximum and average speed, the previous point) and the
// extras and figures kept beside them. The time to first fix stays.
void ClearTrip(GpsState& gps, InstrumentMemory& memory);

// The selected speed alarm limit in the current unit, or 0 when the alarm
// is off.
double SelectedAlarmLimit(const Options& options);

}  // namespace tolvane
