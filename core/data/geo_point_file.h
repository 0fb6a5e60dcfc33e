#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/base/csv_text.h"
#include "core/base/dynamic_list.h"
#include "core/geo/geo_point.h"

namespace tolvane {

inline constexpr int kPoiCategoryCount = 30;

// Language string shown when a point file can't be saved; its %s is the
// file's path.
inline constexpr std::uint32_t kStringPointFileNotSaved = 10720;

// The voice guide is spoken through a command line and stored in a CSV
// column, so CR, LF, double quote and comma each become a blank. The point
// editor applies it on input and the saver again on writing.
std::string CleanVoiceGuide(std::string_view text);

// Looks a POI category up by its five-digit code or its name, ignoring case,
// trying category 1 first. Returns the index 1..30, or 0 when nothing
// matches; on a match text becomes the category's canonical name. Category 6
// is accepted only as "00157" or "Information", although it is shown as
// "Informaion" (see CategoryName).
int CategoryFromText(std::string& text);

// The display name of category index 1..30; empty for any other index.
std::string CategoryName(int index);

// The name a lookup by text writes back for category index 1..30, which is
// what a file stores; empty for any other index.
std::string CategoryCanonicalName(int index);

// Writes every point of points to path as one CSV line each (CR LF,
// Windows-1252), replacing the file. Nine columns: longitude, latitude, name
// (with "@limit" when there is a speed limit), category, proximity range
// (empty when not set), voice guide, two empty columns, comment. So that one
// point always stays one line of nine columns, CR and LF become blanks in
// every text, and commas too in the name and category (the comment is the
// last column and keeps its commas). False when the file can't be created
// or fully written; PointFileNotSavedMessage gives the text to show.
bool SavePointFile(const std::string& path, DynamicList<GeoPoint>& points);

// The message for a failed save of path, from the language file.
std::string PointFileNotSavedMessage(const std::string& path);

// Reads a point file and appends its points to points (a POI list gathers
// several files). Reading rules, for files from this program and from any
// other editor:
// - bytes are Windows-1252; CR and LF both end a line; empty lines are passed;
// - a line needs at least three columns, and its longitude (-180..180) and
//   latitude (-90..90) must be numbers, else the line is skipped and counted;
// - the name column is split at its last at-sign when what follows is a whole
//   number: that is the speed limit; otherwise the whole column is the name
//   and there is no limit;
// - a missing, empty or non-numeric range column means "not set" (-1);
// - missing columns leave their fields empty;
// - the ninth column, the comment, is the rest of the line, commas and all;
// - texts are cut to their field limits (name 19, category 49, voice guide
//   99, comment 255 UTF-16 units), and the voice guide is cleaned as the
//   editor cleans it, so a hand-edited file can't break its command line.
CsvReadResult LoadPointFile(const std::string& path, DynamicList<GeoPoint>& points);

}  // namespace tolvane
