// The control points of a file.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "fit/fit_options.h"

namespace latigo::cli {

struct ControlPoint {
  std::size_t line = 0;
  std::string name;                   // of the point; its line if the file has none
  bool named = false;                 // the file has it
  std::array<double, 6> values = {};  // x, y, X, Y; or two positions of three coordinates
  double weight = 1;                  // of each coordinate; 0 for a check point
};

struct ControlPoints {
  std::vector<ControlPoint> points;
  // Standard deviations of the rounding of the numbers as they are written, in their units: of x and y, and of X and Y,
  // or of each position's coordinates; 0 for latitude, longitude and height.
  double fromRounding = 0, toRounding = 0;
};

// Reads the file of the options: for a local grid x, y, X, Y, else two positions; then, with --weights or --deviations,
// that number; then optionally a name. Throws UsageError if a line is neither a control point nor a comment, after a
// message for each such line. So it does if a coordinate, weight or standard deviation is too large or too small.
ControlPoints ReadControlPoints(const FitOptions& options);

// "FILE:LINE"
std::string PlaceOf(const FitOptions& options, const ControlPoint& point);

}  // namespace latigo::cli
