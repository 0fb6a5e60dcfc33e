// libFuzzer target of the files that calibrate a map picture: the
// program's own reference points, OziExplorer .map files and world files.
// The first byte chooses the reader (and, for a world file, the next four
// the picture's size); the rest is the file. Whatever a reader takes must
// give a fit that is finite or none at all, and points the program writes
// must read back the same.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "core/maps/calibration.h"
#include "core/maps/map_files.h"
#include "tools/fuzz/fuzz_file.h"

namespace {

using tolvane::Affine;
using tolvane::Calibration;

constexpr std::size_t kHeaderBytes = 5;

bool IsFinite(const Affine& map) {
    return std::isfinite(map.a) && std::isfinite(map.b) && std::isfinite(map.c) &&
           std::isfinite(map.d) && std::isfinite(map.e) && std::isfinite(map.f);
}

void CheckFit(const Calibration& calibration) {
    const tolvane::CalibrationFit fit = tolvane::FitCalibration(calibration);
    if (!fit.valid) return;
    if (!IsFinite(fit.toPlane) || !IsFinite(fit.toPicture) || !std::isfinite(fit.rmsMetres)) {
        std::abort();
    }
}

void CheckRoundTrip(const Calibration& calibration, int width, int height) {
    const tolvane::fuzz::InputFile written(nullptr, 0);
    if (!tolvane::WriteRefPoints(written.Path(), calibration, width, height)) return;
    Calibration again;
    tolvane::ReadRefPoints(written.Path(), again);
    for (int i = 0; i < tolvane::kRefPointCount; ++i) {
        const tolvane::RefPoint& a = calibration.points[i];
        const tolvane::RefPoint& b = again.points[i];
        if (a.set != b.set) std::abort();
        if (a.set && (std::abs(a.latitude - b.latitude) > 1e-6 ||
                      std::abs(a.longitude - b.longitude) > 1e-6)) {
            std::abort();
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < kHeaderBytes) return 0;
    const int width = 1 + (data[1] | data[2] << 8);
    const int height = 1 + (data[3] | data[4] << 8);
    const tolvane::fuzz::InputFile file(data + kHeaderBytes, size - kHeaderBytes);
    Calibration calibration;
    bool read = false;
    switch (data[0] % 3) {
        case 0:
            read = tolvane::ReadRefPoints(file.Path(), calibration);
            break;
        case 1:
            read = tolvane::ReadOziMap(file.Path(), calibration);
            break;
        default:
            read = tolvane::ReadWorldFile(file.Path(), width, height, calibration);
            break;
    }
    if (!read) return 0;
    for (const tolvane::RefPoint& point : calibration.points) {
        if (point.set && (!(std::abs(point.latitude) <= 90) || !(std::abs(point.longitude) <= 180))) {
            std::abort();
        }
    }
    CheckFit(calibration);
    CheckRoundTrip(calibration, width, height);
    return 0;
}
