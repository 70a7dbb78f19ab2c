#include "fit/control_points.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include "error_text.h"
#include "table_reader.h"
#include "visible.h"

namespace latigo::cli {

namespace {

constexpr Wanted PlaneValues[] = {
    {Role::Number, "x"}, {Role::Number, "y"}, {Role::Number, "local X"}, {Role::Number, "local Y"}};
constexpr Wanted CartesianValues[] = {{Role::Number, "X on WGS-84"},    {Role::Number, "Y on WGS-84"},
                                      {Role::Number, "Z on WGS-84"},    {Role::Number, "X on the datum"},
                                      {Role::Number, "Y on the datum"}, {Role::Number, "Z on the datum"}};
constexpr Wanted GeographicValues[] = {
    {Role::Latitude, "latitude on WGS-84"},      {Role::Longitude, "longitude on WGS-84"},
    {Role::Number, "height on WGS-84"},          {Role::Latitude, "latitude on the datum"},
    {Role::Longitude, "longitude on the datum"}, {Role::Number, "height on the datum"}};

// Beyond these a number of the file is a mistake, and squares of it lose all digits of the others.
constexpr double LargestCoordinate = 1e9;
constexpr double LeastDeviation = 1e-9;
constexpr double LargestDeviation = 1e9;
constexpr double LeastWeight = 1e-18;  // of these deviations
constexpr double LargestWeight = 1e18;

const char* const CoordinateFault = "a coordinate beyond 1e9";
const char* const WeightFault = "a weight is 0, or from 1e-18 to 1e18";
const char* const DeviationFault = "a standard deviation is from 1e-9 to 1e9";

bool IsDeviation(double value) {
  return LeastDeviation <= value && value <= LargestDeviation;
}

bool IsWeight(double value) {
  return value == 0 || (LeastWeight <= value && value <= LargestWeight);
}

// The decimals of a number as it is written; negative for 1e3.
int DecimalsOf(std::string_view text) {
  const std::size_t exponent = std::min(text.find_first_of("eE"), text.size());
  const std::size_t point = text.find_first_of(".,");
  int power = 0;
  if (exponent < text.size()) {
    const std::size_t begin = exponent + (text.substr(exponent + 1).starts_with('+') ? 2 : 1);
    std::from_chars(text.data() + begin, text.data() + text.size(), power);
  }
  return (point < exponent ? static_cast<int>(exponent - point - 1) : 0) - power;
}

// What the numbers of some columns are rounded to.
struct Rounded {
  int decimals = 0;   // the most of them, since programs leave out zeros at the end
  bool whole = true;  // all are whole numbers
};

Rounded RoundedIn(const std::vector<Record>& records, std::size_t first, std::size_t count) {
  Rounded rounded;
  for (const Record& record : records) {
    for (std::size_t i = first; i < first + count; ++i) {
      rounded.decimals = std::max(rounded.decimals, DecimalsOf(record.texts[i]));
      rounded.whole = rounded.whole && record.values[i] == std::round(record.values[i]);
    }
  }
  return rounded;
}

// Of a uniform distribution. Whole numbers beside numbers with more decimals are those of a design, and exact.
double DeviationOf(const Rounded& rounded, const Rounded& others) {
  return rounded.whole && others.decimals > rounded.decimals ? 0 : std::pow(10, -rounded.decimals) / std::sqrt(12);
}

std::vector<Wanted> WantedOf(const FitOptions& options) {
  std::vector<Wanted> wanted;
  switch (options.pairs) {
    case PairsOf::LocalGrid:
      wanted.assign(std::begin(PlaneValues), std::end(PlaneValues));
      break;
    case PairsOf::Cartesian:
      wanted.assign(std::begin(CartesianValues), std::end(CartesianValues));
      break;
    case PairsOf::Geographic:
      wanted.assign(std::begin(GeographicValues), std::end(GeographicValues));
      break;
  }
  if (options.weights) {
    wanted.push_back({Role::Number, "weight"});
  }
  if (options.deviations) {
    wanted.push_back({Role::Number, "standard deviation"});
  }
  wanted.push_back({Role::Text, "name", true});
  return wanted;
}

}  // namespace

std::string PlaceOf(const FitOptions& options, const ControlPoint& point) {
  return (options.points == "-" ? "standard input" : options.points) + ":" + std::to_string(point.line);
}

ControlPoints ReadControlPoints(const FitOptions& options) {
  const std::vector<Wanted> wanted = WantedOf(options);
  const Table table = ReadTable(options.points, options.table, wanted);
  std::vector<LineFault> faults = table.faults;
  ControlPoints result;
  const std::size_t coordinates = options.pairs == PairsOf::LocalGrid ? 4 : 6;
  for (const Record& record : table.records) {
    ControlPoint point;
    point.line = record.line;
    point.named = !record.texts.back().empty();
    point.name = point.named ? record.texts.back() : "line " + std::to_string(record.line);
    std::copy_n(record.values.begin(), coordinates, point.values.begin());
    const auto fail = [&](std::size_t value, const char* reason) {
      faults.push_back({point.line, PlaceOf(options, point) + ": " +
                                        FaultText({reason, table.columns[value], record.texts[value]})});
    };
    for (std::size_t i = 0; i < coordinates; ++i) {
      if (!(std::fabs(point.values[i]) <= LargestCoordinate)) {
        fail(i, CoordinateFault);
      }
    }
    if (options.weights || options.deviations) {
      const double given = record.values[coordinates];
      if (!(options.weights ? IsWeight(given) : IsDeviation(given))) {
        fail(coordinates, options.weights ? WeightFault : DeviationFault);
      }
      point.weight = options.weights ? given : 1 / (given * given);
    }
    result.points.push_back(point);
  }
  std::stable_sort(faults.begin(), faults.end(),
                   [](const LineFault& a, const LineFault& b) { return a.line < b.line; });
  for (const LineFault& fault : faults) {
    Message(fault.text);
  }
  if (!faults.empty()) {
    throw UsageError("no fit, because of the lines above; a line that begins with # is left out");
  }
  if (options.pairs != PairsOf::Geographic) {
    const Rounded from = RoundedIn(table.records, 0, coordinates / 2);
    const Rounded to = RoundedIn(table.records, coordinates / 2, coordinates / 2);
    result.fromRounding = DeviationOf(from, to);
    result.toRounding = DeviationOf(to, from);
  }
  return result;
}

}  // namespace latigo::cli
