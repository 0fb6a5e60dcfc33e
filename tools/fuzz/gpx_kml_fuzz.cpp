// libFuzzer target of the GPX and KML reader of the import and of "View
// Log File". The input is read both ways; every point taken has a position
// on the earth, and a file with a problem says which.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "formats/point_file_reader.h"
#include "tools/fuzz/fuzz_file.h"

namespace {

using tolvane::ImportProblem;
using tolvane::ImportRead;

void CheckPosition(double latitude, double longitude) {
    if (!(std::abs(latitude) <= 90) || !(std::abs(longitude) <= 180)) std::abort();
}

void CheckRead(const ImportRead& read) {
    const tolvane::ImportContents& contents = read.contents;
    for (const tolvane::ImportPoint& point : contents.waypoints) {
        CheckPosition(point.latitude, point.longitude);
    }
    for (const tolvane::ImportRoute& route : contents.routes) {
        for (const tolvane::ImportPoint& point : route.points) {
            CheckPosition(point.latitude, point.longitude);
        }
    }
    for (const tolvane::ImportTrack& track : contents.tracks) {
        for (const tolvane::TrackPoint& point : track.points) {
            CheckPosition(point.latitude, point.longitude);
        }
    }
    if (read.problem == ImportProblem::kNone && read.problemLine != 0) std::abort();
    if (read.pointsSkipped < 0) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const tolvane::fuzz::InputFile file(data, size);
    const ImportRead gpx = tolvane::ReadGpxFile(file.Path());
    if (gpx.problem == ImportProblem::kNotOpened) std::abort();
    CheckRead(gpx);
    CheckRead(tolvane::ReadTrackFile(file.Path()));
    return 0;
}
