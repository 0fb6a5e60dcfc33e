#include "core/data/track_file.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string_view>
#include <vector>

namespace tolvane {
namespace {

constexpr double kMetresPerSecondPerKnot = 0.5144444444444445;
constexpr double kKmhPerKnot = 1.852;

constexpr char kGpxHeader[] =
    "<?xml version=\"1.0\"?>\r\n"
    "<gpx\r\n"
    " version=\"1.1\"\r\n"
    " creator=\"Tolvane GPS Utilities - https://tolvane.example/gps\"\r\n"
    " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"\r\n"
    " xmlns=\"http://www.topografix.com/GPX/1/1\"\r\n"
    " xsi:schemaLocation=\"http://www.topografix.com/GPX/1/1 "
    "http://www.topografix.com/GPX/1/1/gpx.xsd\">\r\n"
    "<trk>\r\n"
    "<trkseg>\r\n";

constexpr char kKmlHeaderStart[] =
    "<?xml version=\"1.0\"?>\r\n"
    "<kml xmlns=\"http://earth.google.com/kml/2.0\">\r\n"
    "<Document>\r\n";

constexpr char kFileStampFormat[] = "%d%02d%02d%02d%02d%02d";
constexpr std::size_t kStampLength = 14;  // "20110704160509"
constexpr char kLogTimeFormat[] = "%d%02d%02d %02d:%02d:%02d";
constexpr char kIsoTimeFormat[] = "%d-%02d-%02dT%02d:%02d:%02dZ";

constexpr char kLogLineFormat[] = "%f,%f,,%s,%f,%f,%f\r\n";

constexpr char kGpxPointFormat[] =
    "<trkpt lat=\"%f\" lon=\"%f\">\r\n"
    " <time>%s</time>\r\n"
    " <ele>%f</ele>\r\n"
    " <course>%f</course>\r\n"
    " <speed>%f</speed>\r\n"
    "</trkpt>\r\n";

// Goes in front of the first point after a gap: it ends the segment the
// gap interrupted and opens the next one inside the same track. It is
// written with that point in one write, so a file cut by a kill always
// ends inside an open segment, which the repair closes with the trailer.
constexpr char kGpxSegmentBreak[] = "</trkseg>\r\n<trkseg>\r\n";

constexpr char kKmlPointFormat[] =
    "  <Placemark>\r\n"
    "     <name>TP %d</name>\r\n"
    "     <Point>\r\n"
    "       <coordinates>%f, %f, %f</coordinates>\r\n"
    "     </Point>\r\n"
    "     <altitudeMode>absolute</altitudeMode>\r\n"
    "     <description>\r\n"
    "       <![CDATA[<table>"
    "<tr><td><b>Time</b></td><td>%s</td></tr>"
    "<tr><td><b>Latitude</b></td><td>%f</td></tr>"
    "<tr><td><b>Longitude</b></td><td>%f</td></tr>"
    "<tr><td><b>Altitude</b></td><td>%f m</td></tr>"
    "<tr><td><b>Course</b></td><td>%f degree</td></tr>"
    "<tr><td><b>Speed</b></td><td>%f km/h</td></tr>"
    "</table>]]>\r\n"
    "     </description>\r\n"
    "  </Placemark>\r\n";

// The time formats all take the six fields in the same order.
std::string FormatCivil(const char* format, const CivilTime& t) {
    return FormatText(format, t.year, t.month, t.day, t.hour, t.minute, t.second);
}

// Any value the Options combo does not offer is taken as the log format.
const char* FileExtension(std::int32_t format) {
    if (format == kTrackFormatGpx) return ".gpx";
    if (format == kTrackFormatKml) return ".kml";
    return ".log";
}

const char* Trailer(std::int32_t format) {
    return format == kTrackFormatGpx ? kGpxTrailer : kKmlTrailer;
}

constexpr char kKmlNameStart[] = "  <name>";
constexpr char kKmlNameFormat[] = "  <name>%s</name>\r\n";

std::string Header(std::int32_t format, const std::string& startStamp) {
    if (format == kTrackFormatGpx) return kGpxHeader;
    return kKmlHeaderStart + FormatText(kKmlNameFormat, startStamp.c_str());
}

// A KML header's length, the same for every start time.
std::size_t KmlHeaderLength() {
    return Header(kTrackFormatKml, std::string(kStampLength, '0')).size();
}

std::string PointText(std::int32_t format, const GpsState& gps, const CivilTime& utc,
                      int pointNumber) {
    if (format == kTrackFormatGpx) {
        return FormatText(kGpxPointFormat, gps.latitude, gps.longitude,
                          FormatCivil(kIsoTimeFormat, utc).c_str(), gps.altitude, gps.course,
                          gps.speedKnots * kMetresPerSecondPerKnot);
    }
    const std::string logTime = FormatCivil(kLogTimeFormat, utc);
    if (format == kTrackFormatKml) {
        return FormatText(kKmlPointFormat, pointNumber, gps.longitude, gps.latitude, gps.altitude,
                          logTime.c_str(), gps.latitude, gps.longitude, gps.altitude, gps.course,
                          gps.speedKnots * kKmhPerKnot);
    }
    return FormatText(kLogLineFormat, gps.longitude, gps.latitude, logTime.c_str(), gps.speedKnots,
                      gps.course, gps.altitude);
}

// Track files are written unbuffered, so each text goes to the file in a
// single write: a process killed at any moment leaves either the old document
// or the new one, both complete. The mode must be set before anything else
// is done with the stream.
FilePointer Unbuffered(std::FILE* file) {
    if (file != nullptr) std::setvbuf(file, nullptr, _IONBF, 0);
    return FilePointer(file);
}

bool WriteAll(std::FILE* file, std::string_view text) {
    return std::fwrite(text.data(), 1, text.size(), file) == text.size();
}

// Writes text in place of the trailer at the end of the file and the
// trailer after it, or appends text to a log. Text that cannot be written
// in full (a full disk) is taken back: the trailer goes back where it was,
// which needs no new room, and the file is cut to its old length; a log
// that this point would have created is removed. A document too short to
// hold its trailer is left alone.
bool AddToFile(const std::string& path, std::string_view text, std::string_view trailer) {
    FilePointer file = Unbuffered(std::fopen(path.c_str(), trailer.empty() ? "ab" : "r+b"));
    if (!file || std::fseek(file.get(), 0, SEEK_END) != 0) return false;
    const long size = std::ftell(file.get());
    if (size < static_cast<long>(trailer.size())) return size >= 0;
    const long at = size - static_cast<long>(trailer.size());
    std::string block(text);
    block += trailer;
    if (std::fseek(file.get(), at, SEEK_SET) == 0 && WriteAll(file.get(), block)) return true;
    if (std::fseek(file.get(), at, SEEK_SET) == 0) WriteAll(file.get(), trailer);
    file.reset();
    std::error_code error;
    if (size == 0) {
        std::filesystem::remove(path, error);
    } else {
        std::filesystem::resize_file(path, static_cast<std::uintmax_t>(size), error);
    }
    return false;
}

bool Exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

constexpr char kPartExtension[] = ".part";
// How many taken names a new track passes over before it gives up.
constexpr int kNameAttempts = 100;

// The first of "stamp.gpx", "stamp_2.gpx", "stamp_3.gpx", ... that is
// neither a file nor a document being written.
std::string FreeTrackPath(const std::string& folder, const std::string& stamp,
                          const std::string& extension) {
    std::string path = folder + "/" + stamp + extension;
    for (int suffix = 2; Exists(path) || Exists(path + kPartExtension); ++suffix) {
        path = folder + "/" + stamp + "_" + std::to_string(suffix) + extension;
    }
    return path;
}

// A name this program gives its tracks: the fourteen digits of the start
// time, then "_2", "_3", ... when that was taken, then extension.
bool IsTrackFileName(std::string_view name, std::string_view extension) {
    if (!name.ends_with(extension)) return false;
    const std::string_view stem = name.substr(0, name.size() - extension.size());
    if (stem.size() < kStampLength || !std::all_of(stem.begin(), stem.begin() + kStampLength,
                                                   [](char c) { return c >= '0' && c <= '9'; })) {
        return false;
    }
    const std::string_view suffix = stem.substr(kStampLength);
    if (suffix.empty()) return true;
    const std::optional<int> number = DecimalDigits(suffix.substr(1));
    return suffix[0] == '_' && number && *number >= 2;
}

enum class Creation { kDone, kTaken, kFailed };

// How a new track's file is made: a log under its name; a document beside
// its name first, and put under it at once or, while it is being written,
// at the end.
enum class NewFile { kLog, kDocument, kDocumentBeingWritten };

// Writes text into a new file at path, exclusively: a file of that name,
// even one made a moment ago by another program, is never opened.
Creation WriteExclusively(const std::string& path, std::string_view text) {
    FilePointer file = Unbuffered(std::fopen(path.c_str(), "wbx"));
    if (!file) return errno == EEXIST ? Creation::kTaken : Creation::kFailed;
    if (WriteAll(file.get(), text)) return Creation::kDone;
    file.reset();
    std::remove(path.c_str());
    return Creation::kFailed;
}

// Puts a finished document under its name, which another program may have
// taken since: a hard link is made only while the name is free. A file
// system without hard links (a memory card's FAT) gets a rename instead.
// The partial file is gone afterwards unless the name was taken.
Creation Publish(const std::string& partial, const std::string& path) {
    std::error_code error;
    std::filesystem::create_hard_link(partial, path, error);
    if (error == std::errc::file_exists) return Creation::kTaken;
    if (error && (Exists(path) || std::rename(partial.c_str(), path.c_str()) != 0)) {
        std::remove(partial.c_str());
        return Creation::kFailed;
    }
    std::remove(partial.c_str());
    return Creation::kDone;
}

// The next free name of the track that path names.
std::string NextTrackPath(const std::string& path) {
    const std::filesystem::path name(path);
    return FreeTrackPath(name.parent_path().string(), name.stem().string().substr(0, kStampLength),
                         name.extension().string());
}

// Creates the file of a new track at path holding text. A document is
// written beside its name first, so that a kill leaves no empty or
// half-written document and a full disk leaves nothing at all. When another
// program took the name first, even within the same second, path moves on
// to the next free name.
bool CreateTrackFile(std::string& path, std::string_view text, NewFile kind) {
    for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
        const std::string target = kind == NewFile::kLog ? path : path + kPartExtension;
        Creation creation = WriteExclusively(target, text);
        if (kind == NewFile::kDocument && creation == Creation::kDone) {
            creation = Publish(target, path);
            if (creation == Creation::kTaken) std::remove(target.c_str());
        }
        if (creation != Creation::kTaken) return creation == Creation::kDone;
        path = NextTrackPath(path);
    }
    return false;
}

std::string ReadWholeText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace

std::optional<int> DecimalDigits(std::string_view text) {
    if (text.empty() || text.size() > 9) return std::nullopt;
    int value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') return std::nullopt;
        value = value * 10 + (c - '0');
    }
    return value;
}

