#include "projection/smerc.h"

#include <cmath>

namespace latigo {

namespace {
constexpr double SphereRadius = 6378388.0;  // metres
}

errcode SMerc::GeoXY(double& x, double& y, double phi, double lambda) const {
  x = lambda * SphereRadius;
  y = std::log(HalfAngleOf(phi).tangent) * SphereRadius;
  return errcode();
}

errcode SMerc::XYGeo(double x, double y, double& phi, double& lambda) const {
  lambda = x / SphereRadius;
  phi = 2 * std::atan(std::exp(y / SphereRadius)) - HalfPi;
  return errcode();
}

}  // namespace latigo
