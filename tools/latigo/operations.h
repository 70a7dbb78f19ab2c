// The operations of the commands on one point. Angles are degrees; each adds its values to the result, or the failure.
#pragma once

#include "converter.h"
#include "point_line.h"

namespace latigo::cli {

// Position and height to grid coordinates and grid height, and the reverse.
void Forward(const Converter& converter, const PointLine& point, Result& result);
void Inverse(const Converter& converter, const PointLine& point, Result& result);

// The point scale factor, at coordinates of the projection or at a position.
void ScaleOfGrid(const Converter& converter, const PointLine& point, Result& result);
void ScaleOfPosition(const Converter& converter, const PointLine& point, Result& result);

void GeoidUndulation(const Converter& converter, const PointLine& point, Result& result);

// Position and ellipsoidal height to earth-centred coordinates, and the reverse.
void ToCartesian(const Converter& converter, const PointLine& point, Result& result);
void FromCartesian(const Converter& converter, const PointLine& point, Result& result);

// Distance in grid units and azimuth between two positions.
void GreatCircle(const Converter& converter, const PointLine& line, Result& result);
void RhumbLine(const Converter& converter, const PointLine& line, Result& result);

// Why the values of a result are not one: not finite, or a latitude beyond the pole; else null.
const char* FaultOf(const Result& result);

}  // namespace latigo::cli
