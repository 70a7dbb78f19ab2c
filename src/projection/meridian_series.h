// The meridian arc and its inverse, the footpoint latitude, as series in multiple angles with the third flattening n.
// The arc M is Helmert's: M / G = phi + A2 sin 2phi + A4 sin 4phi + A6 sin 6phi + A8 sin 8phi. The inverse is Snyder,
// USGS PP 1395, (3-26), whose e1 (3-24) is n: phi = mu + B2 sin 2mu + B4 sin 4mu + B6 sin 6mu + B8 sin 8mu, mu = M / G.
#pragma once

#include "math/angles.h"

namespace latigo {

// clang-format off
inline constexpr double SeriesTable[] = {
    // the arc
      -3.0 / 2,     9.0 / 16,   // T0, T1: n, n^3 in A2
      15.0 / 16,  -15.0 / 32,   // T2, T3: n^2, n^4 in A4
     -35.0 / 48,                // T4: n^3 in A6
     315.0 / 512,               // T5: n^4 in A8
    // the footpoint latitude
       3.0 / 2,   -27.0 / 32,   // T6, T7: n, n^3 in B2
      21.0 / 16,  -55.0 / 32,   // T8, T9: n^2, n^4 in B4
     151.0 / 96,                // T10: n^3 in B6
    1097.0 / 512,               // T11: n^4 in B8
};
// clang-format on

// Either half of the table, for an ellipsoid: coefficients of sin 2u, sin 4u, sin 6u, sin 8u.
inline FourTerms SeriesOf(const double* T, double n) {
  const double n2 = n * n;
  return {T[0] * n + T[1] * n2 * n, T[2] * n2 + T[3] * n2 * n2, T[4] * n2 * n, T[5] * n2 * n2};
}
inline FourTerms ArcSeries(double n) {
  return SeriesOf(SeriesTable, n);
}
inline FourTerms FootpointSeries(double n) {
  return SeriesOf(SeriesTable + 6, n);
}

}  // namespace latigo
