#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/file_time.h"
#include "core/data/track_file.h"
#include "core/geo/geo_point.h"

namespace tolvane {

// Points, routes and tracks read from a file that another program (or this
// one) wrote: GPX for the import, GPX, KML and the log format for "View Log
// File". The XML readers outside the core fill these records with the texts
// as they stand in the file; the rules of what becomes of them are here.

// One wpt, rtept or trkpt (or a KML point) with the texts that matter to
// this program, untouched.
struct ImportPoint {
    double latitude = 0;
    double longitude = 0;
    std::string name;
    std::string description;  // GPX desc
    std::string comment;      // GPX cmt
    std::string symbol;       // GPX sym
    std::string time;         // ISO 8601, or the log format's "YYYYMMDD HH:MM:SS"
};

struct ImportRoute {
    std::string name;
    std::vector<ImportPoint> points;
};

struct ImportTrack {
    std::string name;
    std::vector<TrackPoint> points;
};

struct ImportContents {
    std::vector<ImportPoint> waypoints;
    std::vector<ImportRoute> routes;
    std::vector<ImportTrack> tracks;
};

// What kept a file from being read whole.
enum class ImportProblem {
    kNone,
    kNotOpened,      // missing or unreadable
    kBroken,         // not well-formed XML, or cut short
    kForeign,        // well-formed, but neither GPX nor a track file
    kBadPoint,       // a point without a readable position
    kTooManyPoints,  // more than kMostImportPoints points
    kCancelled,      // the user stopped the read
};

// The most points one file may give: half a million track points are six
// days of one-second logging, and the points of a larger file would take
// more memory than a handheld can spare (a waypoint read takes some 300
// bytes until it is imported).
inline constexpr int kMostImportPoints = 500000;

// Called now and then while a file is read, with the share of it read so
// far (0 to 1); false stops the read as cancelled.
using ImportProgress = std::function<bool(double share)>;

struct ImportRead {
    ImportContents contents;
    ImportProblem problem = ImportProblem::kNone;
    int problemLine = 0;        // where the first problem was met, when known
    std::string problemDetail;  // the XML reader's own words, or the root element's name
    int pointsSkipped = 0;      // points (or log lines) that could not be read
};

// The language texts of the import and of "View Log File".
inline constexpr std::uint32_t kTextImportWaypoint = 17400;
inline constexpr std::uint32_t kTextImportWaypoints = 17401;
inline constexpr std::uint32_t kTextImportRoute = 17402;
inline constexpr std::uint32_t kTextImportRoutes = 17403;
inline constexpr std::uint32_t kTextImportTrack = 17404;
inline constexpr std::uint32_t kTextImportTracks = 17405;
inline constexpr std::uint32_t kTextImportPoint = 17406;
inline constexpr std::uint32_t kTextImportPoints = 17407;
inline constexpr std::uint32_t kTextImportWith = 17408;
inline constexpr std::uint32_t kTextImportNothing = 17409;
inline constexpr std::uint32_t kTextUnnamedPoint = 17410;
inline constexpr std::uint32_t kTextUnnamedRoute = 17411;
inline constexpr std::uint32_t kTextImportDone = 17412;
inline constexpr std::uint32_t kTextRoutesSaved = 17413;
inline constexpr std::uint32_t kTextImportPreview = 17414;
inline constexpr std::uint32_t kTextWaypointsGoTo = 17415;
inline constexpr std::uint32_t kTextWaypointList = 17416;
inline constexpr std::uint32_t kTextPoiCategory = 17417;
inline constexpr std::uint32_t kTextImportNote = 17418;
inline constexpr std::uint32_t kTextGpxFileFilter = 17419;
inline constexpr std::uint32_t kTextImportRefused = 17420;
inline constexpr std::uint32_t kTextProblemNotOpened = 17421;
inline constexpr std::uint32_t kTextProblemBroken = 17422;
inline constexpr std::uint32_t kTextProblemForeign = 17423;
inline constexpr std::uint32_t kTextProblemBadPoint = 17424;
inline constexpr std::uint32_t kTextProblemTooManyPoints = 17427;
inline constexpr std::uint32_t kTextProblemCancelled = 17428;
inline constexpr std::uint32_t kTextTrackFileFilter = 17425;
inline constexpr std::uint32_t kTextImportEmpty = 17426;
inline constexpr std::uint32_t kTextTrackPartlyRead = 17430;
inline constexpr std::uint32_t kTextTrackEmpty = 17431;

// Reads a track log in the log format (see ParseTrackLogLine) as one track,
// a line at a time; lines that are not track points are counted as skipped.
// As with the XML files, the read stops past kMostImportPoints points, and
// progress hears how far it is and may cancel it.
ImportRead ReadTrackLog(const std::string& path, const ImportProgress& progress = {});

// A count with its thousands set apart by blanks, "3 400", as the preview
// shows it.
std::string GroupedCount(std::size_t count);

// The preview's summary, e.g. "12 waypoints, 1 route with 8 points, 2
// tracks with 3 400 points"; the language's "nothing" text for an empty file.
std::string ImportSummary(const ImportContents& contents);

// A problem of the file, as a sentence that names the line where it is
// known; empty for kNone.
std::string ImportProblemText(const ImportRead& read);

// Why the import refuses a file it has read, naming the file: what could
// not be read (and that nothing was imported), or that it holds nothing to
// import. Empty when the file may be imported: nothing of a file is ever
// imported half.
std::string ImportRefusal(const std::string& path, const ImportRead& read);

// A time of a GPX file (ISO 8601, with or without fractions of a second and
// a zone; no zone is taken as UTC) or of the program's log and KML files
// ("20110704 08:05:09", UTC), as UTC; nullopt for anything else.
std::optional<CivilTime> ParseImportTime(std::string_view text);

// A track point of the in-memory track; a point whose time can't be read
// keeps the time zero, the map draws it all the same.
TrackPoint ToTrackPoint(const ImportPoint& point);

// A waypoint, POI or destination: the name and the comment (the
// description, else the GPX comment) cut to their field limits, and the
// category of the point's symbol when the symbol names one of the table's
// categories (Garmin's symbol names are those of the table), by its display
// name. An unnamed point is called after its number in its list.
GeoPoint ToGeoPoint(const ImportPoint& point, int number);

// The part of a file name that a route name can give: the characters that a
// file system or a file chooser refuses become "_"; empty when nothing of
// the name is left to show.
std::string RouteFileStem(const std::string& routeName);

}  // namespace tolvane
