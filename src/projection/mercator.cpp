#include "projection/mercator.h"

#include <cmath>

namespace latigo {

namespace {

// The iteration ends when it changes the latitude by at most this, radians.
constexpr double LatitudeTolerance = 5e-11;

// Three to five iterations are usual; the limit is for ellipsoids on which the iteration would never end.
constexpr int MaxIterations = 1000;

}  // namespace

Mercator::Mercator(const GeodesyParams& params)
    : Projection(params),
      Radius(PrimeVerticalRadius(RefLatitude) * std::cos(RefLatitude) / Unit),
      TrueScale(ParallelRatio(RefLatitude)) {
  if (RefLatitude == HalfPi) {
    throw errcode(NoUsableProjection, Fatal);
  }
}

// Book: x = a (lambda - lambda0), y = a psi. Here R for a; the book's scale at phi0 is R / a.
errcode Mercator::GeoXY(double& x, double& y, double phi, double lambda) const {
  if (std::fabs(phi) == HalfPi) {
    return errcode(PoleNotShown, Fatal);
  }
  x = NormalizeLongitude(lambda - CentralMeridian) * Radius + FalseEasting;  // (7-6)
  y = Radius * IsometricLatitude(std::sin(phi)) + FalseNorthing;             // (7-7)
  return errcode();
}

Mercator::HalfComplement Mercator::LatitudeOf(double y) const {
  const double t = std::exp((FalseNorthing - y) / Radius);  // (7-10)
  return Converge(t, LatitudeTolerance, MaxIterations);     // (7-9)
}

errcode Mercator::XYGeo(double x, double y, double& phi, double& lambda) const {
  phi = LatitudeOf(y).Latitude();
  lambda = NormalizeLongitude((x - FalseEasting) / Radius + CentralMeridian);  // (7-12)
  return errcode();
}

errcode Mercator::Scale(double /*x*/, double y, double& k) const {
  k = TrueScale * InvParallelRatio(LatitudeOf(y).u);  // (7-8), which is 1/m for phi0 = 0
  return errcode();
}

}  // namespace latigo
