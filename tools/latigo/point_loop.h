// The loop of the commands that convert points, a line at a time.
#pragma once

#include <string>
#include <string_view>

#include "converter.h"
#include "point_line.h"

namespace latigo::cli {

// What the third field of a line is to a command: anything, or a number, which is carried through with the rest; a height,
// for which one value more is written; part of the point; part of the point that must be there.
enum class Third { Ignored, Carried, Height, Used, Needed };

struct PointCommand {
  Order order;
  int values;  // that are written, a height not counted
  Third third;
  void (*convert)(const Converter& converter, const PointLine& point, Result& result);
  Between between = {};
  PointLine (*parse)(std::string_view line, Order order, Separation separation) = ParsePointLine;
  std::string unit = {};  // a word after the first value
};

// Runs over all lines of all files of the options, in as many threads as they say, and keeps the order. Returns the exit
// status: 0, or 1 if a point failed. Throws UsageError.
int RunPoints(const PointOptions& options, const PointCommand& command);

}  // namespace latigo::cli
