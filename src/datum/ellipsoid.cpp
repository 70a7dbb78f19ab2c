#include "datum/ellipsoid.h"

#include <cmath>

#include "datum/angles.h"

namespace latigo {

namespace {

// The latitude of ECEFGeo is good when a pass changes it by no more than this, radians (6 mm on the earth; the error
// left is e2 times smaller).
constexpr double LatitudeTolerance = 1e-9;

// Three to five passes are the rule; the bound only ends what would never end, far inside the earth.
constexpr int MaxPasses = 1000;

}  // namespace

const Ellipsoid WGS84Ellipsoid(6378137.0, 1 / 298.257223563);

Ellipsoid::Ellipsoid(double semiMajorAxis, double flattening)
    : a_(semiMajorAxis), f_(flattening), e2_((flattening + flattening) - flattening * flattening), e_(std::sqrt(e2_)) {}

Ellipsoid Ellipsoid::FromInvFlattening(double semiMajorAxis, double invFlattening) {
  return {semiMajorAxis, invFlattening == 0 ? 0 : 1 / invFlattening};
}

double Ellipsoid::PrimeVerticalRadius(double phi) const {
  const double s = std::sin(phi);
  return a_ / std::sqrt(1 - e2_ * s * s);
}

double Ellipsoid::MeridianRadius(double phi) const {
  const double s = std::sin(phi);
  const double w = std::sqrt(1 - e2_ * s * s);
  return a_ * (1 - e2_) / (w * w * w);
}

double Ellipsoid::MeridianArc(double phi) const {
  const double t = 0.0439453125 * e2_;
  const double A0 = ((-0.01953125 * e2_ - 0.046875) * e2_ - 0.25) * e2_ + 1;
  const double A2 = ((0.09375 + t) * e2_ + 0.375) * e2_;
  const double A4 = (t + 0.05859375) * e2_ * e2_;
  const double A6 = -0.01139322916667 * e2_ * e2_ * e2_;
  return a_ * (A0 * phi - A2 * std::sin(2 * phi) + A4 * std::sin(4 * phi) + A6 * std::sin(6 * phi));
}

Cartesian Ellipsoid::GeoECEF(const Geographic& position) const {
  const auto [phi, lambda, h] = position;
  const double s = std::sin(phi);
  const double c = std::cos(phi);
  const double N = a_ / std::sqrt(1 - e2_ * s * s);
  return {(N + h) * c * std::cos(lambda), (N + h) * c * std::sin(lambda), ((1 - e2_) * N + h) * s};
}

Geographic Ellipsoid::ECEFGeo(const Cartesian& position) const {
  const auto [X, Y, Z] = position;
  const double p = std::hypot(X, Y);
  if (p == 0) {
    return {Z > 0 ? HalfPi : -HalfPi, 0, std::fabs(Z) - (1 - f_) * a_};
  }
  double phi = std::atan((Z / (1 - e2_)) / p);
  double N;
  double change;
  int passes = 0;
  do {
    const double s = std::sin(phi);
    N = a_ / std::sqrt(1 - s * s * e2_);
    const double phiNew = std::atan((N * e2_ * s + Z) / p);
    change = std::fabs(phiNew - phi);
    phi = phiNew;
  } while (change > LatitudeTolerance && ++passes < MaxPasses);
  // N belongs to the latitude before the last change.
  return {phi, std::atan2(Y, X), p / std::cos(phi) - N};
}

}  // namespace latigo
