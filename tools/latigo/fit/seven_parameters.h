// The seven-parameter (Helmert) transformation from WGS-84 to a datum, fitted to pairs of earth-centred positions.
//
// With s = 1 + ppm / 1e6 and rotations in radians, the transformation is the library's:
//   X' = (X + rZ Y - rY Z) s + dX
//   Y' = (Y - rZ X + rX Z) s + dY
//   Z' = (Z + rY X - rX Y) s + dZ
// in the coordinate frame convention (EPSG method 1032), with the rotation linear in the angles. The position vector
// convention (EPSG method 1033) has the opposite signs of the rotations.
#pragma once

#include <Eigen/Core>
#include <optional>
#include <vector>

#include "least_squares.h"

namespace latigo::fit {

// A control point. Metres, earth-centred. The rows of axes are the directions, of length 1, in which its three
// residuals are measured.
struct SpatialPair {
  Eigen::Vector3d from;  // WGS-84
  Eigen::Vector3d to;    // the datum
  double weight = 1;     // of each coordinate; 0 for a check point, which takes no part
  Eigen::Matrix3d axes = Eigen::Matrix3d::Identity();
};

// In the units of the configuration file.
struct SevenParameters {
  Eigen::Vector3d delta = Eigen::Vector3d::Zero();     // DeltaX, DeltaY, DeltaZ: metres
  double ppm = 0;                                      // DeltaScale
  Eigen::Vector3d rotation = Eigen::Vector3d::Zero();  // DeltaRX, DeltaRY, DeltaRZ: arc seconds

  Eigen::Vector3d Map(const Eigen::Vector3d& from) const;
};

struct SevenParametersFit {
  const char* refused = nullptr;  // why there is no solution; nothing else is set then
  SevenParameters parameters;
  SevenParameters deviations;                                // standard deviations
  Eigen::Vector3d shiftDeviation = Eigen::Vector3d::Zero();  // of the translation at the centre of the points, metres
  Eigen::Vector3d shift = Eigen::Vector3d::Zero();           // that translation, metres
  double flatness = 0;  // extent of the points across their longest direction, divided by that along it
  Adjusted adjusted;    // observations: three of each point with a weight, along its axes
  BlunderTest test;
};

struct SevenParametersOptions {
  std::optional<double> fixedScale;  // s
  double sigma = 0;                  // of a coordinate of weight 1, known beforehand; 0 for unknown
  double rounding = 0;               // standard deviation of the rounding of a residual
  bool heightsApart = false;         // the third axis can have errors of another size, estimated from its residuals
};

SevenParametersFit FitSevenParameters(const std::vector<SpatialPair>& pairs, const SevenParametersOptions& options);

// Rows north, east and up at a geographic position, radians.
Eigen::Matrix3d NorthEastUp(double latitude, double longitude);

}  // namespace latigo::fit
