// The convex hull of the control points: the area in which a fitted grid interpolates.
#pragma once

#include <vector>

namespace latigo::fit {

struct PlanePoint {
  double x = 0, y = 0;
};

// The corners of the hull, anticlockwise; of points on a line its two ends.
std::vector<PlanePoint> ConvexHull(std::vector<PlanePoint> points);

// The area in squares of the unit; 0 for less than three corners.
double AreaOf(const std::vector<PlanePoint>& hull);

// Whether a point is in the hull or on its edge.
bool Contains(const std::vector<PlanePoint>& hull, PlanePoint point);

}  // namespace latigo::fit
