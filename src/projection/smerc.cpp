#include "projection/smerc.h"

#include <cmath>

namespace latigo {

namespace {
constexpr double SphereRadius = 6378388.0;  // metres
}

errcode SMerc::GeoXY(double& x, double& y, double phi, double lambda) const {
  x = lambda * SphereRadius;
  y = SphereIsometricOf(phi).q * SphereRadius;
  return errcode();
}

errcode SMerc::XYGeo(double x, double y, double& phi, double& lambda) const {
  lambda = x * (1 / SphereRadius);
  phi = LatitudeOfIsometric(y * (1 / SphereRadius));
  return errcode();
}

}  // namespace latigo
