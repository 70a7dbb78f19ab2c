// The loop of the commands that convert points, line by line.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "converter.h"
#include "point_line.h"

namespace latigo::cli {

// The meaning of the third field of a line: any text, or a number, which is copied with the rest; a height, for which
// more values are written; perhaps a height, which is an error of the whole run; an optional part of the point; a
// required part of the point.
enum class Third { Ignored, Carried, Height, Undecided, Used, Needed };

struct PointCommand {
  Order order;
  int values;  // number of output values, without a height
  Third third;
  void (*convert)(const Converter& converter, const PointLine& point, Result& result);
  Between between = {};
  PointLine (*parse)(std::string_view line, Order order, Separation separation) = ParsePointLine;
  std::string unit = {};          // a word after the first value
  bool heightsAreStated = false;  // a third field is a height, also if it could be a name
  int heightValues = 1;           // number of further output values of a line with a height
  std::function<std::unique_ptr<const Converter>()> makeTarget = {};  // of convert: the second system
  std::vector<std::string_view> names = {};  // of the output columns, with the unit, those of a height at the end
};

// Converts all lines of all files of the options in the requested number of threads, and keeps their order. Returns the
// exit status: 0, or 1 if a point failed. Throws UsageError.
int RunPoints(const PointOptions& options, const PointCommand& command);

}  // namespace latigo::cli
