#pragma once

#include <mutex>
#include <string>

#include "core/base/dynamic_list.h"
#include "core/geo/geo_point.h"

namespace tolvane {

struct AlarmSound;
struct GpsState;
struct Options;
class SoundService;
class VoiceGuide;

inline constexpr int kNoDestination = -1;

// Menu commands of "Go To" > "Destination".
inline constexpr int kCommandNextDestination = 40237;
inline constexpr int kCommandPreviousDestination = 40238;
inline constexpr int kCommandResetDestinations = 40239;

// Proximity ranges are whole metres in the Metric system and whole feet in
// the others; one foot is 1/3280.8 km, matching the feet per metre that the
// altitude uses.
inline constexpr double kKmPerRangeMetre = 0.001;
inline constexpr double kKmPerRangeFoot = 0.00030480370641307;

// The destination list of Go-To navigation and where the round stands. The
// current and previous destinations are positions in the list. Everything
// here is guarded by the navigation lock: the functions below take it
// themselves, and whoever reads the list directly (the map view) takes it
// too.
struct Navigation {
    // Mutable: the painters, which only read, lock it through a const view
    // of the state.
    mutable std::mutex lock;
    bool open = false;  // a list is open, perhaps still empty
    std::string file;   // where the open list is saved; empty until it has been
    // The user changed the list since it was last read or saved, so closing
    // it would lose work. A list that Go To made of one point has nothing to
    // lose, and reaching destinations changes nothing that the file keeps.
    bool unsavedChanges = false;
    DynamicList<GeoPoint> destinations;
    int current = kNoDestination;
    int previous = kNoDestination;  // the destination reached last
};

// Replaces the list with the records of loaded (which is left empty), opens
// it and makes the first destination not yet reached the current one. The
// list's file is left to the caller.
void OpenDestinationList(Navigation& navigation, DynamicList<GeoPoint>& loaded);

// Empties and closes the list; there is no current or previous destination
// afterwards.
void CloseDestinationList(Navigation& navigation);

// The position of the current destination in the list, or kNoDestination.
int CurrentDestinationIndex(Navigation& navigation);

// Copies the current destination into destination; false when there is none.
bool CopyCurrentDestination(const Navigation& navigation, GeoPoint& destination);

// The distance half of the per-second destination figures, in the shape of
// the trip statistics' DestinationDistance: with navigation switched on and a
// current destination, km becomes the distance from the given position to it
// (computed under the lock). False, km untouched, otherwise. The time to the
// destination is derived from it with the trip statistics.
bool UpdateDestinationFigures(Navigation& navigation, const Options& options, double latitude,
                              double longitude, double& km);

// The arrival range of a destination in km: the default range when "Always
// use default range" is set or the destination has none (-1), else its own;
// read in metres or feet by the unit system.
double ProximityRangeKm(const GeoPoint& destination, const Options& options);

// The arrival check of every second, for a connected valid fix with
// navigation on and a current destination: within its range, the
// destination's voice text is spoken when the voice guide is on and the
// engine works, else the alarm sound plays once (and the looping speed
// alarm counts as stopped); then the next destination becomes current.
// Returns true on arrival, so the caller repaints.
bool CheckArrival(const GpsState& state, const Options& options, Navigation& navigation,
                  VoiceGuide& voice, AlarmSound& alarm, SoundService& sound);

// The three Go-To commands; the caller repaints afterwards.
// Next marks the current destination reached and selects the first one not
// reached yet (none when all are).
void NextDestination(Navigation& navigation);
// Previous goes back to the destination reached most recently in list
// order and marks it not reached; with nothing reached it stays on the first.
void PreviousDestination(Navigation& navigation);
// Reset marks every destination not reached and starts again at the first.
void ResetDestinations(Navigation& navigation);

}  // namespace tolvane
