#include "projection/polar_stereo.h"

#include <cmath>

namespace latigo {

namespace {

// A RefLatitude this near to a pole is the pole, radians.
constexpr double PoleTolerance = 1e-5;

double SideOf(double phi0) {
  return phi0 < 0 ? -1.0 : 1.0;
}

// sqrt((1 + e)^(1 + e) (1 - e)^(1 - e))
double Root(double e) {
  return std::sqrt(std::pow(1 + e, 1 + e) * std::pow(1 - e, 1 - e));
}

// t of a latitude counted from the equator towards the projection's own pole.
double PolarT(double e, double phi) {
  const double es = e * std::sin(phi);
  return std::tan(HalfPi / 2 - phi / 2) * std::pow((1 + es) / (1 - es), e / 2);
}

// The record with the scale factor of the pole, for one with a latitude of true scale.
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

double Sin2(double e2) {
  return e2 * (1.0 / 2 + e2 * (5.0 / 24 + e2 * (1.0 / 12 + e2 * 13.0 / 360)));
}
double Sin4(double e2) {
  return e2 * e2 * (7.0 / 48 + e2 * (29.0 / 240 + e2 * 811.0 / 11520));
}
double Sin6(double e2) {
  return e2 * e2 * e2 * (7.0 / 120 + e2 * 81.0 / 1120);
}
double Sin8(double e2) {
  return e2 * e2 * e2 * e2 * 4279.0 / 161280;
}

}  // namespace

PolarStereo::PolarStereo(const GeodesyParams& params)
    : Projection(WithPoleScale(params)),
      Side(SideOf(RefLatitude)),
      RhoFactor(2 * a() * ScaleFactor / Root(e())),
      Sin2Coef(Sin2(e2())),
      Sin4Coef(Sin4(e2())),
      Sin6Coef(Sin6(e2())),
      Sin8Coef(Sin8(e2())) {}

errcode PolarStereo::GeoXY(double& x, double& y, double phi, double lambda) const {
  const double rho = RhoFactor * PolarT(e(), Side * phi);
  const double theta = lambda - CentralMeridian;
  x = FalseEasting + rho * std::sin(theta);
  y = FalseNorthing - Side * rho * std::cos(theta);
  return errcode();
}

double PolarStereo::Latitude(double r) const {
  const double chi = Side * (HalfPi - 2 * std::atan(r / RhoFactor));
  return chi + Sin2Coef * std::sin(2 * chi) + Sin4Coef * std::sin(4 * chi) + Sin6Coef * std::sin(6 * chi) +
         Sin8Coef * std::sin(8 * chi);
}

errcode PolarStereo::XYGeo(double x, double y, double& phi, double& lambda) const {
  const double dx = x - FalseEasting;
  const double dy = y - FalseNorthing;
  lambda = CentralMeridian + std::atan2(dx, Side < 0 ? dy : FalseNorthing - y);
  phi = Latitude(std::hypot(dx, dy));
  return errcode();
}

errcode PolarStereo::Scale(double x, double y, double& k) const {
  const double r = std::hypot(x - FalseEasting, y - FalseNorthing);
  // At the pole the quotient has no value, and its limit is the scale factor.
  k = r == 0 ? ScaleFactor : r / (a() * ParallelRatio(Latitude(r)));
  return errcode();
}

}  // namespace latigo
