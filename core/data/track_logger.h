#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/dynamic_list.h"
#include "core/base/file_time.h"
#include "core/data/options.h"
#include "core/data/point_import.h"
#include "core/data/track_file.h"
#include "core/gps/gps_state.h"

namespace tolvane {

// The "Track Interval" dialog keeps every slot within these seconds.
inline constexpr std::int32_t kMinimumTrackInterval = 1;
inline constexpr std::int32_t kMaximumTrackInterval = 3600;

// The point last written to the track file, as the logger tells a gap from
// it: its UTC time in whole seconds, as the file records it, and the
// interval counted down after it.
struct LastLoggedPoint {
    std::int64_t second = 0;
    std::int32_t interval = 0;
};

// The track logger's state. Its lock is the program's track lock: the track
// timer, the Options dialog when it restarts the file, map loading and track
// drawing take it before they touch the file path, the lists or the map
// picture, so none of them sees the others' work half done.
struct TrackLogger {
    // Mutable: the painters, which only read, lock it through a const view
    // of the state.
    mutable std::mutex lock;
    // Seconds until the next point; -1 while the GPS was not running at the
    // last tick, which makes the next running tick begin a new track.
    std::int32_t countdown = -1;
    // The track file of this run; empty while no file is in use.
    std::string currentPath;
    // The last point of the current track file; none before its first.
    std::optional<LastLoggedPoint> lastPoint;
    // The points logged in this GPS run. Its count also numbers the KML
    // placemarks, so it holds nothing but what this run appended.
    DynamicList<TrackPoint> liveTrack;
    // Where the points go: the program writes each at once; a conversion
    // may put a buffered writer here.
    DirectTrackWriter directWriter;
    TrackWriter* writer = &directWriter;
    // The first track file of this GPS run that could not be created or
    // written, empty while none failed; the user is told once per run.
    std::string failedPath;
    bool failureShown = false;
    // A track log read back by "View Log File". It is kept apart so that
    // viewing an old track neither renumbers the placemarks of the running
    // file nor mixes into the live line; the map draws both, and the next
    // start of the GPS clears both.
    DynamicList<TrackPoint> viewedTrack;
};

// What one tick of the track timer reads.
struct TrackTimerInputs {
    const GpsState& gps;
    const Options& options;
    bool gpsRunning;
    const std::string& trackLogFolder;
    const Clock& clock;
};

// The one-second track timer: counts the selected interval down and, when
// it runs out, logs the current position (first at the tick after the GPS
// starts, then every interval); starts and ends the track file as the
// "Enable Logger" flag changes. A point more than twice the interval away
// from the file's last point, by the times the file records, comes after a
// gap (a suspend, a clock set by hand, a lost fix) and begins a new segment;
// the interval is the one counted down after that last point, so that
// choosing another interval begins none by itself. Runs inside the track lock. A file that
// cannot be created or a point that cannot be written is recorded in
// failedPath.
void TrackTimerTick(TrackLogger& logger, const TrackTimerInputs& inputs);

// The Options dialog's restart when the track log format (or the storage
// location, and with it trackLogFolder) changes while logging: stores the
// format and starts a new file, inside the track lock. A file that cannot
// be created is recorded in failedPath, for the next tick to tell.
void RestartTrackFile(TrackLogger& logger, Options& options, std::int32_t format,
                      const std::string& trackLogFolder, const Clock& clock);

// "View Log File" and the import of tracks: the tracks' points become the
// viewed track, replacing what was viewed before, and "Show Track" is
// turned on.
void ViewTracks(TrackLogger& logger, Options& options, const std::vector<ImportTrack>& tracks);

// The "Track Interval" dialog's rule for a slot: below 1 becomes 1, above
// 3600 becomes 3600.
std::int32_t ClampTrackInterval(std::int64_t seconds);

// Writes what the logger's writer holds back, inside the track lock; a
// failure is recorded as a tick records it. A conversion calls it at its end.
void FlushTrackWriter(TrackLogger& logger);

// One field of the "Track Interval" dialog, read as an unsigned number and
// clamped. Text that is not a whole number reads as 0 (so 1); blanks around
// the digits are allowed and a number too long for any type counts as large.
std::int32_t TrackIntervalFromField(std::string_view text);

}  // namespace tolvane
