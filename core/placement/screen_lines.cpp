#include "core/placement/screen_lines.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

#include "core/placement/world_map_placement.h"

namespace tolvane {
namespace {

constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;
// Longitude steps larger than this are a track crossing the 180 degree
// meridian, not a track running round the world the long way.
constexpr double kSeamJump = 180.0;
// The great-circle line to the destination, in pieces of at most this arc.
constexpr double kArcStepDegrees = 2.0;
constexpr int kMinimumArcSteps = 8;
// A track keeps a point only this many pixels (across plus down) from the
// last one, and is stroked in runs of this many points.
constexpr int kTrackPixelStep = 3;
constexpr std::size_t kRunLength = 128;

// The map projection for one placement, with the sums of the stretch table
// taken once instead of once a point: a track has thousands of points. The
// sums are added in the projection's own order, so every point lands on
// the very pixel the projection gives.
class PlacedProjection {
  public:
    PlacedProjection(const MapProjection& projection, const MapPlacement& placement)
        : placement_(placement),
          pixelsPerKm_(projection.Scale() / placement.distance),
          pixelsPerDegree_(pixelsPerKm_ * kKmPerDegreeLatitude) {
        for (int k = 0; k < kStretchTableSize; ++k) stretch_[k] = projection.StretchFactor(k);
        for (int k = 1; k < kStretchTableSize; ++k) {
            sums_[k] = sums_[k - 1] + stretch_[k - 1] * pixelsPerDegree_;
        }
    }

    Point At(double latitude, double longitude) const {
        const double a = std::fmin(std::fabs(latitude), kCutLatitude);
        const int whole = static_cast<int>(a);
        const double y = sums_[whole] + stretch_[whole] * (a - whole) * pixelsPerDegree_;
        const double x = pixelsPerKm_ * longitude * kKmPerDegreeLongitude + placement_.x0;
        return {ClampCoordinate(x), ClampCoordinate(placement_.y0 - (latitude < 0 ? -y : y))};
    }

  private:
    const MapPlacement& placement_;
    double pixelsPerKm_;
    double pixelsPerDegree_;
    double stretch_[kStretchTableSize] = {};
    double sums_[kStretchTableSize] = {};
};

// Splits a line of positions into screen pieces as ScreenPieces says.
class SeamSplitter {
  public:
    SeamSplitter(const MapProjection& projection, const MapPlacement& placement)
        : projection_(projection, placement) {}

    void Add(double latitude, double longitude) {
        const bool crossing = std::fabs(longitude - lastLongitude_) > kSeamJump;
        lastLongitude_ = longitude;
        const Point at = projection_.At(latitude, longitude);
        if (pieces_.empty() || crossing) {
            pieces_.push_back({at});
            return;
        }
        std::vector<Point>& piece = pieces_.back();
        const Point last = piece.back();
        if (std::abs(at.x - last.x) + std::abs(at.y - last.y) < kTrackPixelStep) return;
        piece.push_back(at);
        if (piece.size() == kRunLength) pieces_.push_back({at});
    }
    const std::vector<std::vector<Point>>& Pieces() const { return pieces_; }

  private:
    PlacedProjection projection_;
    double lastLongitude_ = 0;
    std::vector<std::vector<Point>> pieces_;
};

}  // namespace

ScreenPieces TrackPieces(const AppState& app, const MapPlacement& placement,
                         const DynamicList<TrackPoint>& track) {
    SeamSplitter line(app.projection, placement);
    track.ForEach([&line](const TrackPoint& point) { line.Add(point.latitude, point.longitude); });
    return line.Pieces();
}

ScreenPieces GreatCirclePieces(const AppState& app, const MapPlacement& placement,
                               const MapFollow& from, const GeoPoint& to) {
    const double phi1 = from.latitude * kRadiansPerDegree;
    const double phi2 = to.latitude * kRadiansPerDegree;
    const double lambda1 = from.longitude * kRadiansPerDegree;
    const double lambda2 = to.longitude * kRadiansPerDegree;
    const double a[3] = {std::cos(phi1) * std::cos(lambda1), std::cos(phi1) * std::sin(lambda1),
                         std::sin(phi1)};
    const double b[3] = {std::cos(phi2) * std::cos(lambda2), std::cos(phi2) * std::sin(lambda2),
                         std::sin(phi2)};
    const double arc = std::acos(std::clamp(a[0] * b[0] + a[1] * b[1] + a[2] * b[2], -1.0, 1.0));
    // Ends that are not numbers have no arc to count steps along.
    if (std::isnan(arc)) return {};
    const int steps =
        std::max(kMinimumArcSteps, static_cast<int>(arc / kRadiansPerDegree / kArcStepDegrees));
    SeamSplitter line(app.projection, placement);
    for (int step = 0; step <= steps; ++step) {
        const double t = static_cast<double>(step) / steps;
        // Spherical interpolation; a zero arc is the point itself.
        const double wa = arc > 1e-12 ? std::sin((1 - t) * arc) / std::sin(arc) : 1 - t;
        const double wb = arc > 1e-12 ? std::sin(t * arc) / std::sin(arc) : t;
        const double p[3] = {wa * a[0] + wb * b[0], wa * a[1] + wb * b[1], wa * a[2] + wb * b[2]};
        line.Add(std::atan2(p[2], std::hypot(p[0], p[1])) / kRadiansPerDegree,
                 std::atan2(p[1], p[0]) / kRadiansPerDegree);
    }
    return line.Pieces();
}

}  // namespace tolvane
