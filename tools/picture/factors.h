// The factors of a coordinate system at a position, by differences of the library's own forward conversion.
#pragma once

#include <latigo/latigo.h>

#include <cstdint>
#include <utility>

namespace latigo::picture {

// Of the grid with its local grid: coordinates as GeoXY returns them, but with axes that point east and north.
struct Factors {
  double convergence = 0;  // bearing of grid north from true north, clockwise, radians
  double h = 0;            // scale factor along the meridian
  double k = 0;            // scale factor along the parallel
  double area = 0;         // scale factor of areas
  double omega = 0;        // maximum angular distortion, radians
  double error = 0;        // bound of the differences' error: relative in h, k and area; radians in the angles

  // The mean scale factor of all directions: the point scale factor k if the projection is conformal.
  double Mean() const;

  // The largest and the smallest scale factor of all directions: the semi-axes of Tissot's indicatrix.
  std::pair<double, double> SemiAxes() const;
};

// Contains no object of its own: the handle must outlive it.
class Differences {
 public:
  explicit Differences(GeodesyHandle handle);

  // The factors at a position on the object's datum, radians, the longitude within half a turn of the central meridian.
  // Returns false at a pole, where longitudes have no distance, and where GeoXY has no values nearby.
  bool At(double latitude, double longitude, Factors& factors) const;

  // The angle in the grid, clockwise, from the image of a line at a position to a chord from there, radians. The line
  // has an azimuth on the ground; the chord has components in grid coordinates. Returns false where At does.
  bool ArcToChord(double latitude, double longitude, double azimuth, double chordX, double chordY, double& angle) const;

  // Gauss's mean radius of curvature, sqrt(M N), metres.
  double MeanRadius(double latitude) const;

 private:
  // Metres in the grid for a metre on the ground, towards east and north.
  struct Jacobian {
    double xEast, yEast, xNorth, yNorth;
    double errorEast, errorNorth;
  };
  struct Slope {
    double x, y, error;
  };

  bool JacobianAt(double latitude, double longitude, Jacobian& jacobian) const;
  template <typename Function>
  Slope SlopeOf(const Function& at, double middle, double low, double high, double metres, double rounding) const;

  GeodesyHandle handle_;
  double a_, e2_, centralMeridian_;
  double metresPerUnit_ = 1;
  bool fromSine_ = false;  // coordinates are of the latitude's sine, which is rounded: near a pole by a large angle
  double signX_ = 1, signY_ = 1;  // -1 for an axis that the local grid reverses
};

// Metres for a unit of the coordinates; kinds 4, 9 and 12 ignore `Unit`, unless a local grid scales to it.
double MetresPerUnit(GeodesyHandle handle);

// The coordinates in the section's unit are to be divided by this: the scale of a local grid, and `Unit` if the kind
// ignores it. Far from 1 the coordinates have another unit.
double UnitScale(GeodesyHandle handle);

}  // namespace latigo::picture
