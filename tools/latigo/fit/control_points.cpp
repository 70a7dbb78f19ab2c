#include "fit/control_points.h"

#include <cmath>

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

std::vector<ControlPoint> ReadControlPoints(const FitOptions& options) {
  const std::vector<Wanted> wanted = WantedOf(options);
  const Table table = ReadTable(options.points, options.table, wanted);
  std::vector<std::string> faults = table.faults;
  std::vector<ControlPoint> points;
  const std::size_t coordinates = options.pairs == PairsOf::LocalGrid ? 4 : 6;
  for (const Record& record : table.records) {
    ControlPoint point;
    point.line = record.line;
    point.name = record.texts.back().empty() ? "line " + std::to_string(record.line) : record.texts.back();
    std::copy_n(record.values.begin(), coordinates, point.values.begin());
    if (options.weights || options.deviations) {
      const double given = record.values[coordinates];
      if (!(options.weights ? given >= 0 : given > 0 && std::isfinite(1 / (given * given)))) {
        faults.push_back(PlaceOf(options, point) + ": " + record.texts[coordinates] +
                         (options.weights ? ": a weight is 0 or positive" : ": a standard deviation is positive"));
      }
      point.weight = options.weights ? given : 1 / (given * given);
    }
    points.push_back(point);
  }
  for (const std::string& fault : faults) {
    Message(fault);
  }
  if (!faults.empty()) {
    throw UsageError("no fit, because of the lines above; a line that begins with # is left out");
  }
  return points;
}

}  // namespace latigo::cli
