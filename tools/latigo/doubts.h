// Which results are doubtful: the limits that the program, the extension of PostgreSQL and the module for Python share.
#pragma once

#include <latigo/latigo.h>

#include <array>
#include <cmath>

namespace latigo::cli {

// Why a converted point is doubtful: one bit each.
enum class Doubt : unsigned {
  Unshifted = 1,
  NoRoundTrip = 2,
  WholeHeight = 4,
  RoughFactors = 8,
  LongLine = 16,
  FlatRhumbLine = 32,
  KeptHeight = 64,
  GreatHeight = 128
};
inline constexpr int Doubts = 8;

// For each doubt, in the order of its bits.
extern const std::array<const char*, Doubts> DoubtTexts;

// Whether an object's projection converts a point back to where it was, within one metre. That is tried only far from
// the projection's origin, where its formulas can lose their sense; nearer it costs a few comparisons. With a local
// grid of a fixed polynomial it is tried everywhere. The object must exist as long. Radians and grid units.
class RoundTrip {
 public:
  explicit RoundTrip(GeodesyHandle object);

  // The meridian from which longitudes count, within half a turn of it.
  double CentralMeridian() const { return centralMeridian_; }

  // Whether the grid coordinates to which a position was converted lead back to it, and the reverse.
  bool HoldsForward(double latitude, double longitude, double x, double y) const {
    return IsNear(longitude, x, y) || ReturnsToPosition(latitude, longitude, x, y);
  }
  bool HoldsInverse(double x, double y, double latitude, double longitude) const {
    return IsNear(longitude, x, y) || ReturnsToGrid(x, y, latitude, longitude);
  }

 private:
  bool IsNear(double longitude, double x, double y) const {
    return std::fabs(longitude - centralMeridian_) <= nearLongitude_ && std::fabs(x - originX_) <= nearX_ &&
           std::fabs(y - originY_) <= nearY_;
  }
  void KeepToNaturalOrigin();
  bool ReturnsToPosition(double latitude, double longitude, double x, double y) const;
  bool ReturnsToGrid(double x, double y, double latitude, double longitude) const;

  GeodesyHandle object_;
  double centralMeridian_ = 0;
  double metresPerUnit_ = 1;
  double originX_ = 0, originY_ = 0;  // of the grid, from which the limits are measured; grid units
  double nearLongitude_ = 0, nearX_ = 0, nearY_ = 0;
};

// Whether the error of the mid-latitude formulas can exceed two centimetres. phi is the mean latitude in radians, s the
// length in metres.
bool IsLongLine(double phi, double s);

// Whether rounding errors of the length of a rhumb line can exceed two centimetres. Latitudes and azimuth in radians.
bool IsFlatRhumbLine(double latitude1, double latitude2, double azimuth);

}  // namespace latigo::cli
