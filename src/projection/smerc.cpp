#include "projection/smerc.h"

#include <cmath>

namespace latigo {

namespace {

constexpr double SphereRadius = 6378388.0;  // metres

// 2 atan(exp(q)) - pi/2 of (7-4), with the exponential of -|q|, which does not overflow.
double LatitudeOfIsometric(double q) {
  return std::copysign(HalfPi - 2 * std::atan(std::exp(-std::fabs(q))), q);
}

}  // namespace

errcode SMerc::GeoXY(double& x, double& y, double phi, double lambda) const {
  x = lambda * SphereRadius;                    // (7-1)
  y = SphereIsometricOf(phi).q * SphereRadius;  // (7-2)
  return errcode();
}

errcode SMerc::XYGeo(double x, double y, double& phi, double& lambda) const {
  lambda = x / SphereRadius;                    // (7-5); multiplying by 1 / R would round twice
  phi = LatitudeOfIsometric(y / SphereRadius);  // (7-4)
  return errcode();
}

}  // namespace latigo
