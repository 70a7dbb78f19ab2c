// Gauss's conformal sphere, which touches the ellipsoid along a parallel; used by the double projections. Gauss (1843);
// in the symbols of IOGP Guidance Note 7-2, oblique stereographic:
//     n = sqrt(1 + e2 cos^4 phi0 / (1 - e2))
//     sin chi0 = sin phi0 / n
//     R = sqrt(rho0 nu0)
//     w = c (S1 S2^e)^n with S1 = (1 + sin phi) / (1 - sin phi), S2 = (1 - e sin phi) / (1 + e sin phi)
//     sin chi = (w - 1) / (w + 1)
// Here ln w / 2 is used, the isometric latitude on the sphere: n (isometric latitude on the ellipsoid) + K, where
// K = ln c / 2 is the constant that maps phi0 to chi0.
#pragma once

#include "datum/ellipsoid.h"
#include "math/angles.h"

namespace latigo {

class ConformalSphere {
 public:
  // For a parallel at latitude phi0, radians.
  ConformalSphere(const Ellipsoid& ellipsoid, double phi0);

  // The isometric latitude on the sphere, ln tan(pi/4 + chi/2), of a latitude on the ellipsoid:
  // n (ln tan(pi/4 + phi/2) - e atanh(e sin phi)) + K. NaN outside -pi/2 to pi/2.
  double IsometricLatitude(double phi) const { return WithoutConstant(phi) + constant; }

  const double exponent;  // n: ratio of longitudes on the sphere and on the ellipsoid
  const double chi0;      // latitude of the parallel on the sphere, radians
  const double sinChi0, cosChi0;
  const double radius;  // geometric mean of the two principal radii at phi0, metres

 private:
  double WithoutConstant(double phi) const {
    const auto [q, s] = SphereIsometricOf(phi);
    const double es = e * s;
    return exponent * (q - e / 2 * std::log((1 + es) / (1 - es)));
  }

  const double e;  // first eccentricity of the ellipsoid

 public:
  const double constant;  // K: phi0 maps to chi0
};

}  // namespace latigo
