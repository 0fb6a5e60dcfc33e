#include "core/gps/gps_processing.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include "core/geo/distance.h"
#include "core/geo/units.h"

namespace tolvane {
namespace {

// Process and measurement noise of the smoothing filter.
constexpr double kPositionNoise = 7.531862433114254e-10;  // degrees squared
constexpr double kSpeedNoise = 0.18838011188271606;       // knots squared
constexpr int kTimeResyncTicks = 10;

void ClearHistory(ProcessorState& processor) {
    std::fill(std::begin(processor.history), std::end(processor.history), AveragingSlot{});
}

void ClearSmoothing(ProcessorState& processor) {
    processor.estimate = {};
    processor.measurement = {};
}

// Everything but the position, speed, altitude and time, which the
// processors may change.
void PublishUnprocessed(GpsState& state, const GpsFix& snapshot) {
    state.fixValid = snapshot.fixValid;
    state.course = snapshot.course;
    state.satellitesInView = snapshot.satellitesInView;
    state.satellitesUsed = snapshot.satellitesUsed;
    std::copy(std::begin(snapshot.satPrn), std::end(snapshot.satPrn), state.satPrn);
    std::copy(std::begin(snapshot.satSnr), std::end(snapshot.satSnr), state.satSnr);
    std::copy(std::begin(snapshot.satElevation), std::end(snapshot.satElevation),
              state.satElevation);
    std::copy(std::begin(snapshot.satAzimuth), std::end(snapshot.satAzimuth), state.satAzimuth);
    state.pdop = snapshot.pdop;
    state.hdop = snapshot.hdop;
    state.vdop = snapshot.vdop;
    state.fixType = snapshot.fixType;
}

void PublishPosition(GpsState& state, double latitude, double longitude, double speedKnots) {
    state.latitude = latitude;
    state.longitude = longitude;
    state.speedKnots = speedKnots;
}

void PublishRaw(GpsState& state, ProcessorState& processor, const GpsFix& snapshot) {
    PublishUnprocessed(state, snapshot);
    PublishPosition(state, snapshot.latitude, snapshot.longitude, snapshot.speedKnots);
    state.altitude = snapshot.altitude;
    ClearHistory(processor);
    ClearSmoothing(processor);
}

// Near the antimeridian the longitudes of the history are mirrored, in the
// history itself, so that 179.9 and -179.9 average to 180 rather than 0. The
// mirrored values stay in the history on later ticks.
bool MirrorAtAntimeridian(AveragingSlot (&history)[kAveragingSlots]) {
    for (const AveragingSlot& slot : history) {
        if (slot.longitude > -179.0 && slot.longitude < 179.0) return false;
    }
    for (AveragingSlot& slot : history) {
        slot.longitude = slot.longitude >= 179.0 ? 180.0 - slot.longitude : -180.0 - slot.longitude;
    }
    return true;
}

void PublishAveraged(GpsState& state, ProcessorState& processor, const GpsFix& snapshot) {
    PublishUnprocessed(state, snapshot);
    ClearSmoothing(processor);
    if (!(state.connected && snapshot.fixValid)) {
        PublishPosition(state, snapshot.latitude, snapshot.longitude, snapshot.speedKnots);
        state.altitude = snapshot.altitude;
        ClearHistory(processor);
        return;
    }
    std::move(std::begin(processor.history) + 1, std::end(processor.history),
              std::begin(processor.history));
    processor.history[kAveragingSlots - 1] = {snapshot.latitude, snapshot.longitude,
                                              snapshot.speedKnots, snapshot.altitude, 1};
    const bool wrap = MirrorAtAntimeridian(processor.history);

    AveragingSlot sum;
    int valid = 0;
    for (const AveragingSlot& slot : processor.history) {
        if (!slot.valid) continue;
        sum.latitude += slot.latitude;
        sum.longitude += slot.longitude;
        sum.speedKnots += slot.speedKnots;
        sum.altitude += slot.altitude;
        ++valid;
    }
    double longitude = sum.longitude / valid;
    if (wrap) longitude = longitude >= 0 ? 180.0 - longitude : -180.0 - longitude;
    PublishPosition(state, sum.latitude / valid, longitude, sum.speedKnots / valid);
    state.altitude = sum.altitude / valid;
}

// One step of a scalar filter with equal process and measurement noise:
// updates the variance and returns the gain.
double FilterGain(double& variance, double noise) {
    const double predicted = variance + noise;
    const double gain = predicted / (predicted + noise);
    variance = (1.0 - gain) * predicted;
    return gain;
}

double Blend(double previous, double measured, double gain) {
    return previous + gain * (measured - previous);
}

void PublishSmoothed(GpsState& state, ProcessorState& processor, const GpsFix& snapshot) {
    PublishUnprocessed(state, snapshot);
    state.altitude = snapshot.altitude;
    ClearHistory(processor);
    if (!(state.connected && snapshot.fixValid)) {
        ClearSmoothing(processor);
        PublishPosition(state, snapshot.latitude, snapshot.longitude, snapshot.speedKnots);
        return;
    }
    SmoothingSlot& estimate = processor.estimate;
    if (!estimate.filled) {
        estimate = {snapshot.latitude, snapshot.longitude, snapshot.speedKnots, 0, 0, 1};
    } else {
        SmoothingSlot& measurement = processor.measurement;
        measurement = {snapshot.latitude,         snapshot.longitude,     snapshot.speedKnots,
                       estimate.positionVariance, estimate.speedVariance, 1};
        // Latitude and longitude share one gain and one variance.
        const double positionGain = FilterGain(measurement.positionVariance, kPositionNoise);
        const double speedGain = FilterGain(measurement.speedVariance, kSpeedNoise);
        measurement.latitude = Blend(estimate.latitude, snapshot.latitude, positionGain);
        measurement.longitude = Blend(estimate.longitude, snapshot.longitude, positionGain);
        measurement.speedKnots = Blend(estimate.speedKnots, snapshot.speedKnots, speedGain);
        estimate = measurement;
    }
    PublishPosition(state, estimate.latitude, estimate.longitude, estimate.speedKnots);
}

void ApplyTimeRule(GpsState& state, const GpsFix& snapshot) {
    if (!state.connected || !state.fixValid) {
        state.timeResyncCountdown = 0;
        return;
    }
    if (state.timeResyncCountdown > 0) {
        --state.timeResyncCountdown;
        state.fixTime += kFileTimeTicksPerSecond;
    } else {
        state.timeResyncCountdown = kTimeResyncTicks;
        state.fixTime = snapshot.fixTime;
    }
}

void StoreHeld(GpsState& state) {
    state.heldLatitude = state.latitude;
    state.heldLongitude = state.longitude;
    state.heldCourse = state.course;
}

}  // namespace

void UpdateGpsState(GpsState& state, ProcessorState& processor, int dataProcessor,
                    std::int32_t connected, const GpsFix& snapshot) {
    state.connected = connected;
    switch (dataProcessor) {
        case kProcessorRaw:
            PublishRaw(state, processor, snapshot);
            break;
        case kProcessorAveraging:
            PublishAveraged(state, processor, snapshot);
            break;
        case kProcessorSmoothing:
            PublishSmoothed(state, processor, snapshot);
            break;
        default:
            break;  // an unknown processor publishes nothing
    }
    ApplyTimeRule(state, snapshot);
}

void ApplyMinimumSpeedHold(GpsState& state, int unitSystem, double minimumSpeed) {
    if (!(state.connected && state.fixValid)) {
        state.hadFixLastTick = 0;
        return;
    }
    const bool tooSlow = SpeedInUnit(state.speedKnots, unitSystem) < minimumSpeed;
    if (state.hadFixLastTick) {
        if (tooSlow) {
            state.latitude = state.heldLatitude;
            state.longitude = state.heldLongitude;
            state.course = state.heldCourse;
            state.speedKnots = 0;
        } else {
            StoreHeld(state);
        }
        return;
    }
    // The first fix after a gap keeps its position even when slow.
    StoreHeld(state);
    if (tooSlow) state.speedKnots = 0;
    state.hadFixLastTick = 1;
}

void AdvanceTripStatistics(GpsState& state, const DestinationDistance& destinationDistance) {
    if (!state.connected) {
        state.havePreviousPoint = 0;
        return;
    }
    if (!state.fixValid) {
        ++state.connectedSeconds;
        return;
    }
    state.maxSpeedKnots = std::max(state.maxSpeedKnots, state.speedKnots);
    if (state.havePreviousPoint) {
        state.tripDistanceKm += DistanceKm(state.previousLatitude, state.previousLongitude,
                                           state.latitude, state.longitude);
    } else {
        state.havePreviousPoint = 1;
    }
    state.previousLatitude = state.latitude;
    state.previousLongitude = state.longitude;
    // The average uses the moving time before this tick's increment.
    if (state.movingSeconds > 0) {
        state.averageSpeedKmh = state.tripDistanceKm / state.movingSeconds * 3600.0;
    }
    double km = 0;
    if (destinationDistance && destinationDistance(state.latitude, state.longitude, km)) {
        state.destinationDistanceKm = km;
    }
    if (state.speedKnots > 0) {
        // A crawl towards a far destination saturates instead of overflowing.
        const double seconds =
            state.destinationDistanceKm / (state.speedKnots * kKmPerNauticalMile) * 3600.0;
        state.destinationSeconds = seconds < std::numeric_limits<std::int32_t>::max()
                                       ? static_cast<std::int32_t>(seconds)
                                       : std::numeric_limits<std::int32_t>::max();
        ++state.movingSeconds;
    } else {
        state.destinationSeconds = -1;
    }
    ++state.connectedSeconds;
}

}  // namespace tolvane
