#include "projection/projection.h"

#include <cmath>

namespace latigo {

namespace {

// Above this angle, radians, repeated subtraction would be slow or endless.
constexpr double ManyTurns = 1000 * TwoPi;

double OneIfZero(double value) {
  return value == 0 ? 1.0 : value;
}

}  // namespace

Projection::Projection(const GeodesyParams& params)
    : Ellipsoid(FromInvFlattening(params.SemiMajorAxis, params.InvFlattening)),
      ScaleFactor(OneIfZero(params.ScaleFactor)),
      CentralMeridian(params.CentralMeridian),
      RefLatitude(params.RefLatitude),
      NorthParallel(params.NorthParallel),
      SouthParallel(params.SouthParallel),
      SkewAzimuth(params.SkewAzimuth),
      Unit(OneIfZero(params.Unit)),
      FalseEasting(params.FalseEasting),
      FalseNorthing(params.FalseNorthing) {}

errcode Projection::UnitScale(double /*x*/, double /*y*/, double& k) {
  k = 1.0;
  return errcode();
}

double Projection::WrapLongitude(double v) {
  // Repeated subtraction, not a remainder: its rounding is part of the result.
  if (std::fabs(v) > ManyTurns) {
    v = std::remainder(v, TwoPi);  // NaN for infinity
  }
  const double step = v < 0 ? -TwoPi : TwoPi;
  while (std::fabs(v) > Pi) {
    v -= step;
  }
  return v;
}

double Projection::IsometricT(double phi) const {
  const double s = std::sin(phi);
  const double es = e() * s;
  return std::sqrt(((1 - s) / (1 + s)) * std::pow((1 + es) / (1 - es), e()));
}

double Projection::ParallelRatio(double phi) const {
  const auto [s, c] = SinCosOf(phi);
  return c / std::sqrt(1 - e2() * s * s);
}

}  // namespace latigo
