#include "fit/report.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <numbers>

#include "platform/c_numbers.h"
#include "platform/posix/profile_file.h"
#include "visible.h"

namespace latigo::cli {

namespace {

// The noncentrality of Baarda's test: an error of that many standard deviations is found with a probability of 80 %.
constexpr double FoundFrom = 4.13;

constexpr std::size_t NameWidth = 16;

// Limits of an area are parts of a degree, about 11 m, and its sides at least as long as the command map draws them.
constexpr long AreaParts = 10000;
constexpr long LeastSide = 2;

// Beyond this critical value only errors of many standard errors are found.
constexpr double Insensitive = 20;

std::string Padded(std::string text, std::size_t width) {
  // Continuation bytes of UTF-8 take no place.
  const auto shown = static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
  text.append(shown < width ? width - shown : 0, ' ');
  return text;
}

// An observation of the adjustment, by its point and axis.
struct Observed {
  std::size_t point;
  std::size_t axis;
};

Observed ObservedAt(const FitOutcome& outcome, int index) {
  const std::size_t perPoint = outcome.axes.size();
  const auto i = static_cast<std::size_t>(index);
  return {outcome.used[i / perPoint], i % perPoint};
}

std::string NameOf(const FitOutcome& outcome, const std::vector<ControlPoint>& points, const Observed& observed) {
  const ControlPoint& point = points[observed.point];
  return outcome.axes[observed.axis] + " of " + Visible(point.name) + " (line " + std::to_string(point.line) + ")";
}

// A line of a profile without its end.
std::string_view LineOf(std::string_view bytes, const ProfileLine& line) {
  std::string_view text = bytes.substr(line.begin, line.end - line.begin);
  while (text.ends_with('\n') || text.ends_with('\r')) {
    text.remove_suffix(1);
  }
  return text;
}

// The residuals of a point: each v, then each w and each r.
std::string RowOf(const FitOutcome& outcome, const ControlPoint& point, const PointResult& result) {
  std::string row =
      Formatted("  %6lu  ", static_cast<unsigned long>(point.line)) + Padded(Visible(point.name), NameWidth);
  const std::size_t axes = outcome.axes.size();
  for (std::size_t i = 0; i < axes; ++i) {
    row += Formatted(" %10.4f", Unsigned(result.v[i], 4));
  }
  if (point.weight == 0) {
    return row + "  check point" + (result.outside ? ", outside the area" : "") + "\n";
  }
  for (std::size_t i = 0; i < axes; ++i) {
    row += std::isnan(result.w[i]) ? "       -" : Formatted(" %7.2f", Unsigned(result.w[i], 2));
  }
  for (std::size_t i = 0; i < axes; ++i) {
    row += Formatted(" %5.2f", Unsigned(result.r[i], 2));
  }
  return row + "\n";
}

std::string HeadOf(const FitOutcome& outcome) {
  std::string head = "    line  " + Padded("point", NameWidth);
  for (const auto& [mark, format] : {std::pair("v", " %10s"), std::pair("w", " %7s"), std::pair("r", " %5s")}) {
    for (const std::string& axis : outcome.axes) {
      char text[32];
      std::snprintf(text, sizeof text, format, (std::string(mark) + axis.substr(0, 1)).c_str());
      head += text;
    }
  }
  return head + "\n";
}

std::string Summary(const FitOutcome& outcome) {
  const std::size_t used = outcome.used.size();
  const std::size_t checks = outcome.points.size() - used;
  return std::string(outcome.method) + ", " + std::to_string(used) + " control points" +
         (checks > 0 ? Formatted(", %lu check points", static_cast<unsigned long>(checks)) : "") +
         Formatted(", redundancy %d", outcome.adjusted.redundancy);
}

std::string StandardErrorText(const FitOutcome& outcome, const FitOptions& options) {
  if (outcome.adjusted.redundancy == 0) {
    return "standard error of unit weight: none, the points fit exactly";
  }
  std::string text = Formatted("standard error of unit weight %.4f", outcome.adjusted.s0);
  if (options.Sigma() > 0) {
    text += Formatted(", %.2f times the one given", outcome.adjusted.s0 / options.Sigma());
  }
  return text;
}

}  // namespace

std::string Formatted(const char* format, ...) {
  char text[400];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  return text;
}

double Unsigned(double value, int decimals) {
  return std::fabs(value) < 0.5 * std::pow(10, -decimals) ? 0 : value;
}

std::string Decimal(double value, int decimals) {
  std::string text = Formatted("%.*f", decimals, value);
  if (text.find('.') != std::string::npos) {
    text.erase(text.find_last_not_of('0') + 1);
    text.erase(text.back() == '.' ? text.size() - 1 : text.size());
  }
  return text == "-0" ? "0" : text;
}

double Reread(const std::string& text) {
  return CDouble(text.c_str());
}

void SetReliability(FitOutcome& outcome, std::size_t perPoint) {
  for (std::size_t k = 0; k < outcome.used.size(); ++k) {
    for (std::size_t axis = 0; axis < perPoint; ++axis) {
      const std::size_t i = k * perPoint + axis;
      outcome.points[outcome.used[k]].w[axis] = outcome.test.w[i];
      outcome.points[outcome.used[k]].r[axis] = outcome.adjusted.r(static_cast<Eigen::Index>(i));
    }
  }
}

std::string DeviationsAtPoints(const FitOutcome& outcome, const std::vector<ControlPoint>& points) {
  double low = std::numeric_limits<double>::infinity();
  double high = 0;
  for (const std::size_t i : outcome.used) {
    for (std::size_t axis = 0; axis < outcome.axes.size(); ++axis) {
      // Of an adjusted observation: s0 sqrt((1 - r) / p).
      const double leverage = std::max(1 - outcome.points[i].r[axis], 0.0);
      const double deviation = outcome.adjusted.s0 * std::sqrt(leverage / points[i].weight);
      low = std::min(low, deviation);
      high = std::max(high, deviation);
    }
  }
  return Formatted("%.4f to %.4f", low, high);
}

Limits LimitsOf(const std::vector<std::array<double, 2>>& positions) {
  constexpr double Degree = std::numbers::pi / 180;
  Limits limits{90, -90, 0, 0};
  const double first = positions.front()[1];
  for (const auto& [latitude, longitude] : positions) {
    const double east = std::remainder(longitude - first, 2 * std::numbers::pi) / Degree;
    limits = {std::min(limits.south, latitude / Degree), std::max(limits.north, latitude / Degree),
              std::min(limits.west, east), std::max(limits.east, east)};
  }
  limits.west += first / Degree;
  limits.east += first / Degree;
  return limits;
}

std::string AreaText(const Limits& limits) {
  constexpr long Turn = 360L * AreaParts;
  const auto text = [](long parts, char positive, char negative) {
    return Formatted("%.4f %c", static_cast<double>(std::labs(parts)) / AreaParts, parts < 0 ? negative : positive);
  };
  const auto wrapped = [](long parts) {
    return parts > Turn / 2 ? parts - Turn : parts < -Turn / 2 ? parts + Turn : parts;
  };
  const long south = std::lround(std::floor(limits.south * AreaParts));
  const long north = std::max(std::lround(std::ceil(limits.north * AreaParts)), south + LeastSide);
  const long west = std::lround(std::floor(limits.west * AreaParts));
  const long east = std::max(std::lround(std::ceil(limits.east * AreaParts)), west + LeastSide);
  return "Area: the control points; " + text(south, 'N', 'S') + " to " + text(north, 'N', 'S') + ", " +
         text(wrapped(west), 'E', 'W') + " to " + text(wrapped(east), 'E', 'W');
}

std::vector<std::string> LargestResidual(const FitOutcome& outcome, const FitOptions& options,
                                         const std::vector<ControlPoint>& points) {
  const fit::BlunderTest& test = outcome.test;
  if (test.largest < 0) {
    const bool bySigma = options.Sigma() == 0 && outcome.adjusted.redundancy > 0;
    return {std::string("no residual can be tested: the redundancy is too small") +
            (bySigma ? " without --sigma" : "")};
  }
  const char* const verdict = test.probable                  ? "a blunder"
                              : test.blunder                 ? "beyond the critical value"
                              : test.critical <= Insensitive ? "no blunder"
                                                             : "not decided";
  std::vector<std::string> lines = {
      Formatted("largest standardised residual: %.2f, ", Unsigned(test.w[static_cast<std::size_t>(test.largest)], 2)) +
      NameOf(outcome, points, ObservedAt(outcome, test.largest)) + ", " + verdict};
  if (options.Sigma() > 0) {
    lines.push_back(
        Formatted("critical value: %.2f at 0.1 %%, of Baarda's w with the standard deviation given", test.critical));
  } else {
    lines.push_back(Formatted("critical value: %.2f at 0.1 %%, of ", test.critical) +
                    (test.freedom > 0 ? Formatted("Student's distribution with %d degree%s of freedom;", test.freedom,
                                                  test.freedom > 1 ? "s" : "")
                                      : "the normal distribution;"));
    lines.emplace_back(test.apart ? "  the standard errors of heights and positions are estimated apart, without the "
                                    "observation under test"
                                  : "  the standard error is estimated without the observation under test");
  }
  if (test.criticalOfAll > test.critical) {
    lines.push_back(Formatted("  %.2f at 0.1 %% for all %d residuals together", test.criticalOfAll, test.tested));
  }
  if (!test.blunder && test.critical > Insensitive) {
    lines.push_back(Formatted(
        "  so few points show only errors of more than %.0f standard errors; --sigma tests better", test.critical));
  }
  return lines;
}

std::string BlunderWarning(const FitOutcome& outcome, const FitOptions& options,
                           const std::vector<ControlPoint>& points) {
  const Observed observed = ObservedAt(outcome, outcome.test.largest);
  std::string others;
  for (const int index : outcome.test.alternatives) {
    others += (others.empty() ? ", or else " : " or ") + NameOf(outcome, points, ObservedAt(outcome, index));
  }
  // One in a thousand exceeds the critical value by chance: of many that is no rare event.
  std::string chance;
  if (!outcome.test.probable) {
    chance = Formatted("; %d of %d residuals exceed the critical value, %.1f are expected to by chance",
                       outcome.test.beyond, outcome.test.tested, 0.001 * outcome.test.tested);
  }
  return PlaceOf(options, points[observed.point]) + ": " + outcome.axes[observed.axis] + " of " +
         points[observed.point].name + (outcome.test.probable ? " is probably" : " may be") +
         Formatted(" wrong by %.3f ", outcome.test.size) + outcome.unit + others +
         (others.empty() ? "" : ": the points do not show which") + chance +
         Formatted("; without it the standard error of unit weight is %.4f. # before the line leaves the point out",
                   outcome.test.without);
}

std::string ReportOf(const FitOutcome& outcome, const FitOptions& options, const std::vector<ControlPoint>& points) {
  std::string report = Visible(options.file + " [" + options.section + "]: ") + Summary(outcome) + "\n";
  for (const std::string& fact : outcome.facts) {
    report += "  " + fact + "\n";
  }
  report += "  " + StandardErrorText(outcome, options) + "\n";
  report += Formatted("  condition number of the equations %.4g\n", outcome.adjusted.condition);
  report += "Residuals: by the section less as given; w: standardised; r: redundancy numbers\n" + HeadOf(outcome);
  for (std::size_t i = 0; i < points.size(); ++i) {
    report += RowOf(outcome, points[i], outcome.points[i]);
  }
  for (const std::string& line : LargestResidual(outcome, options, points)) {
    report += "  " + line + "\n";
  }
  if (options.Sigma() > 0 && outcome.adjusted.redundancy > 0) {
    Eigen::Index weakest = 0;
    outcome.adjusted.r.minCoeff(&weakest);
    const Observed observed = ObservedAt(outcome, static_cast<int>(weakest));
    const double found =
        FoundFrom * options.Sigma() / std::sqrt(points[observed.point].weight * outcome.adjusted.r(weakest));
    const bool checked = !std::isnan(outcome.test.w[static_cast<std::size_t>(weakest)]);
    report += "  least checked: " + NameOf(outcome, points, observed) +
              (checked ? Formatted(", whose errors are found from %.3f on, with a probability of 80 %%\n", found)
                       : ", whose errors are not found\n");
  }
  for (const std::string& line : outcome.area) {
    report += line + "\n";
  }
  return report;
}

std::string SectionOf(const FitOutcome& outcome, const FitOptions& options, const std::vector<ControlPoint>& points,
                      const ConfigFile& config, const std::string& name) {
  std::string text =
      "[" + name + "]\n; " + Visible(options.section) + ", fitted by latigo fit: " + Summary(outcome) + "\n";
  text += "; " + StandardErrorText(outcome, options) + "\n";
  for (const std::string& line : LargestResidual(outcome, options, points)) {
    text += "; " + line + "\n";
  }
  for (const std::string& line : outcome.area) {
    text += "; " + line + "\n";
  }
  text += "; Residuals, by the section less as given:\n";
  for (std::size_t i = 0; i < points.size(); ++i) {
    text += ";  ";
    for (std::size_t axis = 0; axis < outcome.axes.size(); ++axis) {
      text += Formatted(" %s %.4f", outcome.axes[axis].c_str(), Unsigned(outcome.points[i].v[axis], 4));
    }
    text += "  " + Visible(points[i].name) + (points[i].weight == 0 ? ", a check point" : "") + "\n";
  }
  std::vector<std::string> replaced = {"dyndatum"};
  if (options.pairs == PairsOf::LocalGrid) {
    replaced = {"reversex", "reversey"};
  }
  for (const auto& [key, value] : outcome.keys) {
    replaced.push_back(ConfigFile::Folded(key));
  }
  text += KeysWithout(replaced, config.TextOf(options.section));
  for (const auto& [key, value] : outcome.keys) {
    text += std::string(key) + "=" + value + "\n";
  }
  return text;
}

std::string KeysWithout(std::vector<std::string> seen, std::string_view bytes) {
  std::string text;
  ProfileLines lines(bytes);
  ProfileLine line;
  // The first of several keys counts; an empty value is the same as none.
  while (lines.Next(line)) {
    if (line.is != ProfileLine::Is::Key || !line.value || line.value->empty()) {
      continue;
    }
    std::string folded = ConfigFile::Folded(line.name);
    if (std::find(seen.begin(), seen.end(), folded) == seen.end()) {
      seen.push_back(std::move(folded));
      text += std::string(LineOf(bytes, line)) + "\n";
    }
  }
  return text;
}

}  // namespace latigo::cli
