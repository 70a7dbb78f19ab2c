#include "records.h"

#include <cmath>
#include <limits>

namespace same_digits {

namespace {

constexpr double Pi = 3.141592653589793;
constexpr double HalfPi = Pi / 2;

// Semi-major axis and 1/f: ordinary ellipsoids, nearly a sphere, strongly flattened, prolate.
constexpr double Shapes[][2] = {{6378137, 298.257223563},
                                {6378206.4, 294.9786982},
                                {6377397.155, 299.1528128},
                                {6378249.145, 293.465},
                                {6377563.396, 299.3249646},
                                {6377276.345, 300.8017},
                                {6378137, 1e9},
                                {6378137, 20},
                                {6378137, -300}};
constexpr double Units[] = {1, 0.3048, 0.3048006096, 20.11678249};

double OneOf(Random& random, std::initializer_list<double> values) {
  return values.begin()[std::uniform_int_distribution<std::size_t>(0, values.size() - 1)(random)];
}

void AddNeighbours(std::vector<double>& values, double value) {
  constexpr double Infinity = std::numeric_limits<double>::infinity();
  values.insert(values.end(), {value, std::nextafter(value, -Infinity), std::nextafter(value, Infinity), -value});
}

}  // namespace

double Uniform(Random& random, double low, double high) {
  return std::uniform_real_distribution<double>(low, high)(random);
}

GeodesyParams RandomRecord(Random& random, std::int32_t kind) {
  const auto& shape = Shapes[random() % std::size(Shapes)];
  const bool special = random() % 4 == 0;
  GeodesyParams params{};
  params.SemiMajorAxis = shape[0];
  params.InvFlattening = shape[1];
  params.Kind = kind;
  params.Unit = Units[random() % std::size(Units)];
  params.ScaleFactor = special ? 0 : Uniform(random, 0.99, 1.01);
  params.CentralMeridian = special ? OneOf(random, {0, Pi, -Pi, HalfPi}) : Uniform(random, -Pi, Pi);
  params.RefLatitude = special ? OneOf(random, {0, HalfPi, -HalfPi, 0.9, -0.9}) : Uniform(random, -1.5, 1.5);
  params.NorthParallel = Uniform(random, -1.5, 1.5);
  params.SouthParallel = special ? params.NorthParallel : Uniform(random, -1.5, 1.5);
  params.SkewAzimuth = special ? OneOf(random, {0, HalfPi, -HalfPi, 0.5}) : Uniform(random, -Pi, Pi);
  params.FalseEasting = special ? 0 : Uniform(random, -1e6, 1e6);
  params.FalseNorthing = special ? 0 : Uniform(random, -1e6, 1e6);
  return params;
}

Specials SpecialsOf(const GeodesyParams& params) {
  using Limits = std::numeric_limits<double>;
  const std::vector<double> numbers = {0.0,
                                       -0.0,
                                       Limits::denorm_min(),
                                       Limits::min(),
                                       1e-300,
                                       1e-9,
                                       1e18,
                                       Limits::max(),
                                       Limits::infinity(),
                                       -Limits::infinity(),
                                       Limits::quiet_NaN()};
  Specials specials{numbers, numbers, numbers, numbers};
  for (const double latitude : {params.RefLatitude, params.NorthParallel, params.SouthParallel, HalfPi, Pi / 4, 1.2}) {
    AddNeighbours(specials.latitudes, latitude);
  }
  for (const double turn : {0.0, HalfPi, Pi, 2 * Pi, 3 * Pi, 1e-8, 0.05}) {
    AddNeighbours(specials.longitudes, params.CentralMeridian + turn);
    AddNeighbours(specials.longitudes, params.CentralMeridian - turn);
  }
  const double radius = params.SemiMajorAxis / params.Unit;
  for (const double distance : {0.0, 1e-8, 1.0, 1e5, HalfPi * radius, Pi * radius, 2 * radius, 10 * radius}) {
    AddNeighbours(specials.x, params.FalseEasting + distance);
    AddNeighbours(specials.x, params.FalseEasting - distance);
    AddNeighbours(specials.y, params.FalseNorthing + distance);
    AddNeighbours(specials.y, params.FalseNorthing - distance);
  }
  return specials;
}

}  // namespace same_digits
