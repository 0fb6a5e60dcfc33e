#include "core/maps/map_files.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "core/base/csv_text.h"

namespace tolvane {
namespace {

constexpr char kRefPointHeader[] = "Tolvane Reference Points";
constexpr double kMaximumLongitude = 180.0;
constexpr double kMaximumLatitude = 90.0;

std::string_view Trim(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front()))) {
        text.remove_prefix(1);
    }
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) {
        text.remove_suffix(1);
    }
    return text;
}

bool IsGeographic(double latitude, double longitude) {
    return std::fabs(latitude) <= kMaximumLatitude && std::fabs(longitude) <= kMaximumLongitude;
}

// "Point,n,x,y,latitude,longitude" of a .rpt file.
void ReadRefPointLine(std::string_view line, Calibration& calibration) {
    const std::vector<std::string_view> columns = SplitColumns(line, 6);
    if (columns.size() != 6 || Trim(columns[0]) != "Point") return;
    const std::optional<std::int32_t> number = ParseInt32(columns[1]);
    const std::optional<double> x = ParseNumber(columns[2]), y = ParseNumber(columns[3]),
                                latitude = ParseNumber(columns[4]),
                                longitude = ParseNumber(columns[5]);
    if (!number || *number < 1 || *number > kRefPointCount || !x || !y || !latitude || !longitude ||
        !IsGeographic(*latitude, *longitude)) {
        return;
    }
    calibration.points[*number - 1] = {true, *x, *y, *latitude, *longitude};
}

// Degrees and minutes with a hemisphere letter, as OziExplorer writes them.
std::optional<double> OziAngle(std::string_view degrees, std::string_view minutes,
                               std::string_view hemisphere, char negative) {
    const std::optional<double> whole = ParseNumber(degrees), part = ParseNumber(minutes);
    const std::string_view letter = Trim(hemisphere);
    if (!whole || !part || letter.size() != 1) return std::nullopt;
    const double value = *whole + *part / 60.0;
    return std::toupper(static_cast<unsigned char>(letter[0])) == negative ? -value : value;
}

bool ReadOziPointLine(std::string_view line, RefPoint& point) {
    const std::vector<std::string_view> columns = SplitColumns(line, 13);
    if (columns.size() < 12 || Trim(columns[0]).substr(0, 5) != "Point") return false;
    const std::optional<double> x = ParseNumber(columns[2]), y = ParseNumber(columns[3]);
    const std::optional<double> latitude = OziAngle(columns[6], columns[7], columns[8], 'S');
    const std::optional<double> longitude = OziAngle(columns[9], columns[10], columns[11], 'W');
    if (!x || !y || !latitude || !longitude || !IsGeographic(*latitude, *longitude)) return false;
    point = {true, *x, *y, *latitude, *longitude};
    return true;
}

std::string Lower(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

std::string Upper(std::string text) {
    for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

// The world-file names a picture may have beside it: ".pgw" and ".pngw"
// for ".png" and so on, and ".wld", in lower and upper case.
std::vector<std::filesystem::path> WorldFileCandidates(const std::filesystem::path& picture) {
    const std::string extension = Lower(picture.extension().string());
    std::vector<std::string> suffixes = {".wld"};
    if (extension.size() >= 3) {
        suffixes.push_back(std::string{'.', extension[1], extension.back(), 'w'});
        suffixes.push_back(extension + "w");
    }
    std::vector<std::filesystem::path> candidates;
    for (const std::string& suffix : suffixes) {
        for (const std::string& cased : {suffix, Upper(suffix)}) {
            std::filesystem::path candidate = picture;
            candidates.push_back(candidate.replace_extension(cased));
        }
    }
    return candidates;
}

bool Exists(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
}

}  // namespace

std::string RefPointPath(const std::string& refPointDir, const std::string& picturePath) {
    const std::string stem = std::filesystem::path(picturePath).stem().string();
    return (std::filesystem::path(refPointDir) / (stem + ".rpt")).string();
}

bool WriteRefPoints(const std::string& path, const Calibration& calibration, int width,
                    int height) {
    std::string text =
        std::string(kRefPointHeader) + ",1\r\n" + FormatText("Picture,%d,%d\r\n", width, height);
    for (int i = 0; i < kRefPointCount; ++i) {
        const RefPoint& point = calibration.points[i];
        if (!point.set) continue;
        text += FormatText("Point,%d,%.3f,%.3f,%.8f,%.8f\r\n", i + 1, point.x, point.y,
                           point.latitude, point.longitude);
    }
    const FilePointer file(std::fopen(path.c_str(), "wb"));
    if (!file) return false;
    return std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
}

bool ReadRefPoints(const std::string& path, Calibration& calibration) {
    Calibration read;
    bool header = false;
    const bool opened = ReadTextLines(path, [&](std::string_view line) {
        if (!header) {
            header = Trim(SplitColumns(line, 2)[0]) == kRefPointHeader;
            return;
        }
        ReadRefPointLine(line, read);
    });
    if (!opened || !header || read.Count() == 0) return false;
    calibration = read;
    return true;
}

bool ReadOziMap(const std::string& path, Calibration& calibration) {
    Calibration read;
    int count = 0;
    const bool opened = ReadTextLines(path, [&](std::string_view line) {
        if (count < kRefPointCount && ReadOziPointLine(line, read.points[count])) ++count;
    });
    if (!opened || count == 0) return false;
    calibration = read;
    return true;
}

bool ReadWorldFile(const std::string& path, int width, int height, Calibration& calibration) {
    std::vector<double> numbers;
    const bool opened = ReadTextLines(path, [&](std::string_view line) {
        if (const std::optional<double> value = ParseNumber(line)) numbers.push_back(*value);
    });
    if (!opened || numbers.size() < 6) return false;
    const double xPerColumn = numbers[0], yPerColumn = numbers[1];
    const double xPerRow = numbers[2], yPerRow = numbers[3];
    const double x0 = numbers[4], y0 = numbers[5];
    const double corners[kRefPointCount][2] = {{0, 0},
                                               {1.0 * width, 0},
                                               {0, 1.0 * height},
                                               {1.0 * width, 1.0 * height},
                                               {width / 2.0, height / 2.0}};
    Calibration read;
    for (int i = 0; i < kRefPointCount; ++i) {
        // The numbers place the middle of a pixel, half a pixel in.
        const double column = corners[i][0] - 0.5, row = corners[i][1] - 0.5;
        const double longitude = xPerColumn * column + xPerRow * row + x0;
        const double latitude = yPerColumn * column + yPerRow * row + y0;
        // A world file in metres (a projected grid) is not one this
        // program can place.
        if (!IsGeographic(latitude, longitude)) return false;
        read.points[i] = {true, corners[i][0], corners[i][1], latitude, longitude};
    }
    calibration = read;
    return true;
}

Calibration FindCalibration(const std::string& picturePath, const std::string& refPointDir,
                            int width, int height) {
    Calibration found;
    if (ReadRefPoints(RefPointPath(refPointDir, picturePath), found)) return found;
    std::filesystem::path beside = picturePath;
    if (ReadRefPoints(beside.replace_extension(".rpt").string(), found)) return found;
    std::filesystem::path ozi = picturePath;
    for (const char* extension : {".map", ".MAP"}) {
        if (Exists(ozi.replace_extension(extension)) && ReadOziMap(ozi.string(), found)) {
            return found;
        }
    }
    for (const std::filesystem::path& world : WorldFileCandidates(picturePath)) {
        if (Exists(world) && ReadWorldFile(world.string(), width, height, found)) return found;
    }
    return {};
}

}  // namespace tolvane