std::optional<CivilTime> ParseLogTime(std::string_view text) {
    constexpr std::size_t kMonthDayLength = 4;
    const std::size_t space = text.find(' ');
    if (space == std::string_view::npos || space <= kMonthDayLength) return std::nullopt;
    const std::string_view date = text.substr(0, space);
    const std::string_view time = text.substr(space + 1);
    if (time.size() != 8 || time[2] != ':' || time[5] != ':') return std::nullopt;
    const std::size_t yearLength = date.size() - kMonthDayLength;
    const std::optional<int> fields[6] = {DecimalDigits(date.substr(0, yearLength)),
                                          DecimalDigits(date.substr(yearLength, 2)),
                                          DecimalDigits(date.substr(yearLength + 2, 2)),
                                          DecimalDigits(time.substr(0, 2)),
                                          DecimalDigits(time.substr(3, 2)),
                                          DecimalDigits(time.substr(6, 2))};
    for (const std::optional<int>& field : fields) {
        if (!field) return std::nullopt;
    }
    const CivilTime civil{*fields[0], *fields[1], *fields[2], *fields[3],
                          *fields[4], *fields[5], 0};
    if (!CivilToFileTime(civil)) return std::nullopt;
    return civil;
}

bool DirectTrackWriter::Create(std::string& path, const std::string& document) {
    return CreateTrackFile(path, document, NewFile::kDocument);
}

