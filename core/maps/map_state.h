#pragma once

#include <memory>
#include <string>

#include "core/maps/calibration.h"
#include "core/maps/map_picture.h"

namespace tolvane {

// The map of the Map view: the loaded picture, its calibration and the
// reference point being placed.
struct MapState {
    std::string path;  // the loaded picture; empty while none is loaded
    std::shared_ptr<const MapPicture> picture;
    Calibration calibration;
    CalibrationFit fit;
    int placing = -1;  // the reference point being placed, -1 while none is
    // The cross-hair of the point being placed, in picture pixels; the
    // view keeps it in its middle.
    double crossX = 0;
    double crossY = 0;

    bool Loaded() const { return picture != nullptr; }
};

}  // namespace tolvane
