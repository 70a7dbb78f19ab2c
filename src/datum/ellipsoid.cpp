#include "datum/ellipsoid.h"

#include <cmath>

#include "datum/angles.h"

namespace latigo {

namespace {

// The latitude of ECEFGeo is good when a pass changes it by no more than this, radians (6 mm on the earth; the error
// left is e2 times smaller).
constexpr double LatitudeTolerance = 1e-9;

// A point so near to the polar axis, as a part of its height above the equator, lies on it: its latitude is that of the
// pole to the last digit, and the square of its tangent would leave the range of doubles.
constexpr double NoDistance = 1e-100;

// Three to five passes are the rule, and thousands where a vertical begins to have two feet, some 42 km from the axis in the
// plane of the equator; the bound only ends what would never end there.
constexpr int MaxPasses = 20000;

}  // namespace

const Ellipsoid WGS84Ellipsoid(6378137.0, 1 / 298.257223563);

Ellipsoid::Ellipsoid(double semiMajorAxis, double flattening)
    : a_(semiMajorAxis), f_(flattening), e2_((flattening + flattening) - flattening * flattening), e_(std::sqrt(e2_)) {}

Ellipsoid Ellipsoid::FromInvFlattening(double semiMajorAxis, double invFlattening) {
  return {semiMajorAxis, invFlattening == 0 ? 0 : 1 / invFlattening};
}

double Ellipsoid::PrimeVerticalRadius(double phi) const {
  return NOfSine(std::sin(phi));
}

double Ellipsoid::MeridianRadius(double phi) const {
  const double s = std::sin(phi);
  const double w = std::sqrt(1 - e2_ * s * s);
  return a_ * (1 - e2_) / (w * w * w);
}

double Ellipsoid::MeridianArc(double phi) const {
  const auto [A0, B] = MeridianArcTerms();
  return a_ * (A0 * phi + B[0] * std::sin(2 * phi) + B[1] * std::sin(4 * phi) + B[2] * std::sin(6 * phi));
}

Ellipsoid::ArcTerms Ellipsoid::MeridianArcTerms() const {
  const double t = 0.0439453125 * e2_;
  const double A0 = ((-0.01953125 * e2_ - 0.046875) * e2_ - 0.25) * e2_ + 1;
  const double A2 = ((0.09375 + t) * e2_ + 0.375) * e2_;
  const double A4 = (t + 0.05859375) * e2_ * e2_;
  const double A6 = -0.01139322916667 * e2_ * e2_ * e2_;
  return {A0, {-A2, A4, A6, 0}};
}

Geographic Ellipsoid::ECEFGeo(const Cartesian& position) const {
  const auto [X, Y, Z] = position;
  const double p = Hypotenuse(X, Y);
  if (p < NoDistance * (std::fabs(Z) + 1)) {
    return {Z > 0 ? HalfPi : -HalfPi, p == 0 ? 0 : std::atan2(Y, X), std::fabs(Z) - (1 - f_) * a_};
  }
  // phi' = atan((N e2 sin phi + Z) / p), on the tangent T of phi: N sin phi = a T / w with w^2 = 1 + (1 - e2) T^2.
  const double invP = 1 / p;
  const double first = Z * invP;
  const double factor = a_ * e2_ * invP;
  double T = Z / ((1 - e2_) * p);
  double last;
  double w;
  int passes = 0;
  do {
    last = T;
    w = std::sqrt(1 + (1 - e2_) * last * last);
    T = first + factor * last / w;
    // phi' - phi = atan((T' - T) / (1 + T T')), and the tolerance is its own tangent.
  } while (std::fabs(T - last) > LatitudeTolerance * (1 + T * last) && ++passes < MaxPasses);
  // N = a sqrt(1 + T^2) / w belongs to the latitude before the last change.
  return {std::atan(T), std::atan2(Y, X), p * std::sqrt(1 + T * T) - a_ * std::sqrt(1 + last * last) / w};
}

}  // namespace latigo