bool DirectTrackWriter::Write(std::string& path, const std::string& text,
                              std::string_view trailer) {
    if (!trailer.empty() || path == createdLog_) return AddToFile(path, text, trailer);
    if (!CreateTrackFile(path, text, NewFile::kLog)) return false;
    createdLog_ = path;
    return true;
}

// Some tens of kilobytes per write: enough that the system calls no longer
// show in a conversion's time, little enough to hold.
constexpr std::size_t kTrackBufferSize = 64 * 1024;

// The document stays beside its name, and its name taken, until it is
// finished. What an earlier file still holds back is finished first; the
// logger has already asked for that, and told of a failure.
bool BufferedTrackWriter::Create(std::string& path, const std::string& document) {
    Flush();
    if (!CreateTrackFile(path, document, NewFile::kDocumentBeingWritten)) return false;
    path_ = path;
    working_ = path + kPartExtension;
    return true;
}

// A point for a file this writer did not create is a log's first: the log
// is created under its own name.
bool BufferedTrackWriter::Write(std::string& path, const std::string& text,
                                std::string_view trailer) {
    bool written = true;
    if (path != path_) {
        written = Flush();
        if (!trailer.empty() || !CreateTrackFile(path, "", NewFile::kLog)) return false;
        path_ = path;
        working_ = path;
    }
    trailer_ = trailer;
    pending_ += text;
    pointEnds_.push_back(pending_.size());
    if (pending_.size() >= kTrackBufferSize) written = WritePending() && written;
    return written;
}

