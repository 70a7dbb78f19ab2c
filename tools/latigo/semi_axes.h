// The semi-axes of ellipsoids, metres.
#pragma once

#include <cmath>

namespace latigo::cli {

struct SemiAxes {
  double a, b;
};

constexpr double Wgs84Axis = 6378137;              // metres
constexpr double Wgs84Flattening = 298.257223563;  // reciprocal

constexpr SemiAxes SemiAxesOf(double a, double inverseFlattening) {
  return {a, a * (1 - 1 / inverseFlattening)};
}

// Whether the ellipsoids can be those of one datum, as WGS-84 and GRS-80 are.
inline bool Agree(const SemiAxes& one, const SemiAxes& other) {
  constexpr double Tolerance = 0.1;  // metres
  return std::fabs(one.a - other.a) <= Tolerance && std::fabs(one.b - other.b) <= Tolerance;
}

}  // namespace latigo::cli
