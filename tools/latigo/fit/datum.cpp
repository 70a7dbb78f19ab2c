// The seven parameters from WGS-84 to a section's datum, fitted to control points.
#include <latigo/latigo.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <optional>

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
// Beyond those of all published datums, of which the largest are about 2200 m and 270 ppm.
constexpr double LargestShift = 3000;
constexpr double LargestPpm = 500;
// The test whether positions fit better in the other order: the least quotient of the standard errors, the
// significance, and the least residual, which is that of positions with rounded angles.
constexpr double ExchangedRatio = 2;
constexpr double ExchangedSignificance = 0.001;
constexpr double LeastResidual = 1e-3;
constexpr double Certain = 0.0027;  // the significance of parameters that are too large
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
                                        GeodesyHandle wgs84, GeodesyHandle base, bool exchanged = false) {
  std::vector<fit::SpatialPair> pairs;
  for (const ControlPoint& point : points) {
    std::array<double, 6> v = point.values;
    if (exchanged) {
      std::rotate(v.begin(), v.begin() + 3, v.end());
    }
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
                              names[i], Unsigned(p.delta(i), 4), d.delta(i), fitted.shiftDeviation(i)));
  }
  facts.push_back(Formatted("DeltaScale      %.6f ppm", Unsigned(p.ppm, 6)) +
                  (options.fixedScale ? std::string("  fixed") : Formatted("  standard deviation %.6f", d.ppm)));
  for (int i = 0; i < 3; ++i) {
    facts.push_back(Formatted("DeltaR%s         %.6f arc seconds  standard deviation %.6f", names[i],
                              Unsigned(p.rotation(i), 6), d.rotation(i)));
  }
  facts.push_back("points          converted with standard deviations of " + DeviationsAtPoints(outcome, points) +
                  " m");
}

void DescribeArea(FitOutcome& outcome, const std::vector<Geographic>& positions) {
  std::vector<std::array<double, 2>> points;
  double low = positions.front().h;
  double high = low;
  for (const Geographic& position : positions) {
    points.push_back({position.latitude, position.longitude});
    low = std::min(low, position.h);
    high = std::max(high, position.h);
  }
  outcome.area.push_back(AreaText(LimitsOf(points)));
  outcome.area.push_back(Formatted("Heights of %.0f to %.0f m.", low, high));
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

// The standard error with the two positions of each pair in the other order, if it is so much smaller that they are
// probably in that order; else nothing. X, Y and Z fit as well in both.
std::optional<double> BetterExchanged(const fit::SevenParametersFit& fitted, const fit::SevenParametersFit& exchanged) {
  const int redundancy = fitted.adjusted.redundancy;
  if (redundancy == 0 || exchanged.refused != nullptr) {
    return std::nullopt;
  }
  // F is the square of t / sqrt(f) + sqrt(t^2 / f + 1) if both sums of squares have f degrees of freedom.
  const double t = fit::StudentLimit(ExchangedSignificance, redundancy) / std::sqrt(redundancy);
  const double ratio = std::max(ExchangedRatio, t + std::sqrt(t * t + 1));
  const bool better = fitted.adjusted.s0 > ratio * exchanged.adjusted.s0 &&
                      fitted.adjusted.v.norm() > LeastResidual * std::sqrt(redundancy);
  return better ? std::optional(exchanged.adjusted.s0) : std::nullopt;
}

}  // namespace

FitOutcome FitDatum(const FitOptions& options, const ControlPoints& given, GeodesyHandle base) {
  const std::vector<ControlPoint>& points = given.points;
  const auto made = api::Geodesy::CreateGeodesy(Wgs84);
  GeodesyHandle wgs84 = made.value.Handle();
  const std::vector<fit::SpatialPair> pairs = PairsFrom(options, points, wgs84, base);
  const double rounding = std::hypot(given.fromRounding, given.toRounding);
  const fit::SevenParametersOptions how = {options.fixedScale, options.Sigma(), rounding,
                                           options.pairs == PairsOf::Geographic};
  const fit::SevenParametersFit fitted = FitSevenParameters(pairs, how);
  if (fitted.refused != nullptr) {
    throw UsageError(std::string("no fit: ") + fitted.refused);
  }
  FitOutcome outcome;
  outcome.method = options.fixedScale ? "transformation with six parameters" : "seven-parameter transformation";
  outcome.unit = "m";
  outcome.axes = options.pairs == PairsOf::Cartesian ? std::vector<std::string>{"X", "Y", "Z"}
                                                     : std::vector<std::string>{"north", "east", "up"};
  outcome.rounding = rounding;
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
  // Three standard deviations, or more if they are estimated from few residuals.
  const double certain = fit::StudentLimit(Certain, fitted.adjusted.redundancy);
  const Vector3d rotations = fitted.parameters.rotation.cwiseAbs() - certain * fitted.deviations.rotation;
  if (!(rotations.maxCoeff() <= LargeRotation)) {
    outcome.warnings.push_back(
        Formatted("a rotation exceeds %.0f arc seconds: the transformation, which is linear in the rotations, also "
                  "scales by more than 5e-9",
                  LargeRotation));
  }
  const double ppm = std::fabs(fitted.parameters.ppm) - certain * fitted.deviations.ppm;
  if (ppm > LargestPpm || fitted.shift.norm() > LargestShift) {
    outcome.warnings.push_back(Formatted(
        "a shift of %.0f m with a scale difference of %.0f ppm is larger than those of datums: are the columns "
        "right, and is the section's ellipsoid that of the second position?",
        fitted.shift.norm(), fitted.parameters.ppm));
  }
  if (options.pairs == PairsOf::Geographic) {
    const auto other = BetterExchanged(fitted, FitSevenParameters(PairsFrom(options, points, wgs84, base, true), how));
    if (other) {
      outcome.warnings.push_back(Formatted(
          "with the two positions in the other order the standard error of unit weight is %.4f instead of %.4f: "
          "is the first one on WGS-84?",
          *other, fitted.adjusted.s0));
    }
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
