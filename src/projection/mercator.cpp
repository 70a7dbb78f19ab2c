#include "projection/mercator.h"

#include <cmath>

namespace latigo {

namespace {

// The latitude is good when a pass changes it by no more than this, radians.
constexpr double LatitudeTolerance = 5e-11;

// Three to five passes are the rule; the bound only ends what would never end on an ellipsoid far from the earth's.
constexpr int MaxPasses = 1000;

}  // namespace

Mercator::Mercator(const GeodesyParams& params)
    : Projection(params),
      Radius(PrimeVerticalRadius(RefLatitude) * std::cos(RefLatitude) / Unit),
      TrueScale(ParallelRatio(RefLatitude)) {
  if (RefLatitude == HalfPi) {
    throw errcode(NoUsableProjection, Fatal);
  }
}

errcode Mercator::GeoXY(double& x, double& y, double phi, double lambda) const {
  if (std::fabs(phi) == HalfPi) {
    return errcode(PoleNotShown, Fatal);
  }
  const double s = std::sin(phi);
  const double es = e() * s;
  x = NormalizeLongitude(lambda - CentralMeridian) * Radius + FalseEasting;
  y = (Radius / 2) * std::log(((1 + s) / (1 - s)) * std::pow((1 - es) / (1 + es), e())) + FalseNorthing;
  return errcode();
}

errcode Mercator::XYGeo(double x, double y, double& phi, double& lambda) const {
  const double t = std::exp(-(y - FalseNorthing) / Radius);
  double latitude = HalfPi - 2 * std::atan(t);
  double change = 0;
  int passes = 0;
  do {
    const double next = LatitudePass(t, std::sin(latitude));
    change = std::fabs(latitude - next);
    latitude = next;
  } while (LatitudeTolerance < change && ++passes < MaxPasses);
  phi = latitude;
  lambda = NormalizeLongitude((x - FalseEasting) / Radius + CentralMeridian);
  return errcode();
}

errcode Mercator::Scale(double x, double y, double& k) const {
  double phi = 0;
  double lambda = 0;
  XYGeo(x, y, phi, lambda);
  const double s = std::sin(phi);
  k = TrueScale / std::cos(phi) * std::sqrt(1 - e2() * s * s);
  return errcode();
}

}  // namespace latigo
