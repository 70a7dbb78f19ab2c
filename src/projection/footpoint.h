// The footpoint latitude as a series in the rectifying latitude, with the third flattening n. Helmert; Snyder, USGS
// PP 1395, (3-26).
#pragma once

#include <array>

namespace latigo {

// Four terms of a series: coefficients of sin 2u, sin 4u, sin 6u, sin 8u.
using FourTerms = std::array<double, 4>;

inline FourTerms FootpointSeries(double n) {
  const double n2 = n * n;
  const double n3 = n2 * n;
  const double n4 = n2 * n2;
  return {3.0 / 2 * n + -27.0 / 32 * n3,     // B2
          21.0 / 16 * n2 + -55.0 / 32 * n4,  // B4
          151.0 / 96 * n3,                   // B6
          1097.0 / 512 * n4};                // B8
}

}  // namespace latigo
