#pragma once

namespace tolvane {

inline constexpr int kStretchTableSize = 81;

// The projection of every map picture: longitude maps linearly to x, and
// latitude to y by summing per-degree stretch factors built from the same
// degree lengths as DistanceKm. Cut at 80 degrees north and south.
class MapProjection {
  public:
    MapProjection() { BuildStretchTable(); }

    // Builds the stretch table: the length of a degree of longitude at the
    // equator over its length at each whole degree of latitude.
    void BuildStretchTable();

    // scale is the map's integer scale factor Z; a view supplies the distance
    // D, so that Z / D is the scale in pixels per kilometre.
    void SetScale(int scale) { scale_ = scale; }
    int Scale() const { return scale_; }

    // Signed pixels from the equator, positive to the north.
    double LatitudeToY(double latitude, double distance) const;

    struct Point {
        double x;
        double y;
    };
    // x0, y0 is where latitude 0, longitude 0 would lie on the screen.
    Point ProjectToScreen(double latitude, double longitude, double x0, double y0,
                          double distance) const;

    // Corrects a length for the stretch at a latitude.
    double AdjustForLatitude(double latitude, double value) const;

    double StretchFactor(int degree) const { return table_[degree]; }

  private:
    double table_[kStretchTableSize];
    int scale_ = 1;
};

}  // namespace tolvane
