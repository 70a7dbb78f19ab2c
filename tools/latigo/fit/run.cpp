// The command fit.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <map>

#include "coordinate_system.h"
#include "field_text.h"
#include "fit/outcome.h"
#include "fit/report.h"
#include "streams.h"
#include "visible.h"

namespace latigo::cli {

namespace {

// The section, read back by the library, differs from the fit by less: metres. With a datum each of two
// geographic positions, made from X, Y and Z by the library, has an error of up to 4e-5 m.
constexpr double LargestDifference = 1e-4;

std::string NameOf(const FitOptions& options) {
  return !options.name.empty() ? options.name
                               : options.section + (options.pairs == PairsOf::LocalGrid ? "_local" : "_datum");
}

void CheckName(const std::string& name) {
  if (name.find_first_of("[]") != std::string::npos || Visible(name) != name ||
      ConfigFile::Folded(name).size() != name.size()) {
    throw UsageError("--name: " + name + " cannot be the name of a section");
  }
}

// The section; for a datum without the datum grid, which the fit replaces, and whose file may be missing.
api::Geodesy OpenBase(const FitOptions& options, const ConfigFile& config) {
  const auto withoutDatum = [&] {
    return "[" + options.section + "]\n" + KeysWithout({"dyndatum"}, config.TextOf(options.section));
  };
  Opened base = options.pairs == PairsOf::LocalGrid ? OpenSection(options.file, options.section)
                                                    : TemporaryFolder().Open(withoutDatum(), options.section);
  // A section whose geoid grid is missing has an object.
  if (base.code != 0) {
    throw UsageError(options.file + " [" + options.section + "]: " + base.explanation);
  }
  return std::move(base.object);
}

// Copies of a line would count as independent observations.
void WarnOfCopies(FitOutcome& outcome, const FitOptions& options, const std::vector<ControlPoint>& points) {
  std::map<std::array<double, 6>, std::size_t> lines;
  std::string first;
  std::size_t count = 0;
  for (const std::size_t i : outcome.used) {
    const auto [original, isNew] = lines.emplace(points[i].values, points[i].line);
    if (!isNew && count++ == 0) {
      first = PlaceOf(options, points[i]) + ": the coordinates are those of line " + std::to_string(original->second);
    }
  }
  if (count > 0) {
    outcome.warnings.push_back(first +
                               (count > 1 ? ", and " + std::to_string(count - 1) + " more lines are copies" : "") +
                               ": copies make standard deviations too small. # before a line leaves it out");
  }
}

// Residuals of rounding would be blunders.
void WarnOfSigma(FitOutcome& outcome, const FitOptions& options, const std::vector<ControlPoint>& points) {
  double least = std::numeric_limits<double>::infinity();
  for (const std::size_t i : outcome.used) {
    least = std::min(least, options.Sigma() / std::sqrt(points[i].weight));
  }
  if (options.Sigma() > 0 && least < outcome.rounding) {
    outcome.warnings.push_back(
        Formatted("a standard deviation of %.2g is smaller than %.2g, that of the rounding of the "
                  "coordinates as they are written: what seems a blunder may be rounding",
                  least, outcome.rounding));
  }
}

// The name is the word after the coordinates, so of a file with more columns it can be a value. Points can be numbered
// as 12.3, with one decimal.
void WarnOfNames(FitOutcome& outcome, const FitOptions& options, const std::vector<ControlPoint>& points) {
  const auto isValue = [](const ControlPoint& point) {
    const std::size_t mark = point.name.find_first_of(".,");
    return point.named && LooksLikeNumber(point.name) && mark != std::string::npos && point.name.size() > mark + 2;
  };
  if (std::all_of(points.begin(), points.end(), isValue)) {
    outcome.warnings.push_back(PlaceOf(options, points.front()) + ": the name of the point is " + points.front().name +
                               ", and all names are numbers with decimals: are the columns right?");
  }
}

}  // namespace

int RunFit(const FitOptions& options) {
  CheckSection(options);
  const std::string name = NameOf(options);
  CheckName(name);
  const ConfigFile config(options.file);
  const api::Geodesy base = OpenBase(options, config);
  const ControlPoints given = ReadControlPoints(options);
  const std::vector<ControlPoint>& points = given.points;
  const bool local = options.pairs == PairsOf::LocalGrid;
  FitOutcome outcome = (local ? FitLocalGrid : FitDatum)(options, given, base.Handle());
  if (config.Has(name)) {
    outcome.warnings.push_back(options.file + " has a section " + name +
                               " already, and of two in one file the first counts");
  }
  WarnOfCopies(outcome, options, points);
  WarnOfSigma(outcome, options, points);
  WarnOfNames(outcome, options, points);
  if (outcome.test.blunder) {
    outcome.warnings.push_back(BlunderWarning(outcome, options, points));
  }

  const std::string section = SectionOf(outcome, options, points, config, name);
  const Opened made = TemporaryFolder().Open(section, name);
  if (made.code != 0) {
    throw UsageError("the section made does not open: " + made.explanation);
  }
  const double difference = local ? DifferenceOfLocalGrid(outcome, points, base.Handle(), made.object.Handle())
                                  : DifferenceOfDatum(outcome, options, points, made.object.Handle());
  if (!(difference * outcome.metresPerUnit <= LargestDifference)) {
    throw UsageError(Formatted("the section made converts a control point %.3g %s from where it should be", difference,
                               outcome.unit.c_str()));
  }

  std::fputs(ReportOf(outcome, options, points).c_str(), stderr);
  std::fputs("The section, opened by the library, converts the points so.\n", stderr);
  for (const std::string& warning : outcome.warnings) {
    Message("warning: " + warning);
  }
  if (options.strict && !outcome.warnings.empty()) {
    throw UsageError("no section, because of the warnings");
  }
  Print(section);
  return 0;
}

}  // namespace latigo::cli
