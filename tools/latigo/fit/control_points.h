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
  std::array<double, 6> values = {};  // x, y, X, Y; or two positions of three coordinates
  double weight = 1;                  // of each coordinate; 0 for a check point
};

// Reads the file of the options: for a local grid x, y, X, Y, else two positions; then, with --weights or --deviations,
// that number; then optionally a name. Throws UsageError if a line is neither a control point nor a comment, after a
// message for each such line.
std::vector<ControlPoint> ReadControlPoints(const FitOptions& options);

// "FILE:LINE"
std::string PlaceOf(const FitOptions& options, const ControlPoint& point);

}  // namespace latigo::cli