bool BufferedTrackWriter::WritePending() {
    bool written = pending_.empty() || AddToFile(working_, pending_, trailer_);
    if (!written) {
        // Keep every point that still fits, as the direct writer would.
        std::size_t begin = 0;
        for (const std::size_t end : pointEnds_) {
            const std::string_view point = std::string_view(pending_).substr(begin, end - begin);
            if (!AddToFile(working_, point, trailer_)) break;
            begin = end;
        }
    }
    pending_.clear();
    pointEnds_.clear();
    return written;
}

bool BufferedTrackWriter::Flush() {
    bool written = WritePending();
    if (working_ != path_) {
        // The document is finished: it goes under its name, whole.
        Creation creation = Publish(working_, path_);
        for (int attempt = 0; creation == Creation::kTaken && attempt < kNameAttempts; ++attempt) {
            path_ = NextTrackPath(path_);
            creation = Publish(working_, path_);
        }
        written = creation == Creation::kDone && written;
        path_.clear();
        working_.clear();
    }
    return written;
}

bool StartTrackFile(const Options& options, const std::string& trackLogFolder, const Clock& clock,
                    std::string& currentPath, TrackWriter& writer) {
    if (!options.trackLoggerEnabled) return true;
    const std::int32_t format = options.trackLogFormat;
    const std::string stamp =
        FormatCivil(kFileStampFormat, FileTimeToCivil(UtcToLocal(clock.NowUtc())));
    currentPath = FreeTrackPath(trackLogFolder, stamp, FileExtension(format));
    if (format != kTrackFormatGpx && format != kTrackFormatKml) return true;
    if (writer.Create(currentPath, Header(format, stamp) + Trailer(format))) return true;
    currentPath.clear();
    return false;
}

bool AppendTrackPoint(const Options& options, const GpsState& gps, const Clock& clock,
                      std::string& currentPath, DynamicList<TrackPoint>& track,
                      TrackWriter& writer, bool afterGap) {
    // The fix is checked before anything is opened, so that a log file is
    // not created empty by a run that never had a fix.
    if (!options.trackLoggerEnabled || currentPath.empty() || !gps.fixValid) return true;
    const std::int32_t format = options.trackLogFormat;
    const CivilTime utc = FileTimeToCivil(clock.NowUtc());
    const std::string text = PointText(format, gps, utc, track.Count() + 1);
    if (text.size() >= kTrackPointTextLimit) return true;
    const bool newSegment = afterGap && format == kTrackFormatGpx;

    const bool document = format == kTrackFormatGpx || format == kTrackFormatKml;
    if (!writer.Write(currentPath, newSegment ? kGpxSegmentBreak + text : text,
                      document ? Trailer(format) : "")) {
        return false;
    }
    track.Append(
        TrackPoint{static_cast<float>(gps.latitude), static_cast<float>(gps.longitude), utc});
    return true;
}

