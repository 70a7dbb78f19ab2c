#include "datum/ellipsoid.h"

#include <cmath>

#include "math/angles.h"

namespace latigo {

namespace {

// The iteration of ECEFGeo ends when it changes the latitude by at most this, radians (6 mm on the earth; the remaining
// error is smaller by the factor e2).
constexpr double LatitudeTolerance = 1e-9;

// A point is on the polar axis if its distance from the axis is at most this fraction of its distance from the
// equatorial plane: its latitude is that of the pole to the last digit, and the square of its tangent would overflow.
constexpr double NoDistance = 1e-100;

// Three to five iterations are usual. Where a point has two normals to the ellipsoid, near the equatorial plane within
// about 42 km of the axis, there are thousands. The limit is for points where the iteration would never end.
constexpr int MaxIterations = 20000;

}  // namespace

// Before the static objects of a program that the library is linked into: their constructors may call exports.
[[gnu::init_priority(101)]] const Ellipsoid WGS84Ellipsoid(6378137.0, 1 / 298.257223563);

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

// Snyder, USGS PP 1395, (3-21): M = a (A0 phi - A2 sin 2phi + A4 sin 4phi - A6 sin 6phi) with
//     A0 = 1 - e2/4 - 3 e2^2/64 - 5 e2^3/256       A4 = 15 e2^2/256 + 45 e2^3/1024
//     A2 = 3 e2/8 + 3 e2^2/32 + 45 e2^3/1024       A6 = 35 e2^3/3072
// All are exact in binary except 35/3072 = 0.0113932291666..: it has 14 decimals here, which changes the arc by less
// than 1e-14 m. The constant of A6 includes its sign.
Ellipsoid::ArcTerms Ellipsoid::MeridianArcTerms() const {
  const double t = 0.0439453125 * e2_;
  const double A0 = ((-0.01953125 * e2_ - 0.046875) * e2_ - 0.25) * e2_ + 1;
  const double A2 = ((0.09375 + t) * e2_ + 0.375) * e2_;
  const double A4 = (t + 0.05859375) * e2_ * e2_;
  const double A6 = -0.01139322916667 * e2_ * e2_ * e2_;
  return {A0, {-A2, A4, A6, 0}};
}

// Fixed-point iteration (Heiskanen and Moritz): tan phi' = (Z + e2 N sin phi) / p. On the tangent T of phi,
// N sin phi = a T / w with w^2 = 1 + (1 - e2) T^2, so that T' = Z / p + (a e2 / p) T / w and no angle is formed.
Geographic Ellipsoid::ECEFGeo(const Cartesian& position) const {
  const auto [X, Y, Z] = position;
  const double p = Hypotenuse(X, Y);
  if (p < NoDistance * (std::fabs(Z) + 1)) {
    return {Z > 0 ? HalfPi : -HalfPi, p == 0 ? 0 : std::atan2(Y, X), std::fabs(Z) - (1 - f_) * a_};
  }
  const double invP = 1 / p;
  const double first = Z * invP;
  const double factor = a_ * e2_ * invP;
  double T = Z / ((1 - e2_) * p);
  double last;
  double w;
  int iterations = 0;
  do {
    last = T;
    w = std::sqrt(1 + (1 - e2_) * last * last);
    T = first + factor * last / w;
    // phi' - phi = atan((T' - T) / (1 + T T')); for so small an angle the tangent is the angle.
  } while (std::fabs(T - last) > LatitudeTolerance * (1 + T * last) && ++iterations < MaxIterations);
  // N = a sqrt(1 + T^2) / w belongs to the latitude before the last change.
  return {std::atan(T), std::atan2(Y, X), p * std::sqrt(1 + T * T) - a_ * std::sqrt(1 + last * last) / w};
}

}  // namespace latigo
