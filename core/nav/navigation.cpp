#include "core/nav/navigation.h"

#include "core/base/services.h"
#include "core/data/options.h"
#include "core/geo/distance.h"
#include "core/geo/units.h"
#include "core/gps/gps_state.h"
#include "core/nav/speed_alarm.h"
#include "core/nav/voice_guide.h"

namespace tolvane {
namespace {

using Guard = std::lock_guard<std::mutex>;

GeoPoint& DestinationAt(DynamicList<GeoPoint>& list, int index) {
    list.SeekTo(index);
    return list.Current();
}

int FirstUnreached(DynamicList<GeoPoint>& list) {
    int index = 0;
    int found = kNoDestination;
    list.ForEach([&](const GeoPoint& point) {
        if (found == kNoDestination && point.reached == 0) found = index;
        ++index;
    });
    return found;
}

// The end of the run of reached destinations at the head of the list: the
// one reached most recently in list order, or none when the first one is not
// reached.
int LastReachedInOrder(DynamicList<GeoPoint>& list) {
    const int firstUnreached = FirstUnreached(list);
    return firstUnreached == kNoDestination ? list.Count() - 1 : firstUnreached - 1;
}

bool SpeakArrival(const Options& options, const GeoPoint& destination, VoiceGuide& voice) {
    return options.voiceGuide != 0 && !destination.voiceGuide.empty() &&
           voice.IsVoiceEngineAvailable(options.voiceEngine) &&
           voice.SpeakText(options.voiceEngine, destination.voiceGuide);
}

}  // namespace

void OpenDestinationList(Navigation& navigation, DynamicList<GeoPoint>& loaded) {
    const Guard guard(navigation.lock);
    navigation.destinations.Clear();
    while (loaded.Count() > 0) navigation.destinations.Append(loaded.PopFront());
    navigation.open = true;
    navigation.unsavedChanges = false;
    navigation.current = FirstUnreached(navigation.destinations);
    navigation.previous = kNoDestination;
}

void CloseDestinationList(Navigation& navigation) {
    const Guard guard(navigation.lock);
    navigation.destinations.Clear();
    navigation.open = false;
    navigation.unsavedChanges = false;
    navigation.file.clear();
    navigation.current = kNoDestination;
    navigation.previous = kNoDestination;
}

int CurrentDestinationIndex(Navigation& navigation) {
    const Guard guard(navigation.lock);
    return navigation.current;
}

bool CopyCurrentDestination(const Navigation& navigation, GeoPoint& destination) {
    const Guard guard(navigation.lock);
    if (navigation.current == kNoDestination) return false;
    // Walked without the list's cursor, so that a painter can ask through a
    // const view of the state.
    int index = 0;
    navigation.destinations.ForEach([&](const GeoPoint& point) {
        if (index++ == navigation.current) destination = point;
    });
    return true;
}

bool UpdateDestinationFigures(Navigation& navigation, const Options& options, double latitude,
                              double longitude, double& km) {
    const Guard guard(navigation.lock);
    if (options.navigation == 0 || navigation.current == kNoDestination) return false;
    const GeoPoint& destination = DestinationAt(navigation.destinations, navigation.current);
    km = DistanceKm(latitude, longitude, destination.latitude, destination.longitude);
    return true;
}

double ProximityRangeKm(const GeoPoint& destination, const Options& options) {
    const bool useDefault = options.alwaysUseDefaultRange != 0 || destination.proximityRange == -1;
    const std::int32_t range =
        useDefault ? options.defaultProximityRange : destination.proximityRange;
    return range * (options.unitSystem == kMetric ? kKmPerRangeMetre : kKmPerRangeFoot);
}

bool CheckArrival(const GpsState& state, const Options& options, Navigation& navigation,
                  VoiceGuide& voice, AlarmSound& alarm, SoundService& sound) {
    if (state.connected == 0 || state.fixValid == 0 || options.navigation == 0) return false;
    // A copy, so that neither the speech engine nor the next step runs under
    // the lock.
    GeoPoint destination;
    if (!CopyCurrentDestination(navigation, destination)) return false;
    if (state.destinationDistanceKm > ProximityRangeKm(destination, options)) return false;
    if (!SpeakArrival(options, destination, voice)) {
        // A failing voice engine must never mean silence.
        RepeatUntilSuccess([&] { return sound.PlaySoundFile(alarm.path, SoundMode::kOnce); });
        // The arrival sound has replaced the looping speed alarm.
        alarm.sounding = false;
    }
    NextDestination(navigation);
    return true;
}

void NextDestination(Navigation& navigation) {
    const Guard guard(navigation.lock);
    if (navigation.current != kNoDestination) {
        DestinationAt(navigation.destinations, navigation.current).reached = 1;
        navigation.previous = navigation.current;
    }
    navigation.current = FirstUnreached(navigation.destinations);
}

void PreviousDestination(Navigation& navigation) {
    const Guard guard(navigation.lock);
    DynamicList<GeoPoint>& list = navigation.destinations;
    const int lastReached = LastReachedInOrder(list);
    // With nothing reached the round stays on its first destination.
    navigation.current = lastReached != kNoDestination || list.Count() == 0 ? lastReached : 0;
    if (navigation.current != kNoDestination) DestinationAt(list, navigation.current).reached = 0;
    navigation.previous = LastReachedInOrder(list);
}

void ResetDestinations(Navigation& navigation) {
    const Guard guard(navigation.lock);
    navigation.previous = kNoDestination;
    navigation.current = kNoDestination;
    if (navigation.destinations.Count() == 0) return;
    navigation.destinations.ForEach([](GeoPoint& point) { point.reached = 0; });
    navigation.current = 0;
}

}  // namespace tolvane
