// What is drawn over a panel: lines of equal easting and northing, and points with names.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "panel.h"

namespace latigo::picture {

// Grid coordinates of a position; false if it has none.
using Forward = std::function<bool(Position, double& x, double& y)>;

// A number with its whole part in groups of three digits, and as many decimals as its step requires.
std::string Grouped(double value, double step);

// Pixels.
struct Box {
  double left, top, right, bottom;
};

struct GridLines {
  std::string svg;
  double stepX = 0, stepY = 0;  // between lines, grid units; 0 without lines
  std::vector<Box> labels;      // the places of the values
};

struct NamedPoint {
  Position at;
  std::string name;
};

// About five lines of each coordinate over the area, with their values at the edges, each followed by the letter of its
// axis: "500 000 E", and none below a point. Cells without coordinates, and those that a line crosses where coordinates
// jump, have gaps.
GridLines DrawGridLines(const Frame& frame, const Forward& forward, char letterX, char letterY,
                        const std::vector<NamedPoint>& points);

struct DrawnPoints {
  std::string svg;
  std::vector<std::size_t> outside;  // points outside the area, which are left out
  std::size_t unnamed = 0;           // points whose names are left out, since there is no room
};

// Points as circles, with their names where these are inside the frame and cover no other text or point.
DrawnPoints DrawPoints(const Frame& frame, const std::vector<NamedPoint>& points, const std::vector<Box>& covered);

}  // namespace latigo::picture