namespace {

// The end of the last complete point of a document, or of its header when
// it holds no complete point.
std::size_t EndOfLastCompletePart(const std::string& text, std::int32_t format) {
    const std::string_view pointEnd =
        format == kTrackFormatGpx ? "</trkpt>\r\n" : "</Placemark>\r\n";
    const std::size_t end = text.rfind(pointEnd);
    if (end != std::string::npos) return end + pointEnd.size();
    return format == kTrackFormatGpx ? std::strlen(kGpxHeader) : KmlHeaderLength();
}

// Whether text begins with the header this program writes, byte for byte.
bool HasOurHeader(std::string_view text, std::int32_t format) {
    if (format == kTrackFormatGpx) return text.starts_with(kGpxHeader);
    const std::size_t length = KmlHeaderLength();
    if (text.size() < length) return false;
    const std::string stamp(
        text.substr(std::strlen(kKmlHeaderStart) + std::strlen(kKmlNameStart), kStampLength));
    return IsTrackFileName(stamp, "") && text.substr(0, length) == Header(format, stamp);
}

// Reads only the end of the file: a folder may hold many long tracks, and
// nearly all of them are complete.
bool EndsWithTrailer(const std::string& path, std::string_view trailer) {
    std::ifstream in(path, std::ios::binary);
    in.seekg(-static_cast<std::streamoff>(trailer.size()), std::ios::end);
    std::string tail(trailer.size(), '\0');
    return in.read(tail.data(), static_cast<std::streamsize>(tail.size())) && tail == trailer;
}

// The format of a name this program gives its GPX and KML tracks (with
// extra after the extension, such as ".part"); the log format for any
// other name.
std::int32_t FormatOfTrackName(std::string_view name, std::string_view extra) {
    if (!name.ends_with(extra)) return kTrackFormatLog;
    name.remove_suffix(extra.size());
    if (IsTrackFileName(name, ".gpx")) return kTrackFormatGpx;
    if (IsTrackFileName(name, ".kml")) return kTrackFormatKml;
    return kTrackFormatLog;
}

// A ".part" file of this program that nothing writes any more: a document
// whose writing was cut short. The program writes its own in a moment, but
// a conversion running beside it writes one for as long as it runs (some
// tens of kilobytes at a time), so only one left alone for a while is
// taken as abandoned.
bool IsAbandonedPartialDocument(const std::filesystem::path& path) {
    constexpr auto kAbandonedAfter = std::chrono::minutes(10);
    const std::int32_t format = FormatOfTrackName(path.filename().string(), kPartExtension);
    std::error_code error;
    const auto written = std::filesystem::last_write_time(path, error);
    if (format == kTrackFormatLog || error ||
        std::filesystem::file_time_type::clock::now() - written < kAbandonedAfter) {
        return false;
    }
    std::ifstream in(path, std::ios::binary);
    std::string start(std::max(KmlHeaderLength(), std::strlen(kGpxHeader)), '\0');
    in.read(start.data(), static_cast<std::streamsize>(start.size()));
    start.resize(static_cast<std::size_t>(in.gcount()));
    return HasOurHeader(start, format);
}

}  // namespace

bool RepairTrackFile(const std::string& path) {
    const std::int32_t format =
        FormatOfTrackName(std::filesystem::path(path).filename().string(), "");
    if (format == kTrackFormatLog || EndsWithTrailer(path, Trailer(format))) return false;
    const std::string text = ReadWholeText(path);
    if (!HasOurHeader(text, format)) return false;
    std::error_code error;
    std::filesystem::resize_file(path, EndOfLastCompletePart(text, format), error);
    if (error) return false;
    const FilePointer file = Unbuffered(std::fopen(path.c_str(), "ab"));
    return file && WriteAll(file.get(), Trailer(format));
}

int RepairTrackFolder(const std::string& trackLogFolder) {
    int repaired = 0;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(trackLogFolder, error)) {
        const std::filesystem::path& path = entry.path();
        if (IsAbandonedPartialDocument(path)) {
            // Nothing in it is kept: the document was never finished.
            std::filesystem::remove(path, error);
        } else if (RepairTrackFile(path.string())) {
            ++repaired;
        }
    }
    return repaired;
}

std::optional<TrackPoint> ParseTrackLogLine(std::string_view line) {
    constexpr std::size_t kTimeColumn = 3;
    // Whatever follows the time stays in one last column, unread.
    const std::vector<std::string_view> columns = SplitColumns(line, kTimeColumn + 2);
    if (columns.size() <= kTimeColumn) return std::nullopt;
    const std::optional<double> longitude = ParseNumber(columns[0]);
    const std::optional<double> latitude = ParseNumber(columns[1]);
    const std::optional<CivilTime> time = ParseLogTime(columns[kTimeColumn]);
    if (!longitude || !latitude || !time || *longitude < -180 || *longitude > 180 ||
        *latitude < -90 || *latitude > 90) {
        return std::nullopt;
    }
    return TrackPoint{static_cast<float>(*latitude), static_cast<float>(*longitude), *time};
}

}  // namespace tolvane
