// libFuzzer target of the reader of track logs in the log format.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "core/data/point_import.h"
#include "tools/fuzz/fuzz_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const tolvane::fuzz::InputFile file(data, size);
    const tolvane::ImportRead read = tolvane::ReadTrackLog(file.Path());
    if (read.contents.tracks.size() != 1) std::abort();
    for (const tolvane::TrackPoint& point : read.contents.tracks[0].points) {
        if (!(std::abs(point.latitude) <= 90) || !(std::abs(point.longitude) <= 180)) std::abort();
        if (point.time.month < 1 || point.time.month > 12 || point.time.day < 1 ||
            point.time.day > 31 || point.time.hour > 23 || point.time.minute > 59) {
            std::abort();
        }
    }
    return 0;
}
