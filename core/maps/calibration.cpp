#include "core/maps/calibration.h"

#include <cmath>

namespace tolvane {
namespace {

// Below this a picture span is taken as none: half a pixel.
constexpr double kMinimumSpan = 0.5;

struct Sample {
    double x;
    double y;
    MapProjection::Point plane;
};

int Samples(const Calibration& calibration, std::array<Sample, kRefPointCount>& samples) {
    int count = 0;
    for (const RefPoint& point : calibration.points) {
        if (!point.set) continue;
        samples[count++] = {point.x, point.y, ToPlane(point.latitude, point.longitude)};
    }
    return count;
}

// One scale and offset per axis from two points.
bool FitTwo(const Sample& p, const Sample& q, Affine& fit) {
    const double dx = q.x - p.x;
    const double dy = q.y - p.y;
    if (std::fabs(dx) < kMinimumSpan || std::fabs(dy) < kMinimumSpan) return false;
    fit.a = (q.plane.x - p.plane.x) / dx;
    fit.b = 0;
    fit.c = p.plane.x - fit.a * p.x;
    fit.d = 0;
    fit.e = (q.plane.y - p.plane.y) / dy;
    fit.f = p.plane.y - fit.e * p.y;
    return true;
}

// Least squares of u = a x + b y + c and v = d x + e y + f over the samples,
// in coordinates centred on their mean so that large pictures stay exact.
bool FitLeastSquares(const std::array<Sample, kRefPointCount>& samples, int count, Affine& fit) {
    double mx = 0, my = 0, mu = 0, mv = 0;
    for (int i = 0; i < count; ++i) {
        mx += samples[i].x, my += samples[i].y;
        mu += samples[i].plane.x, mv += samples[i].plane.y;
    }
    mx /= count, my /= count, mu /= count, mv /= count;
    double sxx = 0, sxy = 0, syy = 0, sxu = 0, syu = 0, sxv = 0, syv = 0;
    for (int i = 0; i < count; ++i) {
        const double x = samples[i].x - mx, y = samples[i].y - my;
        const double u = samples[i].plane.x - mu, v = samples[i].plane.y - mv;
        sxx += x * x, sxy += x * y, syy += y * y;
        sxu += x * u, syu += y * u, sxv += x * v, syv += y * v;
    }
    const double det = sxx * syy - sxy * sxy;
    // Points on one line span no area.
    if (std::fabs(det) < kMinimumSpan * kMinimumSpan * sxx + 1e-9) return false;
    fit.a = (sxu * syy - syu * sxy) / det;
    fit.b = (syu * sxx - sxu * sxy) / det;
    fit.c = mu - fit.a * mx - fit.b * my;
    fit.d = (sxv * syy - syv * sxy) / det;
    fit.e = (syv * sxx - sxv * sxy) / det;
    fit.f = mv - fit.d * mx - fit.e * my;
    return true;
}

bool IsFinite(const Affine& map) {
    for (const double coefficient : {map.a, map.b, map.c, map.d, map.e, map.f}) {
        if (!std::isfinite(coefficient)) return false;
    }
    return true;
}

// Whether a fit places the picture on the earth and back: its numbers did
// not overflow, and it does not fold the picture onto a line or a point
// (a world file whose scales are 0 puts every corner at one place).
bool IsPlacing(const Affine& toPlane) {
    constexpr double kRelativeDeterminant = 1e-12;
    if (!IsFinite(toPlane)) return false;
    const double det = toPlane.a * toPlane.e - toPlane.b * toPlane.d;
    const double size = std::fabs(toPlane.a * toPlane.e) + std::fabs(toPlane.b * toPlane.d);
    return std::isfinite(det) && std::fabs(det) > kRelativeDeterminant * size &&
           IsFinite(toPlane.Inverse());
}

// The fit alone, without residuals; false when the points span no area or
// give no fit that places the picture.
bool FitPlane(const Calibration& calibration, Affine& fit) {
    std::array<Sample, kRefPointCount> samples{};
    const int count = Samples(calibration, samples);
    if (count < 2) return false;
    const bool fitted =
        count == 2 ? FitTwo(samples[0], samples[1], fit) : FitLeastSquares(samples, count, fit);
    return fitted && IsPlacing(fit);
}

// How far a fit puts the point from where it lies, in metres on the
// ground: a plane unit is a metre at the equator, and the projection's
// stretch at the point's latitude turns it into metres there.
double ResidualMetres(const RefPoint& point, const Affine& toPlane) {
    const MapProjection::Point fitted = toPlane.Apply(point.x, point.y);
    const MapProjection::Point given = ToPlane(point.latitude, point.longitude);
    return PlaneProjection().AdjustForLatitude(point.latitude,
                                               std::hypot(fitted.x - given.x, fitted.y - given.y));
}

}  // namespace

int Calibration::Count() const {
    int count = 0;
    for (const RefPoint& point : points) count += point.set ? 1 : 0;
    return count;
}

MapProjection::Point Affine::Apply(double x, double y) const {
    return {a * x + b * y + c, d * x + e * y + f};
}

Affine Affine::Inverse() const {
    const double det = a * e - b * d;
    if (det == 0) return {};
    Affine inverse;
    inverse.a = e / det;
    inverse.b = -b / det;
    inverse.d = -d / det;
    inverse.e = a / det;
    inverse.c = -(inverse.a * c + inverse.b * f);
    inverse.f = -(inverse.d * c + inverse.e * f);
    return inverse;
}

const MapProjection& PlaneProjection() {
    static const MapProjection projection = [] {
        MapProjection made;
        made.SetScale(kPlaneScale);
        return made;
    }();
    return projection;
}

MapProjection::Point ToPlane(double latitude, double longitude) {
    return PlaneProjection().ProjectToScreen(latitude, longitude, 0, 0, 1);
}

CalibrationFit FitCalibration(const Calibration& calibration) {
    CalibrationFit fit;
    if (!FitPlane(calibration, fit.toPlane)) return {};
    fit.valid = true;
    fit.toPicture = fit.toPlane.Inverse();
    double sum = 0;
    for (int i = 0; i < kRefPointCount; ++i) {
        const RefPoint& point = calibration.points[i];
        if (!point.set) continue;
        const double own = ResidualMetres(point, fit.toPlane);
        sum += own * own;
        // Measured against the fit of the other points, a wrong point does
        // not hide by pulling the fit toward itself.
        Calibration others = calibration;
        others.points[i] = RefPoint{};
        Affine withoutIt;
        fit.residualMetres[i] =
            FitPlane(others, withoutIt) ? ResidualMetres(point, withoutIt) : own;
    }
    fit.rmsMetres = std::sqrt(sum / calibration.Count());
    // Points far beyond any picture overflow the residuals.
    if (!std::isfinite(fit.rmsMetres)) return {};
    return fit;
}

int WorstPoint(const Calibration& calibration, const CalibrationFit& fit) {
    int worst = -1;
    for (int i = 0; i < kRefPointCount; ++i) {
        if (!calibration.points[i].set) continue;
        if (worst < 0 || fit.residualMetres[i] > fit.residualMetres[worst]) worst = i;
    }
    return worst;
}

bool CanSetRefPoint(const Calibration& calibration, int index) {
    if (index < kRefPointCount - 1) return true;
    if (calibration.points[index].set) return true;
    return calibration.Count() >= 3;
}

}  // namespace tolvane
