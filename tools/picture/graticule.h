// What is drawn over a panel: lines of equal easting and northing, and points with names.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "panel.h"

namespace latigo::picture {

// Grid coordinates of a position; false if it has none.
using Forward = std::function<bool(Position, double& x, double& y)>;

// A whole number in groups of three digits.
std::string Grouped(double value);

struct GridLines {
  std::string svg;
  double stepX = 0, stepY = 0;  // between lines, grid units; 0 without lines
};

// About five lines of each coordinate over the area, with their values at the edges. Cells without coordinates, and
// those that a line crosses where coordinates jump, have gaps.
GridLines DrawGridLines(const Frame& frame, const Forward& forward);

struct NamedPoint {
  Position at;
  std::string name;
};

// Points as circles, with their names where these cover no other. Points outside the area are left out; returns their
// number.
std::size_t DrawPoints(const Frame& frame, const std::vector<NamedPoint>& points, std::string& svg);

}  // namespace latigo::picture
