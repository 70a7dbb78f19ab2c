// The factors of a grid at one point.
#pragma once

#include "converter.h"
#include "point_line.h"

namespace latigo::cli {

// Why a point has no factors.
inline constexpr const char* NoFactors = "no factors at a pole or where the projection has no values nearby";

// Add convergence, scale factors along meridian and parallel, area and angular distortion to the result; for a point
// with a height also the elevation factor and the combined factor. The height is above the ellipsoid, or with grid
// coordinates a grid height.
void FactorsOfPosition(const Converter& converter, const PointLine& point, Result& result);
void FactorsOfGrid(const Converter& converter, const PointLine& point, Result& result);

}  // namespace latigo::cli
