#include "core/data/track_logger.h"

#include <algorithm>
#include <cstdlib>

#include "core/base/number_fields.h"

namespace tolvane {
namespace {

// The selected slot's value. Options.dat is not range-checked beyond the
// index, and a slot of 0 would let the countdown reach -1 and be taken for
// a GPS restart, so the value is held to the dialog's range here as well.
std::int32_t SelectedInterval(const Options& options) {
    const std::int32_t index = std::clamp(options.trackIntervalIndex, 0, kTrackIntervalCount - 1);
    return ClampTrackInterval(options.trackIntervalValues[index]);
}

// Keeps the first failure of the run: that is the file the user is told of.
void RecordFailure(TrackLogger& logger, const std::string& path) {
    if (logger.failedPath.empty()) logger.failedPath = path;
}

void FlushWriter(TrackLogger& logger) {
    if (!logger.writer->Flush()) RecordFailure(logger, logger.currentPath);
}

void StartFile(TrackLogger& logger, const Options& options, const std::string& trackLogFolder,
               const Clock& clock) {
    std::string path;
    if (!StartTrackFile(options, trackLogFolder, clock, path, *logger.writer)) {
        RecordFailure(logger, trackLogFolder);
    }
    logger.currentPath = path;
    logger.lastPoint.reset();
}

// Whether a point at second follows a gap in the current file's track. A
// clock set back counts as well: the times no longer follow the points.
bool IsAfterGap(const std::optional<LastLoggedPoint>& last, std::int64_t second) {
    return last && std::llabs(second - last->second) > 2LL * last->interval;
}

// Logs the current position; the countdown is reloaded with interval after
// it.
void LogPoint(TrackLogger& logger, const TrackTimerInputs& in, std::int32_t interval) {
    const std::int64_t second = in.clock.NowUtc() / kFileTimeTicksPerSecond;
    const int before = logger.liveTrack.Count();
    if (!AppendTrackPoint(in.options, in.gps, in.clock, logger.currentPath, logger.liveTrack,
                          *logger.writer, IsAfterGap(logger.lastPoint, second))) {
        RecordFailure(logger, logger.currentPath);
    }
    // Only a point that reached the file joins the live track, so the
    // track's growth tells whether the file got one.
    if (logger.liveTrack.Count() > before) logger.lastPoint = LastLoggedPoint{second, interval};
}

// The body of a tick while the GPS runs; the caller holds the track lock.
void AdvanceRunningTrack(TrackLogger& logger, const TrackTimerInputs& in) {
    if (logger.countdown == -1) {
        // A run that was killed while writing may have left its last point
        // cut short; mend that before a new track begins.
        RepairTrackFolder(in.trackLogFolder);
        logger.countdown = 0;
        logger.liveTrack.Clear();
        logger.viewedTrack.Clear();
        logger.currentPath.clear();
        logger.failedPath.clear();
        logger.failureShown = false;
    }
    const bool enabled = in.options.trackLoggerEnabled != 0;
    if (enabled && logger.currentPath.empty()) {
        StartFile(logger, in.options, in.trackLogFolder, in.clock);
    } else if (!enabled && !logger.currentPath.empty()) {
        // GPX and KML files are complete after every point: forgetting the
        // path (and writing what a conversion held back) is all it takes to
        // finish one.
        FlushWriter(logger);
        logger.currentPath.clear();
    }
    if (logger.countdown == 0) {
        const std::int32_t interval = SelectedInterval(in.options);
        if (in.gps.fixValid) LogPoint(logger, in, interval);
        logger.countdown = interval;
    }
    --logger.countdown;
}

}  // namespace

void TrackTimerTick(TrackLogger& logger, const TrackTimerInputs& inputs) {
    {
        const std::lock_guard<std::mutex> guard(logger.lock);
        if (inputs.gpsRunning) {
            AdvanceRunningTrack(logger, inputs);
        } else {
            logger.countdown = -1;
        }
    }
}

void RestartTrackFile(TrackLogger& logger, Options& options, std::int32_t format,
                      const std::string& trackLogFolder, const Clock& clock) {
    const std::lock_guard<std::mutex> guard(logger.lock);
    options.trackLogFormat = format;
    FlushWriter(logger);
    StartFile(logger, options, trackLogFolder, clock);
}

void FlushTrackWriter(TrackLogger& logger) {
    const std::lock_guard<std::mutex> guard(logger.lock);
    FlushWriter(logger);
}

void ViewTracks(TrackLogger& logger, Options& options, const std::vector<ImportTrack>& tracks) {
    const std::lock_guard<std::mutex> guard(logger.lock);
    logger.viewedTrack.Clear();
    for (const ImportTrack& track : tracks) {
        for (const TrackPoint& point : track.points) logger.viewedTrack.Append(point);
    }
    options.showTrack = 1;
}

std::int32_t ClampTrackInterval(std::int64_t seconds) {
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(seconds, kMinimumTrackInterval, kMaximumTrackInterval));
}

std::int32_t TrackIntervalFromField(std::string_view text) {
    return ClampTrackInterval(ReadUnsignedField(text, kMaximumTrackInterval + 1));
}

}  // namespace tolvane
