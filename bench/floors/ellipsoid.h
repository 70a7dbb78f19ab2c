// Floors: a formula of the library as the fastest straight-line code with the same results. Values that depend on
// parameters only are computed beforehand; there is no handle, no code and no domain check.
//
// A floor may use identities: sine and cosine of one angle computed together; sine and cosine of twice an arc tangent
// by algebra; multiple angles from one pair; the root of a sum of squares without overflow protection; one exponential
// of a logarithm for several powers; iteration on the tangent of the half angle; the latitude of the northern
// hemisphere for both; log1p where random arguments of log are on both sides of a branch of log near 1. Series,
// tolerances, numbers of iterations and starting values are those of the library.
#pragma once

#include <latigo/latigo.h>

#include <cmath>

namespace bench {

inline constexpr double Pi = 3.141592653589793;
inline constexpr double HalfPi = Pi / 2;

struct SinCos {
  explicit SinCos(double angle) { ::sincos(angle, &sin, &cos); }
  double sin, cos;
};

inline double OverPi(double longitude) {
  while (std::fabs(longitude) > Pi) {
    longitude -= std::copysign(2 * Pi, longitude);
  }
  return longitude;
}

struct FloorEllipsoid {
  FloorEllipsoid(double semiMajorAxis, double flattening)
      : a(semiMajorAxis), f(flattening), e2(flattening * (2 - flattening)), e(std::sqrt(e2)) {}
  explicit FloorEllipsoid(const GeodesyParams& params)
      : FloorEllipsoid(params.SemiMajorAxis, 1 / params.InvFlattening) {}

  const double a, f, e2, e;
  const double halfE = e / 2, onePlusE = 1 + e, oneMinusE = 1 - e;

  double N(double s) const { return a / std::sqrt(1 - e2 * s * s); }
  double M(double s) const {
    const double w2 = 1 - e2 * s * s;
    return a * (1 - e2) / (w2 * std::sqrt(w2));
  }
  double ParallelRatio(double phi) const { return std::cos(phi) / std::sqrt(1 - e2 * std::sin(phi) * std::sin(phi)); }

  // Isometric latitude of the latitude with this sine.
  double Isometric(double s) const {
    const double es = e * s;
    return 0.5 * std::log((1 + s) / (1 - s)) - halfE * std::log((1 + es) / (1 - es));
  }

  // One iteration from u = tan(pi/4 - phi/2) to the next u, for t of the conformal latitude.
  double HalfAnglePass(double t, double u) const {
    const double v = u * u;
    return t * std::exp(halfE * std::log((oneMinusE + onePlusE * v) / (onePlusE + oneMinusE * v)));
  }

  // Iterates until the latitude changes by at most the tolerance, radians.
  double HalfAngle(double t, double tolerance) const {
    const double limit = tolerance / 2;
    double u = t;
    double change;
    double scale;
    do {
      const double next = HalfAnglePass(t, u);
      change = std::fabs(next - u);
      scale = 1 + next * u;
      u = next;
    } while (change > limit * scale);
    return u;
  }

  // 1 / m of the latitude with this half angle.
  double InvParallelRatio(double u) const {
    const double v = u * u;
    return std::sqrt((1 + v) * (1 + v) - e2 * (1 - v) * (1 - v)) / (2 * u);
  }
};

// B2 sin 2u + B4 sin 4u + B6 sin 6u + B8 sin 8u, from the sine and cosine of 2u.
struct FourSines {
  FourSines(double B2, double B4, double B6, double B8) : c{B2 - B6, 2 * B4 - 4 * B8, 4 * B6, 8 * B8} {}

  double operator()(double sin2, double cos2) const {
    return sin2 * (c[0] + cos2 * (c[1] + cos2 * (c[2] + cos2 * c[3])));
  }

  const double c[4];
};

// The footpoint latitude less the rectifying latitude, for the third flattening n.
inline FourSines Footpoint(double n) {
  const double n2 = n * n;
  return {n * (1.5 - 27.0 / 32 * n2), n2 * (21.0 / 16 - 55.0 / 32 * n2), 151.0 / 96 * n2 * n, 1097.0 / 512 * n2 * n2};
}

}  // namespace bench
