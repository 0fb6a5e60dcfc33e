#pragma once

#include <string>

#include "core/data/point_import.h"

namespace tolvane {

// Reads a GPX 1.0 or 1.1 file whole with libxml2: its waypoints, routes and
// tracks with the texts of their points. Elements of other namespaces (the
// extensions of Garmin, OsmAnd and the rest) are passed over with all they
// hold. A file that is not well-formed, is not GPX or holds a point without
// a readable position says so in the result's problem; what was read up to
// there is in the contents all the same, and the import refuses the file.
// The file is read a piece at a time; a file of more than kMostImportPoints
// points stops there with kTooManyPoints, and progress, when given, hears
// how far the read is and may cancel it (kCancelled).
ImportRead ReadGpxFile(const std::string& path, const ImportProgress& progress = {});

// Reads a track file for "View Log File": the program's log format, or a GPX
// (its tracks) or KML (its placemarks' points and lines) document, told
// apart by what the file holds rather than by its name. The points that can
// be read are kept; the rest are counted as skipped, and a document that
// breaks off keeps what came before the break.
ImportRead ReadTrackFile(const std::string& path, const ImportProgress& progress = {});

}  // namespace tolvane
