// The similarity transformation of a local grid, fitted to control points.
//
// With p = s sin r and q = s cos r:  X = +-(q dx + p dy + X0),  Y = +-(q dy - p dx + Y0),  dx = x - x0, dy = y - y0.
// A positive r rotates the axes of the local grid anticlockwise. This is adjustment type 1 of the library.
#pragma once

#include <optional>
#include <vector>

#include "least_squares.h"

namespace latigo::fit {

// A control point: x and y of the projection's grid, X and Y of the local one, in grid units.
struct PlanePair {
  double x = 0, y = 0;
  double localX = 0, localY = 0;
  double weight = 1;  // of each of X and Y; 0 for a check point, which takes no part
};

struct Similarity {
  double originX = 0, originY = 0;  // x0, y0
  double rotation = 0;              // r, degrees
  double scale = 1;                 // s
  double localX = 0, localY = 0;    // X0, Y0
  bool reverseX = false, reverseY = false;

  // The local coordinates of a point of the projection's grid.
  void Map(double& x, double& y) const;
};

enum class Reversed { Auto, None, X, Y, Both };

struct SimilarityOptions {
  std::optional<double> fixedScale;
  Reversed reversed = Reversed::Auto;  // Auto: both handednesses are tried
  double sigma = 0;                    // of a local coordinate of weight 1, known beforehand; 0 for unknown
  double gridRounding = 0;             // standard deviations of the rounding of the coordinates: of x and y,
  double localRounding = 0;            // of X and Y
  double metresPerUnit = 1;
};

struct SimilarityFit {
  const char* refused = nullptr;  // why there is no solution; nothing else is set then
  Similarity similarity;
  double rotationDeviation = 0, scaleDeviation = 0;  // standard deviations: degrees, none,
  double localXDeviation = 0, localYDeviation = 0;   // grid units
  double pointDeviation = 0;                         // of X or Y of a converted point, at the centre of the points
  double growth = 0;                                 // of rotation and scale, each, for a distance of 1 from the centre
  double spread = 0;                                 // root mean square distance of the points from the centre
  double localSpread = 0;                            // that of X and Y, from their mean
  double misfit = 0;  // standard deviation of a local coordinate by the residuals, whatever the weights are
  Adjusted adjusted;  // observations: X and Y of each point with a weight
  BlunderTest test;
  double otherHand = 0;    // standard error of unit weight with the other handedness
  bool handKnown = false;  // the points show which of the two it is
};

SimilarityFit FitSimilarity(const std::vector<PlanePair>& pairs, const SimilarityOptions& options);

}  // namespace latigo::fit
