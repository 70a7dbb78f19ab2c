// The seven parameters from WGS-84 to a section's datum, fitted to control points.
#include <latigo/latigo.hpp>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "doubts.h"
#include "error_text.h"
#include "fit/outcome.h"
#include "fit/seven_parameters.h"

namespace latigo::cli {

namespace {

using Eigen::Vector3d;

// Decimals of the section's values: on the earth they are good for a micrometre.
constexpr int MetreDecimals = 6;
constexpr int PpmDecimals = 9;
constexpr int SecondDecimals = 9;
// Rotations for which the transformation, linear in them, scales by more than 5e-9, 3 cm on the earth: arc seconds.
constexpr double LargeRotation = 20;
// Beyond the shifts of real datums, of which the largest are about 1100 m, and their scales, in parts per million: of
// two positions in the wrong order the difference of the ellipsoids doubles, 79 ppm for the International Ellipsoid.
constexpr double LargestShift = 1500;
constexpr double LargestPpm = 60;
// Points that are nearly on a line: their rotation about it is poorly determined.
constexpr double SmallFlatness = 0.02;

constexpr GeodesyParams Wgs84 = {6378137, 298.257223563, LATIGO_KIND_TRANSVERSE_MERCATOR, 1, 1, 0, 0, 0, 0, 0, 0, 0};

Vector3d Cartesian(GeodesyHandle handle, double latitude, double longitude, double h) {
  Vector3d at;
  GeoECEF(handle, &at.x(), &at.y(), &at.z(), latitude, longitude, h);
  return at;
}

struct Geographic {
  double latitude, longitude, h;  // radians, metres
};

Geographic PositionOf(GeodesyHandle handle, const Vector3d& at) {
  Geographic position{};
  ECEFGeo(handle, at.x(), at.y(), at.z(), &position.latitude, &position.longitude, &position.h);
  return position;
}

std::vector<fit::SpatialPair> PairsFrom(const FitOptions& options, const std::vector<ControlPoint>& points,
                                        GeodesyHandle wgs84, GeodesyHandle base) {
  std::vector<fit::SpatialPair> pairs;
  for (const ControlPoint& point : points) {
    const auto& v = point.values;
    fit::SpatialPair pair;
    pair.weight = point.weight;
    if (options.pairs == PairsOf::Cartesian) {
      pair.from = {v[0], v[1], v[2]};
      pair.to = {v[3], v[4], v[5]};
    } else {
      pair.from = Cartesian(wgs84, v[0] * RadiansPerDegree, v[1] * RadiansPerDegree, v[2]);
      pair.to = Cartesian(base, v[3] * RadiansPerDegree, v[4] * RadiansPerDegree, v[5]);
      pair.axes = fit::NorthEastUp(v[3] * RadiansPerDegree, v[4] * RadiansPerDegree);
    }
    pairs.push_back(pair);
  }
  return pairs;
}

void SetKeys(FitOutcome& outcome, const fit::SevenParameters& p) {
  outcome.keys = {
      {"DeltaX", Decimal(p.delta.x(), MetreDecimals)},      {"DeltaY", Decimal(p.delta.y(), MetreDecimals)},
      {"DeltaZ", Decimal(p.delta.z(), MetreDecimals)},      {"DeltaScale", Decimal(p.ppm, PpmDecimals)},
      {"DeltaRX", Decimal(p.rotation.x(), SecondDecimals)}, {"DeltaRY", Decimal(p.rotation.y(), SecondDecimals)},
      {"DeltaRZ", Decimal(p.rotation.z(), SecondDecimals)}};
}

fit::SevenParameters Written(const FitOutcome& outcome) {
  const auto number = [&](std::size_t i) { return Reread(outcome.keys[i].second); };
  return {{number(0), number(1), number(2)}, number(3), {number(4), number(5), number(6)}};
}

void Describe(FitOutcome& outcome, const fit::SevenParametersFit& fitted, const FitOptions& options,
              const std::vector<ControlPoint>& points) {
  const fit::SevenParameters& p = fitted.parameters;
  const fit::SevenParameters& d = fitted.deviations;
  auto& facts = outcome.facts;
  const char* const names[] = {"X", "Y", "Z"};
  facts.emplace_back(
      "from WGS-84 to the section's datum, coordinate frame rotation (reverse the signs of the rotations for");
  facts.emplace_back("position vector rotation)");
  for (int i = 0; i < 3; ++i) {
    facts.push_back(Formatted("Delta%s          %.4f m  standard deviation %.4f; at the centre of the points %.4f",
                              names[i], p.delta(i), d.delta(i), fitted.shiftDeviation(i)));
  }
  facts.push_back(Formatted("DeltaScale      %.6f ppm", p.ppm) +
                  (options.fixedScale ? std::string("  fixed") : Formatted("  standard deviation %.6f", d.ppm)));
  for (int i = 0; i < 3; ++i) {
    facts.push_back(Formatted("DeltaR%s         %.6f arc seconds  standard deviation %.6f", names[i], p.rotation(i),
                              d.rotation(i)));
  }
  facts.push_back("points          converted with standard deviations of " + DeviationsAtPoints(outcome, points) +
                  " m");
}

void DescribeArea(FitOutcome& outcome, const std::vector<Geographic>& positions) {
  const auto degrees = [](double radians) { return radians / RadiansPerDegree; };
  Geographic low = positions.front();
  Geographic high = low;
  for (const Geographic& position : positions) {
    // Longitudes are compared with the first one, so that an area may contain the 180th meridian.
    const double longitude = positions.front().longitude +
                             std::remainder(position.longitude - positions.front().longitude, 2 * std::numbers::pi);
    low = {std::min(low.latitude, position.latitude), std::min(low.longitude, longitude), std::min(low.h, position.h)};
    high = {std::max(high.latitude, position.latitude), std::max(high.longitude, longitude),
            std::max(high.h, position.h)};
  }
  outcome.area.push_back(Formatted("Area: latitude %.4f to %.4f, longitude %.4f to %.4f, height %.0f to %.0f m.",
                                   degrees(low.latitude), degrees(high.latitude), degrees(low.longitude),
                                   degrees(high.longitude), low.h, high.h));
  outcome.area.emplace_back(
      "Beyond it errors grow with the distance. The seven parameters belong together: those of another fit");
  outcome.area.emplace_back("may differ by metres and convert these points alike.");
}

// The index of the first position that the section's projection does not return within a metre, as with latitude and
// longitude in the wrong order; -1 for none.
int FirstFarOff(const std::vector<Geographic>& positions, GeodesyHandle base) {
  const RoundTrip roundTrip(base);
  for (std::size_t i = 0; i < positions.size(); ++i) {
    const double longitude = roundTrip.CentralMeridian() +
                             std::remainder(positions[i].longitude - roundTrip.CentralMeridian(), 2 * std::numbers::pi);
    double x = 0;
    double y = 0;
    if (GeoXY(base, &x, &y, positions[i].latitude, longitude) == 0 ||
        !roundTrip.HoldsForward(positions[i].latitude, longitude, x, y)) {
      return static_cast<int>(i);
    }
  }
  return -1;
}

}  // namespace

FitOutcome FitDatum(const FitOptions& options, const ControlPoints& given, GeodesyHandle base) {
  const std::vector<ControlPoint>& points = given.points;
  const auto made = api::Geodesy::CreateGeodesy(Wgs84);
  GeodesyHandle wgs84 = made.value.Handle();
  const std::vector<fit::SpatialPair> pairs = PairsFrom(options, points, wgs84, base);
  const fit::SevenParametersFit fitted = FitSevenParameters(
      pairs, {options.fixedScale, options.Sigma(), std::hypot(given.fromRounding, given.toRounding)});
  if (fitted.refused != nullptr) {
    throw UsageError(std::string("no fit: ") + fitted.refused);
  }
  FitOutcome outcome;
  outcome.method = options.fixedScale ? "transformation with six parameters" : "seven-parameter transformation";
  outcome.unit = "m";
  outcome.axes = options.pairs == PairsOf::Cartesian ? std::vector<std::string>{"X", "Y", "Z"}
                                                     : std::vector<std::string>{"north", "east", "up"};
  outcome.adjusted = fitted.adjusted;
  outcome.test = fitted.test;
  SetKeys(outcome, fitted.parameters);
  const fit::SevenParameters written = Written(outcome);
  std::vector<Geographic> positions;
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    const Vector3d v = pairs[i].axes * (written.Map(pairs[i].from) - pairs[i].to);
    PointResult point;
    point.v = {v.x(), v.y(), v.z()};
    outcome.points.push_back(point);
    if (points[i].weight > 0) {
      outcome.used.push_back(i);
      positions.push_back(PositionOf(base, pairs[i].to));
    }
  }
  SetReliability(outcome, 3);
  Describe(outcome, fitted, options, points);
  DescribeArea(outcome, positions);
  if (fitted.flatness < SmallFlatness) {
    outcome.warnings.push_back(Formatted(
        "the points are nearly on a line (their width is %.2g of their length): the rotation about it is poorly "
        "determined",
        fitted.flatness));
  }
  if (!(fitted.parameters.rotation.cwiseAbs().maxCoeff() <= LargeRotation)) {
    outcome.warnings.push_back(
        Formatted("a rotation exceeds %.0f arc seconds: are the columns in the right order?", LargeRotation));
  }
  const double ppm = std::fabs(fitted.parameters.ppm) - 3 * fitted.deviations.ppm;
  if (ppm > LargestPpm || fitted.shift.norm() > LargestShift) {
    outcome.warnings.push_back(
        Formatted("a shift of %.0f m with a scale difference of %.0f ppm is larger than those of datums: are the two "
                  "positions in the right order, and is the section's ellipsoid that of the second?",
                  fitted.shift.norm(), fitted.parameters.ppm));
  }
  if (const int far = FirstFarOff(positions, base); far >= 0) {
    outcome.warnings.push_back(PlaceOf(options, points[outcome.used[static_cast<std::size_t>(far)]]) +
                               ": too far from the projection's origin: are the columns in the right order?");
  }
  return outcome;
}

double DifferenceOfDatum(const FitOutcome& outcome, const FitOptions& options, const std::vector<ControlPoint>& points,
                         GeodesyHandle made) {
  const auto wgs84Made = api::Geodesy::CreateGeodesy(Wgs84);
  GeodesyHandle wgs84 = wgs84Made.value.Handle();
  const fit::SevenParameters written = Written(outcome);
  double largest = 0;
  for (const fit::SpatialPair& pair : PairsFrom(options, points, wgs84, made)) {
    Geographic at = PositionOf(wgs84, pair.from);
    WGS84Conv(made, &at.latitude, &at.longitude, &at.h);
    largest = std::max(largest, (Cartesian(made, at.latitude, at.longitude, at.h) - written.Map(pair.from)).norm());
  }
  return largest;
}

}  // namespace latigo::cli
