// The similarity transformation of a local grid: rotation and scale about an origin point, a shift, and mirrored axes.
// x, y are the projection's coordinates, X, Y the local ones; both grid units.
#pragma once

#include <latigo/latigo.h>

namespace latigo {

// Projection grid to local grid, in place.
void SimilarityForward(const Adjustment& adjustment, double& x, double& y);

// Local grid to projection grid, in place.
void SimilarityInverse(const Adjustment& adjustment, double& x, double& y);

}  // namespace latigo
