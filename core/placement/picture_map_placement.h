#pragma once

#include "core/base/pixels.h"
#include "core/geo/map_projection.h"
#include "core/maps/calibration.h"
#include "core/placement/map_placement.h"
#include "core/state/app_state.h"

namespace tolvane {

// Where the Map view puts its picture and the earth on the view's body.
struct MapGeometry {
    bool calibrated = false;
    Affine pictureToScreen;
    Affine screenToPicture;
    double screenPerPixel = 1;  // screen pixels per picture pixel
    MapPlacement placement;     // meaningful when calibrated
};

// The geometry for the loaded map, the zoom level, the pan steps and the
// position: zoom 0 shows the whole picture, each level adds a quarter.
MapGeometry ComputeMapGeometry(const AppState& app, const Rect& body);

// The picture pixel in the middle of the view: the cross-hair while a
// reference point is placed, the position while the map follows it (a
// calibrated map, the GPS on and no pan in the last ticks), else the
// position or the picture's middle moved by the pan steps.
MapProjection::Point MapCentre(const AppState& app);

// A pan or cross-hair step in picture pixels at the current zoom.
double MapStepPixels(const AppState& app);

}  // namespace tolvane
