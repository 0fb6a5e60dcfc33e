#pragma once

#include <cstdint>
#include <functional>

#include "core/gps/gps_state.h"

namespace tolvane {

// The data processors of the Options combo "Data Processor".
enum DataProcessor : int { kProcessorRaw = 0, kProcessorAveraging = 1, kProcessorSmoothing = 2 };
inline constexpr int kDataProcessorCount = kProcessorSmoothing + 1;

inline constexpr int kAveragingSlots = 5;

struct AveragingSlot {
    double latitude = 0;
    double longitude = 0;
    double speedKnots = 0;
    double altitude = 0;
    std::int32_t valid = 0;
};

struct SmoothingSlot {
    double latitude = 0;
    double longitude = 0;
    double speedKnots = 0;
    double positionVariance = 0;
    double speedVariance = 0;
    std::int32_t filled = 0;
};

// The private state of the averaging and smoothing processors.
struct ProcessorState {
    AveragingSlot history[kAveragingSlots];  // oldest first
    SmoothingSlot estimate;
    SmoothingSlot measurement;
};

// Publishes one reading of the active source into state through the chosen
// data processor, then applies the time rule: the shown time is taken from
// the receiver on the first valid tick and every eleventh tick after, and
// counted on locally in between.
void UpdateGpsState(GpsState& state, ProcessorState& processor, int dataProcessor,
                    std::int32_t connected, const GpsFix& snapshot);

// Holds the position and course while the speed, in the unit of the unit
// system, is below the minimum speed; the comparison is strict.
void ApplyMinimumSpeedHold(GpsState& state, int unitSystem, double minimumSpeed);

// Gives the distance in km from the published position to the current
// destination, or false when navigation is off or there is none. Called
// under the navigation lock by its provider.
using DestinationDistance = std::function<bool(double latitude, double longitude, double& km)>;

// Advances the trip statistics, the distance and time to the destination
// and the connected and moving times by one tick.
void AdvanceTripStatistics(GpsState& state, const DestinationDistance& destinationDistance);

}  // namespace tolvane
