#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/csv_text.h"
#include "core/base/dynamic_list.h"
#include "core/base/file_time.h"
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

// Writes the points of track files. A point goes in front of the trailer of
// a GPX or KML document, or at the end of a log (whose trailer is empty).
// A point that cannot be written in full leaves its file as it was before.
// A log is created by its first point, exclusively: when another program
// took its name in the meantime, path moves on to the next free name.
class TrackWriter {
  public:
    virtual ~TrackWriter() = default;
    // Creates a new GPX or KML document at path holding document (its
    // header and trailer), exclusively; path moves on to the next free name
    // when it is taken. False, leaving nothing behind, when it cannot be.
    virtual bool Create(std::string& path, const std::string& document) = 0;
    // False when the point, or one held back before it, could not be
    // written in full.
    virtual bool Write(std::string& path, const std::string& text, std::string_view trailer) = 0;
    // Writes whatever is held back; false as Write.
    virtual bool Flush() = 0;
};

// The program's writer: each point goes to its file at once, in a single
// write, and the file is closed again, so that a crash or a power loss at
// any moment leaves a complete document with every earlier point (or, when
// the kernel was cut off inside the write, one that the next start mends).
class DirectTrackWriter final : public TrackWriter {
  public:
    bool Create(std::string& path, const std::string& document) override;
    bool Write(std::string& path, const std::string& text, std::string_view trailer) override;
    bool Flush() override { return true; }

  private:
    std::string createdLog_;  // the log this writer created last
};

// A conversion's writer: the points are held back and written some tens of
// kilobytes at a time, in front of the trailer as the direct writer puts
// them, so the finished file is byte for byte the same. A GPX or KML
// document is written under its name with ".part" added and put under its
// name only when it is finished: a conversion that is cut short leaves no
// document or a complete one (and a ".part" file, which the next start of
// the track logger removes). A log is appended to under its own name.
class BufferedTrackWriter final : public TrackWriter {
  public:
    ~BufferedTrackWriter() override { Flush(); }
    bool Create(std::string& path, const std::string& document) override;
    bool Write(std::string& path, const std::string& text, std::string_view trailer) override;
    // Writes what is held back and finishes the file.
    bool Flush() override;

  private:
    bool WritePending();

    std::string path_;
    std::string working_;  // where the file is written until it is finished
    std::string trailer_;
    std::string pending_;
    std::vector<std::size_t> pointEnds_;  // where each held point ends in pending_
};

// Starts a new track file for the current run when the logger is enabled in
// options: the name is the local date and time of now, e.g.
// "20110704160509.gpx", inside trackLogFolder, and it becomes currentPath.
// A new track never goes into an existing file: when the name is taken (a
// second conversion into the same folder, two programs starting in one
// second) a suffix makes it free, "20110704160509_2.gpx"; the name is taken
// exclusively, so two programs never both get it. A GPX or KML file gets its
// header and trailer at once through writer, so it is a complete document
// from the start (a conversion's, once it is finished);
// a log file is created by its first point. False, with currentPath empty,
// when the document could not be created (a full disk, a folder that cannot
// be written); no file is left behind then.
bool StartTrackFile(const Options& options, const std::string& trackLogFolder, const Clock& clock,
                    std::string& currentPath, TrackWriter& writer);

// Appends the current position of gps to currentPath through writer, in
// the format of options, time-stamped with the UTC time of now, and then
// adds it to track, whose size also numbers the KML placemarks. A point
// afterGap (a suspend or a lost fix lies between it and the one before)
// begins a new segment of a GPX track, so that no line is drawn across the
// gap; KML points are placemarks of their own, joined by no line, and a log
// has no segments, so they are written as any other point. Nothing
// happens while the logger is disabled, without a file or without a valid
// fix, or when the point's text would not fit its buffer. A GPX or KML file
// too short to end with its trailer is left untouched, but the track gets
// the point. False when the point could not be written (a full disk, a
// folder that went away); the track then misses it too. currentPath moves
// on when a log's name was taken before its first point (see TrackWriter).
bool AppendTrackPoint(const Options& options, const GpsState& gps, const Clock& clock,
                      std::string& currentPath, DynamicList<TrackPoint>& track,
                      TrackWriter& writer, bool afterGap = false);

// A GPX or KML track file of this program whose last point was cut short,
// because the program was killed while the kernel copied that point's write
// across a page boundary, no longer ends with its trailer. Repairing it cuts
// the file back to the end of its last complete point (or of its header)
// and writes the trailer again, so every point written before is kept.
// Only a file that is certainly this program's is touched: its name is a
// track name ("20110704160509.gpx", "20110704160509_2.kml") and it begins
// with this program's header. Any other file, such as another program's
// track kept in the folder, is left byte for byte as it is. Returns true
// when the file needed and got the repair.
bool RepairTrackFile(const std::string& path);

// Repairs this program's GPX and KML files of the track folder and removes
// its ".part" files of documents whose writing was cut short, once nothing
// has written them for ten minutes (a conversion beside the program may
// still be writing a younger one). Returns the number of files repaired.
int RepairTrackFolder(const std::string& trackLogFolder);

// A run of one to nine decimal digits and nothing else, as a number.
std::optional<int> DecimalDigits(std::string_view text);

// The time of a log line (and of a KML placemark's description),
// "YYYYMMDD HH:MM:SS" with a year of any length, when it is a real date.
std::optional<CivilTime> ParseLogTime(std::string_view text);

// One line of a track log in the log format, as a track point. A line is
// taken when its first column (longitude, -180..180), its second (latitude,
// -90..90) and its fourth (the UTC time "YYYYMMDD HH:MM:SS", a real date)
// all read; the third column is ignored, and so are the columns after the
// fourth (speed, course and altitude are not part of an in-memory track).
// Any other line, such as a line cut short, a header written by another
// program or a damaged time, gives nullopt.
std::optional<TrackPoint> ParseTrackLogLine(std::string_view line);

}  // namespace tolvane
