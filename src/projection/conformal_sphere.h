// The conformal sphere of Gauss: the sphere that touches the ellipsoid along a parallel, used by the double
// projections.
#pragma once

#include "datum/ellipsoid.h"

namespace latigo {

struct ConformalSphere {
  // For a parallel at latitude phi0, radians.
  ConformalSphere(const Ellipsoid& ellipsoid, double phi0);

  const double exponent;  // n: ratio of longitudes on the sphere and on the ellipsoid
  const double chi0;      // latitude of the parallel on the sphere, radians
  const double radius;    // geometric mean of the two principal radii at phi0, metres
};

}  // namespace latigo
