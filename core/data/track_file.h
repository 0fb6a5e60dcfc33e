#pragma once

#include <cstdint>
#include <string>

#include "core/base/dynamic_list.h"
#include "core/base/file_time.h"
#include "core/data/csv_text.h"
#include "core/data/options.h"
#include "core/gps/gps_state.h"

namespace tolvane {

// Values of the Options field "track log format".
inline constexpr std::int32_t kTrackFormatLog = 0;
inline constexpr std::int32_t kTrackFormatGpx = 1;
inline constexpr std::int32_t kTrackFormatKml = 2;

// The GPX and KML documents always end with these; every point goes in
// front of them.
inline constexpr char kGpxTrailer[] = "</trkseg>\r\n</trk>\r\n</gpx>";
inline constexpr char kKmlTrailer[] = "</Document>\r\n</kml>";

// Every point's text must fit a scratch buffer of this many bytes, its
// terminating NUL included; a point that would not fit is not written.
inline constexpr std::size_t kTrackPointTextLimit = 1000;

// One point of an in-memory track, as the map draws it.
struct TrackPoint {
    float latitude = 0;
    float longitude = 0;
    CivilTime time;  // UTC
};

// Starts a new track file for the current run when the logger is enabled in
// options: the name is the local date and time of now, e.g.
// "20110704160509.gpx", inside trackLogFolder, and it becomes currentPath. A
// GPX or KML file gets its header and trailer at once, so it is a complete
// document from the start; a log file is created by its first point. An
// existing file of the same name (two starts in one second) has its
// beginning overwritten but keeps its length. Failures are silent.
void StartTrackFile(const Options& options, const std::string& trackLogFolder, const Clock& clock,
                    std::string& currentPath);

// Appends the current position of gps to currentPath in the format of
// options, time-stamped with the UTC time of now, and then adds it to track,
// whose size also numbers the KML placemarks. Nothing happens while the
// logger is disabled, without a file or without a valid fix, or when the
// point's text would not fit its buffer. A file that can't be opened misses
// the point silently, and so does the track; a GPX or KML file too short to
// end with its trailer is left untouched, but the track gets the point.
void AppendTrackPoint(const Options& options, const GpsState& gps, const Clock& clock,
                      const std::string& currentPath, DynamicList<TrackPoint>& track);

// A GPX or KML track file whose last point was cut short, because the
// program was killed while the kernel copied that point's write across a
// page boundary, no longer ends with its trailer. Repairing it cuts the file
// back to the end of its last complete point (or of its header) and writes
// the trailer again, so every point written before is kept. Returns true
// when the file needed and got the repair.
bool RepairTrackFile(const std::string& path);

// Repairs every GPX and KML file of the track folder and removes the
// ".part" files of documents whose creation was cut short. Returns the
// number of files repaired.
int RepairTrackFolder(const std::string& trackLogFolder);

// Reads a track log in the log format back into track (appending). A line
// is taken when its first column (longitude, -180..180), its second
// (latitude, -90..90) and its fourth (the UTC time "YYYYMMDD HH:MM:SS",
// a real date) all read; the third column is ignored, and so are the
// columns after the fourth (speed, course and altitude are not part of an
// in-memory track). Any other line, such as a line cut short, a header
// written by another program or a damaged time, is skipped and counted.
CsvReadResult ReadTrackLogFile(const std::string& path, DynamicList<TrackPoint>& track);

}  // namespace tolvane
