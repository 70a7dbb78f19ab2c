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
  x = NormalizeLongitude(lambda - CentralMeridian) * Radius + FalseEasting;
  y = Radius * IsometricLatitude(std::sin(phi)) + FalseNorthing;
  return errcode();
}

Mercator::HalfComplement Mercator::LatitudeOf(double y) const {
  return Converge(std::exp((FalseNorthing - y) / Radius), LatitudeTolerance, MaxPasses);
}

errcode Mercator::XYGeo(double x, double y, double& phi, double& lambda) const {
  phi = LatitudeOf(y).Latitude();
  lambda = NormalizeLongitude((x - FalseEasting) / Radius + CentralMeridian);
  return errcode();
}

errcode Mercator::Scale(double /*x*/, double y, double& k) const {
  k = TrueScale * InvParallelRatio(LatitudeOf(y).u);
  return errcode();
}

}  // namespace latigo
