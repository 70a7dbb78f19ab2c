// The loop of the commands that convert points, a line at a time.
#pragma once

#include <string>
#include <string_view>

#include "converter.h"
#include "point_line.h"

namespace latigo::cli {

// What the third number of a line is to a command: carried through with the rest, a height that gives one value more,
// part of the point, or part of the point that must be there.
enum class Third { Carried, Height, Used, Needed };

struct PointCommand {
  Order order;
  int values;  // that come out, a height not counted
  Third third;
  void (*convert)(const Converter& converter, const PointLine& point, Result& result);
  PointLine (*parse)(std::string_view line, Order order, Separation separation) = ParsePointLine;
  std::string unit = {};  // a word behind the first value
};

// Runs over all lines of all files of the options, in so many threads as they say, and keeps the order. Gives the exit
// status: 0, or 1 if a point failed. Throws UsageError.
int RunPoints(const Options& options, const PointCommand& command);

}  // namespace latigo::cli
