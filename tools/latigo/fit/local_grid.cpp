// The local grid of adjustment type 1, fitted to control points.
#include <algorithm>
#include <cmath>

#include "error_text.h"
#include "fit/convex_hull.h"
#include "fit/outcome.h"

namespace latigo::cli {

namespace {

constexpr double SecondsPerDegree = 3600;
// Decimals of the section's values: at 1000 km they are good for a tenth of a micrometre.
constexpr int DegreeDecimals = 13;
constexpr int ScaleDecimals = 14;
constexpr int LengthDecimals = 7;
constexpr double LargestRoundTrip = 1;   // of the projection at a control point, metres
constexpr double NotedRoundTrip = 1e-3;  // metres
constexpr double SameUnit = 0.01;        // the largest difference of a scale from 1 if both grids have the same unit
constexpr double LeastScale = 0.9;       // beyond these scales another unit is more probable than another surface
constexpr double LargestScale = 1.1;
constexpr double LeastCheckedScale = 0.1;  // the scales of which the command check does not warn
constexpr double LargestCheckedScale = 10;
constexpr double LargestMisfit = 0.01;  // of a coordinate, in distances of the points from their centre

// The similarity that the keys of a section describe.
fit::Similarity Written(const FitOutcome& outcome) {
  fit::Similarity s;
  const auto value = [&](std::string_view key) {
    const auto found =
        std::find_if(outcome.keys.begin(), outcome.keys.end(), [&](const auto& one) { return key == one.first; });
    return found == outcome.keys.end() ? std::string() : found->second;
  };
  const auto number = [&](std::string_view key) { return Reread(value(key)); };
  s.originX = number("AdjustOrigX");
  s.originY = number("AdjustOrigY");
  s.rotation = number("AdjustRotation");
  s.scale = number("AdjustScale");
  s.localX = number("AdjustX");
  s.localY = number("AdjustY");
  s.reverseX = value("ReverseX") == "yes";
  s.reverseY = value("ReverseY") == "yes";
  return s;
}

void SetKeys(FitOutcome& outcome, const fit::Similarity& s) {
  outcome.keys = {{"AdjustType", "1"}};
  if (s.reverseX) {
    outcome.keys.emplace_back("ReverseX", "yes");
  }
  if (s.reverseY) {
    outcome.keys.emplace_back("ReverseY", "yes");
  }
  outcome.keys.insert(outcome.keys.end(), {{"AdjustRotation", Decimal(s.rotation, DegreeDecimals)},
                                           {"AdjustScale", Decimal(s.scale, ScaleDecimals)},
                                           {"AdjustX", Decimal(s.localX, LengthDecimals)},
                                           {"AdjustY", Decimal(s.localY, LengthDecimals)},
                                           {"AdjustOrigX", Decimal(s.originX, LengthDecimals)},
                                           {"AdjustOrigY", Decimal(s.originY, LengthDecimals)}});
}

const char* AxesText(const fit::Similarity& s) {
  return s.reverseX   ? (s.reverseY ? "both reversed (half a turn)" : "X reversed")
         : s.reverseY ? "Y reversed"
                      : "not reversed";
}

void Describe(FitOutcome& outcome, const fit::SimilarityFit& fitted, const FitOptions& options,
              const std::vector<ControlPoint>& points) {
  const fit::Similarity& s = fitted.similarity;
  const bool exact = outcome.adjusted.redundancy == 0;
  const auto deviation = [&](double value, const char* format) {
    return exact ? std::string() : "  standard deviation " + Formatted(format, value);
  };
  auto& facts = outcome.facts;
  facts.push_back(Formatted("rotation        %.9f degrees, anticlockwise", Unsigned(s.rotation, 9)) +
                  deviation(fitted.rotationDeviation * SecondsPerDegree, "%.2f arc seconds"));
  facts.push_back(Formatted("scale           %.10f, %+.3f ppm", s.scale, Unsigned((s.scale - 1) * 1e6, 3)) +
                  (options.fixedScale ? std::string("  fixed") : deviation(fitted.scaleDeviation * 1e6, "%.3f ppm")));
  facts.push_back(Formatted("AdjustX         %.4f", Unsigned(s.localX, 4)) + deviation(fitted.localXDeviation, "%.4f"));
  facts.push_back(Formatted("AdjustY         %.4f", Unsigned(s.localY, 4)) + deviation(fitted.localYDeviation, "%.4f"));
  facts.push_back(Formatted("origin          x %.0f, y %.0f, the centre of the points, rounded", s.originX, s.originY));
  facts.push_back(std::string("axes            ") + AxesText(s) +
                  (fitted.handKnown && !exact
                       ? Formatted("; with one axis %s the standard error of unit weight would be %.4g",
                                   s.reverseX != s.reverseY ? "less" : "more", fitted.otherHand)
                       : std::string()));
  if (!exact) {
    facts.push_back("points          converted with standard deviations of " + DeviationsAtPoints(outcome, points) +
                    " " + outcome.unit);
  }
}

void DescribeArea(FitOutcome& outcome, const fit::SimilarityFit& fitted, const std::vector<fit::PlanePoint>& hull,
                  const FitOptions& options, GeodesyHandle base, double metresPerUnit) {
  std::vector<std::array<double, 2>> corners;
  for (const fit::PlanePoint& corner : hull) {
    double latitude = 0;
    double longitude = 0;
    XYGeo(base, corner.x, corner.y, &latitude, &longitude);
    corners.push_back({latitude, longitude});
  }
  outcome.area.push_back(AreaText(LimitsOf(corners)));
  const auto [west, east] =
      std::minmax_element(hull.begin(), hull.end(), [](const auto& a, const auto& b) { return a.x < b.x; });
  const auto [south, north] =
      std::minmax_element(hull.begin(), hull.end(), [](const auto& a, const auto& b) { return a.y < b.y; });
  const double square = fit::AreaOf(hull) * metresPerUnit * metresPerUnit;
  outcome.area.push_back(Formatted("Between x %.0f and %.0f, y %.0f and %.0f", west->x, east->x, south->y, north->y) +
                         (square >= 1e5 ? Formatted("; the control points enclose %.3f km2.", square / 1e6)
                                        : Formatted("; the control points enclose %.0f m2.", square)));
  if (outcome.adjusted.redundancy == 0) {
    outcome.area.emplace_back("Beyond it the errors of the points grow with the distance.");
    return;
  }
  const auto deviation = [&](double times) {
    return std::hypot(fitted.pointDeviation, fitted.growth * times * fitted.spread);
  };
  outcome.area.emplace_back(
      options.fixedScale ? "Beyond it errors across the direction to the centre grow with the distance. The standard "
                           "deviation is"
                         : "Beyond it errors grow with the distance from the centre. The standard deviation is");
  outcome.area.push_back(Formatted("%.4f %s at %.0f, %.4f at %.0f and %.4f at %.0f.", deviation(1),
                                   outcome.unit.c_str(), fitted.spread, deviation(3), 3 * fitted.spread, deviation(10),
                                   10 * fitted.spread));
}

// The least standard deviation of a coordinate that makes the misfit probable, three deviations below it: the square of
// misfit / sigma, times the redundancy f, has the distribution chi-square, of which Wilson and Hilferty approximate a
// fractile by f (1 - 2 / (9 f) + 3 sqrt(2 / (9 f)))^3.
double LeastMisfit(const fit::SimilarityFit& fitted) {
  const double part = 2 / (9.0 * std::max(fitted.adjusted.redundancy, 1));
  return fitted.misfit / std::pow(1 - part + 3 * std::sqrt(part), 1.5);
}

void Warn(FitOutcome& outcome, const fit::SimilarityFit& fitted, const FitOptions& options) {
  if (outcome.adjusted.redundancy == 0) {
    outcome.warnings.emplace_back(
        "the points fit exactly, whatever errors they have: nothing checks them, and there are no standard deviations");
  }
  if (LeastMisfit(fitted) > LargestMisfit * fitted.localSpread) {
    outcome.warnings.push_back(
        Formatted("the two sets of coordinates do not match: the residuals, %.3g %s, exceed 1 %% of the points' "
                  "distances from their centre. Are the columns right?",
                  fitted.misfit, outcome.unit.c_str()));
  }
  const fit::Similarity& s = fitted.similarity;
  if (!options.fixedScale && !(LeastScale <= s.scale && s.scale <= LargestScale)) {
    outcome.warnings.push_back(
        Formatted("the scale is %.6g: the local grid seems to have another unit than the section's grid", s.scale));
  }
  if (!(LeastCheckedScale <= s.scale && s.scale <= LargestCheckedScale)) {
    outcome.warnings.push_back(
        Formatted("the scale is not from %g to %g: the command check, and every other one, will warn of the section",
                  LeastCheckedScale, LargestCheckedScale));
  }
  if (options.reversed == fit::Reversed::Auto && !fitted.handKnown) {
    outcome.warnings.emplace_back(
        "the points do not show whether an axis is reversed, and none is assumed to be; --reverse x or y says so");
  } else if (options.reversed == fit::Reversed::Auto && s.reverseX != s.reverseY) {
    outcome.warnings.push_back(
        std::string("the local grid is mirrored: ") + (s.reverseX ? "X" : "Y") +
        " is reversed. Columns in the order northing, easting also do this; --reverse x or y accepts it");
  } else if (fitted.handKnown && fitted.otherHand < outcome.adjusted.s0) {
    outcome.warnings.emplace_back("with the other axes the points fit better: see --reverse");
  }
}

// Refuses control points that the projection does not return, as with columns in the order northing, easting: the
// section made would not convert them so.
void CheckRoundTrip(FitOutcome& outcome, const std::vector<ControlPoint>& points, GeodesyHandle base,
                    double metresPerUnit) {
  double largest = 0;
  for (const ControlPoint& point : points) {
    double latitude = 0;
    double longitude = 0;
    double x = 0;
    double y = 0;
    const std::string place = "the control point of line " + std::to_string(point.line) + " is ";
    if (XYGeo(base, point.values[0], point.values[1], &latitude, &longitude) == 0 ||
        GeoXY(base, &x, &y, latitude, longitude) == 0) {
      throw UsageError(place + "outside the section's projection: " + ErrorText(GetGeodesyError(), "XYGeo"));
    }
    const double error = std::hypot(x - point.values[0], y - point.values[1]) * metresPerUnit;
    if (!(error <= LargestRoundTrip)) {
      throw UsageError(place +
                       "too far from the projection's origin: the round-trip error exceeds one metre. Are the " +
                       "columns in the order easting, northing?");
    }
    largest = std::max(largest, error);
  }
  if (largest > NotedRoundTrip) {
    outcome.warnings.push_back(
        Formatted("the control points are far from the projection's origin: its round-trip error is up to %.4f m, by "
                  "which the section converts them differently",
                  largest));
  }
}

}  // namespace

FitOutcome FitLocalGrid(const FitOptions& options, const ControlPoints& given, GeodesyHandle base) {
  const std::vector<ControlPoint>& points = given.points;
  Adjustment adjustment;
  GetAdjustment(base, &adjustment);
  if ((adjustment.AdjustType & LATIGO_ADJUST_TYPE) != LATIGO_ADJUST_NONE) {
    throw UsageError(options.file + " [" + options.section +
                     "]: the section has a local grid already (AdjustType); the control points have the projection's "
                     "coordinates, so name a section without one");
  }
  std::vector<fit::PlanePair> pairs;
  std::vector<fit::PlanePoint> corners;
  FitOutcome outcome;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const auto& [x, y, localX, localY, ignored, alsoIgnored] = points[i].values;
    pairs.push_back({x, y, localX, localY, points[i].weight});
    if (points[i].weight > 0) {
      corners.push_back({x, y});
      outcome.used.push_back(i);
    }
  }
  double metresPerUnit = 1;
  HConvert(base, &metresPerUnit, LATIGO_TO_METRES);
  const fit::SimilarityFit fitted = fit::FitSimilarity(pairs, {options.fixedScale, options.reversed, options.Sigma(),
                                                               given.fromRounding, given.toRounding, metresPerUnit});
  if (fitted.refused != nullptr) {
    throw UsageError(std::string("no fit: ") + fitted.refused);
  }
  char unit[16] = "";
  GetLocalName(base, LATIGO_NAME_UNIT_SHORT, "", unit, sizeof unit);
  outcome.method = options.fixedScale ? "similarity transformation with a fixed scale" : "similarity transformation";
  // A local grid may have another unit, which its scale includes.
  const bool same = std::fabs(fitted.similarity.scale - 1) < SameUnit;
  outcome.unit = !same ? "local units" : unit[0] != '\0' ? unit : "grid units";
  outcome.rounding = std::hypot(given.toRounding, fitted.similarity.scale * given.fromRounding);
  outcome.metresPerUnit = metresPerUnit / fitted.similarity.scale;
  outcome.axes = {"X", "Y"};
  outcome.adjusted = fitted.adjusted;
  outcome.test = fitted.test;
  SetKeys(outcome, fitted.similarity);
  const fit::Similarity written = Written(outcome);
  const std::vector<fit::PlanePoint> hull = fit::ConvexHull(corners);
  for (const fit::PlanePair& pair : pairs) {
    double x = pair.x;
    double y = pair.y;
    written.Map(x, y);
    PointResult point;
    point.v = {x - pair.localX, y - pair.localY};
    point.outside = !fit::Contains(hull, {pair.x, pair.y});
    outcome.points.push_back(point);
  }
  SetReliability(outcome, 2);
  Describe(outcome, fitted, options, points);
  Warn(outcome, fitted, options);
  CheckRoundTrip(outcome, points, base, metresPerUnit);
  DescribeArea(outcome, fitted, hull, options, base, metresPerUnit);
  return outcome;
}

double DifferenceOfLocalGrid(const FitOutcome& outcome, const std::vector<ControlPoint>& points, GeodesyHandle base,
                             GeodesyHandle made) {
  const fit::Similarity written = Written(outcome);
  double largest = 0;
  for (const ControlPoint& point : points) {
    const auto& [x, y, localX, localY, ignored, alsoIgnored] = point.values;
    double latitude = 0;
    double longitude = 0;
    double baseX = 0;
    double baseY = 0;
    double madeX = 0;
    double madeY = 0;
    XYGeo(base, x, y, &latitude, &longitude);
    GeoXY(base, &baseX, &baseY, latitude, longitude);
    GeoXY(made, &madeX, &madeY, latitude, longitude);
    written.Map(baseX, baseY);
    largest = std::max(largest, std::hypot(madeX - baseX, madeY - baseY));
  }
  return largest;
}

}  // namespace latigo::cli
