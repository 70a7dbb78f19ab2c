#include "projection/polar_stereo.h"

#include <algorithm>
#include <cmath>

namespace latigo {

namespace {

// A RefLatitude within this of a pole is the pole, radians.
constexpr double PoleTolerance = 1e-5;

double SideOf(double phi0) {
  return phi0 < 0 ? -1.0 : 1.0;
}

// The root of (21-33): sqrt((1 + e)^(1 + e) (1 - e)^(1 - e)).
double Root(double e) {
  return std::sqrt(std::pow(1 + e, 1 + e) * std::pow(1 - e, 1 - e));
}

// t (15-9) of a latitude that is positive towards the projection's own pole: tan(pi/4 - phi/2) ((1 + e s) /
// (1 - e s))^(e/2). With h = pi/4 - phi/2, s = sin phi = cos 2h = (cos h - sin h) (cos h + sin h).
inline double PolarT(double e, double phi) {
  const auto [sinH, cosH] = SinCosOf(HalfPi / 2 - phi / 2);
  const double es = e * ((cosH - sinH) * (cosH + sinH));
  return sinH / cosH * std::exp(e / 2 * std::log((1 + es) / (1 - es)));
}

// Sine and cosine of the latitude pi/2 - 2 atan(u), u >= 0: (1 - u^2) / (1 + u^2) and 2 u / (1 + u^2).
inline SinCos FromHalfComplement(double u) {
  const double v = std::min(u, 1e150);  // larger values are the latitude -pi/2; their squares could overflow
  const double d = 1 / (1 + v * v);
  return {(1 - v * v) * d, 2 * v * d};
}

// Replaces a latitude of true scale by the scale factor k0 of the pole: (21-33) equals (21-34), rho = a m t / t_c, for
// k0 = m root / (2 t_c).
GeodesyParams WithPoleScale(const GeodesyParams& params) {
  const double phi0 = std::fabs(params.RefLatitude);
  if (!(std::fabs(phi0 - HalfPi) > PoleTolerance)) {
    return params;
  }
  const Ellipsoid ellipsoid = Ellipsoid::FromInvFlattening(params.SemiMajorAxis, params.InvFlattening);
  const double s = std::sin(phi0);
  const double m = std::cos(phi0) / std::sqrt(1 - ellipsoid.e2() * s * s);
  GeodesyParams scaled = params;
  scaled.ScaleFactor = m * Root(ellipsoid.e()) / (2 * PolarT(ellipsoid.e(), phi0));
  return scaled;
}

// (3-5), from conformal to geodetic latitude: coefficients of sin 2 chi to sin 8 chi.
FourTerms LatitudeSeries(double e2) {
  const double e4 = e2 * e2;
  return {e2 * (1.0 / 2 + e2 * (5.0 / 24 + e2 * (1.0 / 12 + e2 * 13.0 / 360))),
          e4 * (7.0 / 48 + e2 * (29.0 / 240 + e2 * 811.0 / 11520)),  //
          e4 * e2 * (7.0 / 120 + e2 * 81.0 / 1120),                  //
          e4 * e4 * 4279.0 / 161280};
}

}  // namespace

PolarStereo::PolarStereo(const GeodesyParams& params)
    : Projection(WithPoleScale(params)),
      Side(SideOf(RefLatitude)),
      RhoFactor(2 * a() * ScaleFactor / Root(e())),
      InvRhoFactor(1 / RhoFactor),
      SinCoefs(LatitudeSeries(e2())) {}

// For the south pole the book reverses the signs of phi, x, y and the longitudes. Here only phi and y change sign,
// which is the same: sin and x are both odd, cos is even.
errcode PolarStereo::GeoXY(double& x, double& y, double phi, double lambda) const {
  const double rho = RhoFactor * PolarT(e(), Side * phi);  // (21-33)
  const SinCos theta = SinCosOf(lambda - CentralMeridian);
  y = FalseNorthing - Side * rho * theta.cos;  // (21-31)
  x = FalseEasting + rho * theta.sin;          // (21-30)
  return errcode();
}

double PolarStereo::Latitude(double r) const {
  const double t = r * InvRhoFactor;  // (21-39)
  // chi = pi/2 - 2 atan t (7-13), and the series (3-5) by sine and cosine of 2 chi alone.
  const SinCos chi = FromHalfComplement(t);
  return Side * (HalfPi - 2 * std::atan(t) + SineSeries(SinCoefs, Doubled(chi)));
}

errcode PolarStereo::XYGeo(double x, double y, double& phi, double& lambda) const {
  const double dx = x - FalseEasting;
  const double dy = y - FalseNorthing;
  // Distance from the pole along the central meridian. The sum with 0 makes a zero positive, so that the angle at the
  // pole is 0 and not half a turn.
  const double along = (Side < 0 ? dy : FalseNorthing - y) + 0.0;
  lambda = CentralMeridian + std::atan2(dx, along);  // (20-16)
  phi = Latitude(Hypotenuse(dx, dy));                // (20-18)
  return errcode();
}

errcode PolarStereo::Scale(double x, double y, double& k) const {
  const double r = Hypotenuse(x - FalseEasting, y - FalseNorthing);
  // At the pole the quotient is 0/0; its limit is the scale factor.
  k = r == 0 ? ScaleFactor : r / (a() * ParallelRatio(Latitude(r)));  // (21-32)
  return errcode();
}

}  // namespace latigo
