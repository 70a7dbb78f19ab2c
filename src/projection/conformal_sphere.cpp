#include "projection/conformal_sphere.h"

#include <cmath>

namespace latigo {

namespace {

double Exponent(double e2, double phi0) {
  const double c = std::cos(phi0);
  return std::sqrt(1 + c * c * c * c * e2 / (1 - e2));
}

}  // namespace

ConformalSphere::ConformalSphere(const Ellipsoid& ellipsoid, double phi0)
    : exponent(Exponent(ellipsoid.e2(), phi0)),
      chi0(std::asin(std::sin(phi0) / exponent)),
      sinChi0(std::sin(chi0)),
      cosChi0(std::cos(chi0)),
      radius(std::sqrt(ellipsoid.PrimeVerticalRadius(phi0) * ellipsoid.MeridianRadius(phi0))),
      e(ellipsoid.e()),
      constant(SphereIsometricOf(chi0).q - WithoutConstant(phi0)) {}

}  // namespace latigo
