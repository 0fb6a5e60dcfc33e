#pragma once

#include <array>

#include "core/geo/map_projection.h"

namespace tolvane {

inline constexpr int kRefPointCount = 5;

// A place on the picture, in the picture's own pixels (x to the right, y
// down, 0.5 the middle of the first pixel), and where it lies on the earth.
struct RefPoint {
    bool set = false;
    double x = 0;
    double y = 0;
    double latitude = 0;
    double longitude = 0;
    friend bool operator==(const RefPoint&, const RefPoint&) = default;
};

// The reference points of one map; "Set Ref Point n" places point n - 1.
struct Calibration {
    std::array<RefPoint, kRefPointCount> points{};
    int Count() const;
    friend bool operator==(const Calibration&, const Calibration&) = default;
};

// An affine map u = a x + b y + c, v = d x + e y + f.
struct Affine {
    double a = 1, b = 0, c = 0;
    double d = 0, e = 1, f = 0;
    MapProjection::Point Apply(double x, double y) const;
    // The inverse map; the identity when this one cannot be inverted.
    Affine Inverse() const;
};

// The fit of a calibration: picture pixels to the plane of the map
// projection at kPlaneScale, where a unit is a metre along the equator.
struct CalibrationFit {
    bool valid = false;
    Affine toPlane;
    Affine toPicture;
    // Per point, how far (in metres on the ground) the fit of the other
    // points puts it from where the user said it lies, so that one wrong
    // point stands out; 0 for points that are not set. With two points
    // each is measured against the whole fit, which holds it exactly.
    std::array<double, kRefPointCount> residualMetres{};
    // The root mean square of the whole fit's own residuals.
    double rmsMetres = 0;
};

// The projection's scale factor for the calibration plane: with the
// distance 1 it gives 1000 units per kilometre.
inline constexpr int kPlaneScale = 1000;

// The projection at the plane's scale.
const MapProjection& PlaneProjection();
MapProjection::Point ToPlane(double latitude, double longitude);

// Two points scale each axis on its own (the picture is taken to be north
// up); three to five are fitted by least squares with rotation and shear.
// Invalid with fewer than two points, points that span no area (two in
// one row or column, three or more on one line), and a fit whose numbers
// are not finite or that cannot be inverted (every point at one place on
// the earth).
CalibrationFit FitCalibration(const Calibration& calibration);

// The set point whose residual is largest, -1 when none is set.
int WorstPoint(const Calibration& calibration, const CalibrationFit& fit);

// "Set Ref Point 5" is offered once three of the first four points are
// set, or when point 5 is already set and may be moved or dropped: a fifth
// point only checks and refines a fit that is already determined.
bool CanSetRefPoint(const Calibration& calibration, int index);

}  // namespace tolvane
