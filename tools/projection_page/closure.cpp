#include "closure.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numbers>
#include <set>
#include <stdexcept>

namespace latigo::page {

namespace {

constexpr double Degree = std::numbers::pi / 180;

// The columns of the table, degrees.
constexpr double Distances[] = {0.5, 1, 2, 3, 5, 10, 15, 30, 60, 80};

// Between two distances: number of lines, and of points on each.
constexpr int Lines = 40;
constexpr int PointsOnLine = 180;

// Larger errors are not meaningful: the inverse is lost. Millimetres.
constexpr double Lost = 1e6;

// Distance of the lines' ends from the poles, degrees.
constexpr double LastLatitude = 89.99;

constexpr double Infinity = std::numeric_limits<double>::infinity();

// The largest error of several positions, millimetres, and the codes of those that failed.
struct Largest {
  double error = 0;
  std::set<std::int32_t> codes;
};

// A position at a distance in degrees from the system's point or line, on the sphere. `turn` from 0 to 1 moves it
// around the point, or along one side of the line and then the other.
Position At(const System& system, double distance, double turn) {
  const auto& [south, north, west, east] = system.area;
  const double side = turn < 0.5 ? distance : -distance;
  const double along = std::fmod(2 * turn, 1);
  if (system.from == From::Meridian) {
    return {south + (north - south) * along, system.origin.longitude + side};
  }
  if (system.from == From::Parallel) {
    return {system.origin.latitude + side, west + (east - west) * along};
  }
  const double phi0 = system.origin.latitude * Degree;
  const double c = distance * Degree;
  const double Az = turn * 2 * std::numbers::pi;
  const double phi = std::asin(std::sin(phi0) * std::cos(c) + std::cos(phi0) * std::sin(c) * std::cos(Az));
  const double dLambda = std::atan2(std::sin(Az) * std::sin(c),
                                    std::cos(phi0) * std::cos(c) - std::sin(phi0) * std::sin(c) * std::cos(Az));
  return {phi / Degree, system.origin.longitude + dLambda / Degree};
}

// Adds the positions between two distances.
void Measure(const System& system, const Grid& grid, double from, double to, Largest& largest) {
  for (int line = 1; line <= Lines; ++line) {
    const double distance = from + (to - from) * line / Lines;
    for (int point = 0; point < PointsOnLine; ++point) {
      Position position = At(system, distance, static_cast<double>(point) / PointsOnLine);
      position.latitude = std::clamp(position.latitude, -LastLatitude, LastLatitude);
      const auto [error, code] = grid.Measured().Closure(position);
      if (code > 0) {
        largest.codes.insert(code);
      } else {
        largest.error = std::max(largest.error, code == picture::NotANumber ? Infinity : error);
      }
    }
  }
}

// Two digits, at most three decimals of a millimetre, rounded up: rounding errors are not shown.
std::string Length(double mm) {
  if (mm < 0.001) {
    return "< 0.001 mm";
  }
  if (mm > Lost) {
    return "lost";
  }
  const double step = std::max(0.001, std::pow(10, std::floor(std::log10(mm)) - 1));
  const double rounded = std::ceil(mm / step) * step;
  char text[24];
  std::snprintf(text, sizeof text, "%.3g %s", rounded < 1000 ? rounded : rounded / 1000, rounded < 1000 ? "mm" : "m");
  return text;
}

std::string InWords(const Largest& largest) {
  std::string words = Length(largest.error);
  for (const std::int32_t code : largest.codes) {
    words += ", code " + std::to_string(code);
  }
  return words;
}

api::Geodesy Make(const System& system) {
  GeodesyParams params = system.params;
  params.CentralMeridian *= Degree;
  params.RefLatitude *= Degree;
  params.NorthParallel *= Degree;
  params.SouthParallel *= Degree;
  params.SkewAzimuth *= Degree;
  api::Result<api::Geodesy> made = api::Geodesy::CreateGeodesy(params);
  if (!made) {
    throw std::runtime_error(std::string(system.name) + ": " + made.Text());
  }
  return std::move(made.value);
}

}  // namespace

Grid::Grid(const System& system) : object_(Make(system)), measures_(object_.Handle()) {}

std::string Grid::Code() const {
  return object_.ProjectionCode().value;
}

std::string ClosureTable() {
  std::string table = "| Kind | Measured on | Degrees from |";
  std::string rule = "|---|---|---|";
  for (const double distance : Distances) {
    char heading[24];
    std::snprintf(heading, sizeof heading, " %g° |", distance);
    table += heading;
    rule += "---|";
  }
  table += "\n" + rule + "\n";
  for (const System& system : Systems) {
    const Grid grid(system);
    table += "| " + std::to_string(system.params.Kind) + " " + grid.Code() + " | " + system.name + " | " +
             system.originInWords + " |";
    Largest largest;
    double from = 0;
    for (const double to : Distances) {
      Measure(system, grid, from, to, largest);
      table += " " + InWords(largest) + " |";
      from = to;
    }
    table += "\n";
  }
  return table;
}

}  // namespace latigo::page
