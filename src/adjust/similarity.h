// The similarity transformation of a local grid: rotation and scale about an origin, a translation, and mirrored axes.
// x, y are the projection's coordinates, X, Y the local ones; both grid units. With rotation r, scale s:
//     p = s sin r, q = s cos r
//     X = q (x - x0) + p (y - y0) + X0, Y = q (y - y0) - p (x - x0) + Y0, and mirrored axes change sign
// The inverse has the same form with -r, 1/s and the two origins exchanged.
#pragma once

#include <latigo/latigo.h>

namespace latigo {

class Similarity {
 public:
  Similarity() = default;  // no rotation, scale 1
  explicit Similarity(const Adjustment& adjustment);

  // Projection grid to local grid, and local grid to projection grid, in place, for the record of the constructor.
  void Forward(const Adjustment& adjustment, double& x, double& y) const;
  void Inverse(const Adjustment& adjustment, double& x, double& y) const;

 private:
  double p = 0, q = 1;        // s sin r, s cos r
  double invP = 0, invQ = 1;  // sin(-r) / s, cos(-r) / s
};

}  // namespace latigo
