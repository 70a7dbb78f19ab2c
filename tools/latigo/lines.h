// Lines between two positions: the operations with the steps and the doubts of the program.
#pragma once

#include "converter.h"
#include "point_line.h"

namespace latigo::cli {

// Distance in grid units and azimuth of the great circle, doubtful where the error of the mid-latitude formulas can
// exceed two centimetres; of the rhumb line, doubtful where rounding can.
void DistanceOfGreatCircle(const Converter& converter, const PointLine& line, Result& result);
void DistanceOfRhumbLine(const Converter& converter, const PointLine& line, Result& result);

// The same of the great circle, and the arc-to-chord corrections t - T at both ends, arc seconds: t is the bearing in
// the grid of the straight chord, T that of the image of the geodesic.
void DistanceAndArcToChord(const Converter& converter, const PointLine& line, Result& result);

}  // namespace latigo::cli
