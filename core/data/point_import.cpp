#include "core/data/point_import.h"

#include "core/base/string_manager.h"
#include "core/base/text_encoding.h"
#include "core/data/geo_point_file.h"

namespace tolvane {
namespace {

constexpr int kSecondsPerMinute = 60;
constexpr std::size_t kRouteFileStemUnits = 60;

// "1 waypoint" or "12 waypoints".
std::string CountText(std::size_t count, std::uint32_t singular, std::uint32_t plural) {
    return FillLanguageText(count == 1 ? singular : plural, {GroupedCount(count)});
}

// "1 route with 8 points": the lists of one kind and all their points.
std::string ListsText(std::size_t lists, std::size_t points, std::uint32_t singular,
                      std::uint32_t plural) {
    return FillLanguageText(kTextImportWith,
                            {CountText(lists, singular, plural),
                             CountText(points, kTextImportPoint, kTextImportPoints)});
}

template <typename List>
std::size_t PointsOf(const std::vector<List>& lists) {
    std::size_t points = 0;
    for (const List& list : lists) points += list.points.size();
    return points;
}

// "+02:00", "-0530" or "Z" after the time, as minutes east of UTC; a time
// without a zone is UTC.
std::optional<int> ZoneMinutes(std::string_view zone) {
    if (zone.empty() || zone == "Z") return 0;
    if (zone[0] != '+' && zone[0] != '-') return std::nullopt;
    std::string digits(zone.substr(1));
    if (digits.size() == 5 && digits[2] == ':') digits.erase(2, 1);
    if (digits.size() != 4) return std::nullopt;
    const std::string_view text = digits;
    const std::optional<int> hours = DecimalDigits(text.substr(0, 2));
    const std::optional<int> minutes = DecimalDigits(text.substr(2, 2));
    if (!hours || !minutes) return std::nullopt;
    const int offset = *hours * kSecondsPerMinute + *minutes;
    return zone[0] == '-' ? -offset : offset;
}

// "2024-05-01T10:00:00", then fractions of a second and the zone.
std::optional<CivilTime> ParseIsoTime(std::string_view text) {
    constexpr std::size_t kDateTimeLength = 19;
    if (text.size() < kDateTimeLength || text[4] != '-' || text[7] != '-' || text[10] != 'T' ||
        text[13] != ':' || text[16] != ':') {
        return std::nullopt;
    }
    const std::optional<int> fields[6] = {
        DecimalDigits(text.substr(0, 4)),  DecimalDigits(text.substr(5, 2)),
        DecimalDigits(text.substr(8, 2)),  DecimalDigits(text.substr(11, 2)),
        DecimalDigits(text.substr(14, 2)), DecimalDigits(text.substr(17, 2))};
    for (const std::optional<int>& field : fields) {
        if (!field) return std::nullopt;
    }
    std::string_view rest = text.substr(kDateTimeLength);
    if (!rest.empty() && rest[0] == '.') {
        const std::size_t end = rest.find_first_not_of("0123456789", 1);
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end);
    }
    const std::optional<int> zone = ZoneMinutes(rest);
    const std::optional<FileTime> local = CivilToFileTime(
        {*fields[0], *fields[1], *fields[2], *fields[3], *fields[4], *fields[5], 0});
    if (!zone || !local) return std::nullopt;
    return FileTimeToCivil(*local - FileTime{*zone} * kSecondsPerMinute * kFileTimeTicksPerSecond);
}

std::string LineText(int line) {
    return line > 0 ? std::to_string(line) : "?";
}

}  // namespace

std::string GroupedCount(std::size_t count) {
    std::string digits = std::to_string(count);
    for (std::size_t at = digits.size(); at > 3; at -= 3) digits.insert(at - 3, " ");
    return digits;
}

std::string ImportSummary(const ImportContents& contents) {
    std::vector<std::string> parts;
    if (!contents.waypoints.empty()) {
        parts.push_back(
            CountText(contents.waypoints.size(), kTextImportWaypoint, kTextImportWaypoints));
    }
    if (!contents.routes.empty()) {
        parts.push_back(ListsText(contents.routes.size(), PointsOf(contents.routes),
                                  kTextImportRoute, kTextImportRoutes));
    }
    if (!contents.tracks.empty()) {
        parts.push_back(ListsText(contents.tracks.size(), PointsOf(contents.tracks),
                                  kTextImportTrack, kTextImportTracks));
    }
    if (parts.empty()) return LanguageText(kTextImportNothing);
    std::string summary = parts[0];
    for (std::size_t i = 1; i < parts.size(); ++i) summary += ", " + parts[i];
    return summary;
}

