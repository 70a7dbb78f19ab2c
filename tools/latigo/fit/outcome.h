// The result of a fit, for the report and the section.
#pragma once

#include <latigo/latigo.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "fit/control_points.h"
#include "fit/fit_options.h"
#include "fit/least_squares.h"

namespace latigo::cli {

struct PointResult {
  std::array<double, 3> v = {};  // by the section less as given
  std::array<double, 3> w = {};  // standardised; NaN where nothing checks it
  std::array<double, 3> r = {};  // redundancy numbers
  bool outside = false;          // a check point outside the area of the control points
};

struct FitOutcome {
  const char* method = "";
  std::vector<std::string> axes;                          // names of the residuals of a point
  std::string unit;                                       // of the residuals
  double metresPerUnit = 1;                               // of the residuals
  double rounding = 0;                                    // standard deviation of that of a residual, as far as known
  std::vector<PointResult> points;                        // one for each control point
  std::vector<std::string> facts;                         // lines of the report
  std::vector<std::string> area;                          // lines of the report and of the section
  std::vector<std::string> warnings;                      // one line each
  std::vector<std::pair<const char*, std::string>> keys;  // of the section
  fit::Adjusted adjusted;
  fit::BlunderTest test;
  std::vector<std::size_t> used;  // the control points that are not check points, in the order of the observations
};

// Fit the parameters. Throw UsageError if the points do not determine them.
FitOutcome FitLocalGrid(const FitOptions& options, const ControlPoints& given, GeodesyHandle base);
FitOutcome FitDatum(const FitOptions& options, const ControlPoints& given, GeodesyHandle base);

// The largest difference between the fit and what the section made does with the points, in units of the residuals; the
// round-trip error of the projection does not count. Both objects are of the section, before and after.
double DifferenceOfLocalGrid(const FitOutcome& outcome, const std::vector<ControlPoint>& points, GeodesyHandle base,
                             GeodesyHandle made);
double DifferenceOfDatum(const FitOutcome& outcome, const FitOptions& options, const std::vector<ControlPoint>& points,
                         GeodesyHandle made);

// Residuals of the observations of the adjustment, w and r to their points.
void SetReliability(FitOutcome& outcome, std::size_t perPoint);

// The range of the standard deviations of converted control points: "0.0012 to 0.0034".
std::string DeviationsAtPoints(const FitOutcome& outcome, const std::vector<ControlPoint>& points);

// Geographic limits, in degrees; an area across the 180th meridian has an east above 180.
struct Limits {
  double south, north, west, east;
};

// The limits of positions in radians. Their longitudes are compared with the first one.
Limits LimitsOf(const std::vector<std::array<double, 2>>& positions);

// The comment of a section from which the command map takes its area, in parts of a degree, rounded outwards:
// "Area: the control points; 51.5034 N to 51.5112 N, 0.1334 W to 0.1157 W".
std::string AreaText(const Limits& limits);

// printf to a string.
__attribute__((format(printf, 1, 2))) std::string Formatted(const char* format, ...);

// The value, or 0 if it is printed as zero, with or without a sign.
double Unsigned(double value, int decimals);

// A number with at most that many decimals, without zeros at the end.
std::string Decimal(double value, int decimals);

// The number that the text of a key is read as.
double Reread(const std::string& text);

}  // namespace latigo::cli
