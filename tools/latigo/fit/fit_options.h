// The options of the command fit.
#pragma once

#include <optional>
#include <string>

#include "commands.h"
#include "fit/similarity.h"
#include "table_options.h"

namespace latigo::cli {

// What a line of the control points has: x, y, X, Y, or two positions.
enum class PairsOf { LocalGrid, Geographic, Cartesian };

struct FitOptions : Options {
  std::string points = "-";  // the file of the control points
  TableOptions table;
  PairsOf pairs = PairsOf::LocalGrid;
  std::optional<double> fixedScale;
  fit::Reversed reversed = fit::Reversed::Auto;
  double sigma = 0;         // standard deviation of a coordinate of weight 1; 0 for unknown
  bool weights = false;     // a column has weights
  bool deviations = false;  // a column has standard deviations
  std::string name;         // of the section made; empty for that of the options with "_local" or "_datum"

  // 1 if each point has its own standard deviation.
  double Sigma() const { return deviations ? 1 : sigma; }
};

// Fits a section to control points, and prints it. Returns 0. Throws UsageError.
int RunFit(const FitOptions& options);

}  // namespace latigo::cli