ImportRead ReadTrackLog(const std::string& path, const ImportProgress& progress) {
    // Progress is asked after this many lines: often enough for the bar,
    // seldom enough to cost nothing.
    constexpr long kLinesPerProgress = 4096;
    ImportRead result;
    std::vector<TrackPoint>& points = result.contents.tracks.emplace_back().points;
    long lines = 0;
    const bool opened = ReadTextLinesWhile(path, [&](std::string_view line, double share) {
        if (++lines % kLinesPerProgress == 0 && progress && !progress(share)) {
            result.problem = ImportProblem::kCancelled;
            return false;
        }
        const std::optional<TrackPoint> point = ParseTrackLogLine(line);
        if (!point) {
            ++result.pointsSkipped;
            return true;
        }
        if (points.size() == static_cast<std::size_t>(kMostImportPoints)) {
            result.problem = ImportProblem::kTooManyPoints;
            return false;
        }
        points.push_back(*point);
        return true;
    });
    if (!opened) result.problem = ImportProblem::kNotOpened;
    return result;
}

std::string ImportProblemText(const ImportRead& read) {
    const std::string line = LineText(read.problemLine);
    switch (read.problem) {
        case ImportProblem::kNone:
            return {};
        case ImportProblem::kNotOpened:
            return LanguageText(kTextProblemNotOpened);
        case ImportProblem::kBroken:
            return FillLanguageText(kTextProblemBroken, {line, read.problemDetail});
        case ImportProblem::kForeign:
            return FillLanguageText(kTextProblemForeign, {read.problemDetail});
        case ImportProblem::kBadPoint:
            return FillLanguageText(kTextProblemBadPoint, {line});
        case ImportProblem::kTooManyPoints:
            return FillLanguageText(kTextProblemTooManyPoints, {GroupedCount(kMostImportPoints)});
        case ImportProblem::kCancelled:
            return LanguageText(kTextProblemCancelled);
    }
    return {};
}

std::string ImportRefusal(const std::string& path, const ImportRead& read) {
    if (read.problem != ImportProblem::kNone) {
        return FillLanguageText(kTextImportRefused, {path, ImportProblemText(read)});
    }
    const ImportContents& contents = read.contents;
    if (contents.waypoints.empty() && contents.routes.empty() && contents.tracks.empty()) {
        return FillLanguageText(kTextImportEmpty, {path});
    }
    return {};
}

std::optional<CivilTime> ParseImportTime(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) return std::nullopt;
    text = text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
    if (std::optional<CivilTime> iso = ParseIsoTime(text)) return iso;
    return ParseLogTime(text);
}

TrackPoint ToTrackPoint(const ImportPoint& point) {
    return TrackPoint{static_cast<float>(point.latitude), static_cast<float>(point.longitude),
                      ParseImportTime(point.time).value_or(CivilTime{})};
}

GeoPoint ToGeoPoint(const ImportPoint& point, int number) {
    GeoPoint geo;
    geo.latitude = point.latitude;
    geo.longitude = point.longitude;
    const std::string name = point.name.empty()
                                 ? FillLanguageText(kTextUnnamedPoint, {std::to_string(number)})
                                 : point.name;
    geo.name = TruncateToUtf16Units(name, kGeoPointNameLength - 1);
    const std::string& comment = point.description.empty() ? point.comment : point.description;
    geo.comment = TruncateToUtf16Units(comment, kGeoPointCommentLength - 1);
    std::string symbol = point.symbol;
    geo.category = CategoryName(CategoryFromText(symbol));
    return geo;
}

std::string RouteFileStem(const std::string& routeName) {
    constexpr std::string_view kRefused = "/\\:*?\"<>|";
    std::string stem = TruncateToUtf16Units(routeName, kRouteFileStemUnits);
    for (char& c : stem) {
        const bool control = static_cast<unsigned char>(c) < 0x20;
        if (control || kRefused.find(c) != std::string_view::npos) c = '_';
    }
    // A name of blanks and dots alone would be hidden or no name at all.
    return stem.find_first_not_of(" .") == std::string::npos ? std::string() : stem;
}

}  // namespace tolvane
