// Distances between two positions: the operations with the steps and the doubts of the program.
#pragma once

#include "converter.h"
#include "point_line.h"

namespace latigo::cli {

// Both positions of a line.
struct Ends {
  Position from, to;
};

// Reads both positions of a line, on the section's datum; false if one of them fails.
bool ReadEnds(const Converter& converter, const PointLine& line, Ends& ends, Result& result);

// Distance in grid units and azimuth of the great circle, doubtful where the error of the mid-latitude formulas can
// exceed two centimetres; of the rhumb line, doubtful where rounding can.
void DistanceOfGreatCircle(const Converter& converter, const PointLine& line, Result& result);
void DistanceOfRhumbLine(const Converter& converter, const PointLine& line, Result& result);

}  // namespace latigo::cli
