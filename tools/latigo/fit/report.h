// The report of a fit, and the section made.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "config_check.h"
#include "fit/outcome.h"

namespace latigo::cli {

// The report for standard error, with the residuals of every point.
std::string ReportOf(const FitOutcome& outcome, const FitOptions& options, const std::vector<ControlPoint>& points);

// The largest standardised residual, and what it is compared with.
std::vector<std::string> LargestResidual(const FitOutcome& outcome, const FitOptions& options,
                                         const std::vector<ControlPoint>& points);

// Place, point and size of the blunder that the test found.
std::string BlunderWarning(const FitOutcome& outcome, const FitOptions& options,
                           const std::vector<ControlPoint>& points);

// A complete section: the keys of the one fitted, without those that the fit replaces, and the keys of the outcome.
std::string SectionOf(const FitOutcome& outcome, const FitOptions& options, const std::vector<ControlPoint>& points,
                      const ConfigFile& config, const std::string& name);

// The lines of a section's keys that have a value, each key once and none of those that were seen, in lower case.
std::string KeysWithout(std::vector<std::string> seen, std::string_view bytes);

}  // namespace latigo::cli
