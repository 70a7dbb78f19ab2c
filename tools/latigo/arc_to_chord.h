// The arc-to-chord corrections of a line.
#pragma once

#include "converter.h"
#include "point_line.h"

namespace latigo::cli {

// Distance in grid units and azimuth of the great circle (distances.h), and the arc-to-chord corrections t - T at both
// ends, arc seconds: t is the bearing in the grid of the straight chord, T that of the image of the geodesic.
void DistanceAndArcToChord(const Converter& converter, const PointLine& line, Result& result);

}  // namespace latigo::cli
