// How the results of a command are written into the lines of a file with columns.
#pragma once

#include <string_view>
#include <vector>

#include "point_loop.h"
#include "table_layout.h"

namespace latigo::cli {

// The values that a command reads, in the order of --columns.
std::vector<Wanted> WantedOf(const PointCommand& command);

// The form of one file. A constant object, which any number of threads may use.
struct TableForm {
  // Throws UsageError if the command has no names for its results.
  TableForm(const PointCommand& command, Layout found, bool append);

  Layout layout;
  bool inPlace;                         // results replace the chosen columns; else they are appended
  std::vector<std::string_view> names;  // of the results
  std::vector<std::size_t> order;       // the places of the chosen columns by column
};

}  // namespace latigo::cli
