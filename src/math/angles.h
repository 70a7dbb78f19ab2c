// Angles: their constants, as the doubles that all formulas share, and the functions that come in pairs.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>

namespace latigo {

inline constexpr double Pi = 3.141592653589793;
inline constexpr double HalfPi = 1.5707963267948966;
inline constexpr double TwoPi = 6.283185307179586;

// Sine and cosine of one angle, computed together.
struct SinCos {
  double sin, cos;
};

inline SinCos SinCosOf(double angle) {
  return {std::sin(angle), std::cos(angle)};
}

// A series in multiple angles: coefficients of sin w, sin 2w, sin 3w, sin 4w.
using FourTerms = std::array<double, 4>;

// Its sum, from sine and cosine of w alone.
inline double SineSeries(const FourTerms& B, const SinCos& w) {
  return w.sin * (B[0] - B[2] + w.cos * (2 * B[1] - 4 * B[3] + w.cos * (4 * B[2] + w.cos * (8 * B[3]))));
}

// Sine and cosine of twice the angle.
inline SinCos Doubled(const SinCos& angle) {
  return {2 * angle.sin * angle.cos, 1 - 2 * angle.sin * angle.sin};
}

// The isometric latitude on the sphere, ln tan(pi/4 + phi/2), and the sine of a latitude. NaN outside -pi/2 to pi/2.
struct SphereIsometric {
  double q, sine;
};

inline SphereIsometric SphereIsometricOf(double phi) {
  if (std::fabs(phi) < 1.25) {
    const double s = std::sin(phi);
    return {std::log((1 + s) / (1 - s)) / 2, s};
  }
  // Nearer to a pole 1 - s would cancel.
  const auto [s, c] = SinCosOf(phi / 2 + HalfPi / 2);
  return {std::log(s / c), (s - c) * (s + c)};
}

// Sine and cosine of the latitude with this isometric latitude on the sphere.
inline SinCos FromIsometric(double q) {
  const double u = std::exp(-std::fabs(q));
  const double d = 1 / (1 + u * u);
  return {std::copysign((1 - u * u) * d, q), 2 * u * d};
}

// The arc sine of a value that may exceed 1 by rounding only.
inline double ArcSine(double sine) {
  return std::asin(std::clamp(sine, -1.0, 1.0));
}

// The cosine of the double nearest to a right angle is about 6e-17, never 0.
inline constexpr double CosOfRightAngle = 6.1e-17;

// The cosine of the angle with this sine, from -pi/2 to pi/2.
inline double CosOfSine(double sine) {
  return std::max(std::sqrt((1 - sine) * (1 + sine)), CosOfRightAngle);
}

// sqrt(x^2 + y^2); std::hypot, which is slower, only where the squares leave the range of doubles.
inline double Hypotenuse(double x, double y) {
  const double r2 = x * x + y * y;
  return 1e-280 < r2 && r2 < 1e300 ? std::sqrt(r2) : std::hypot(x, y);
}

}  // namespace latigo
