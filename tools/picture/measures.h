// Measurements of a coordinate system at positions in degrees, by the exports.
#pragma once

#include <latigo/latigo.h>

#include <cstdint>

#include "factors.h"

namespace latigo::picture {

struct Position {
  double latitude, longitude;  // degrees
};

struct Area {
  double south, north, west, east;  // degrees
};

// In place of a code: a function succeeds and returns NaN.
inline constexpr std::int32_t NotANumber = -1;

struct Outcome {
  double value;       // valid if the code is 0
  std::int32_t code;  // 0, a code of the library, or NotANumber
};

inline constexpr const char* PointScaleTitle = "Point scale factor k: (k − 1), parts per million";
inline constexpr const char* FartherScaleTitle = "Extreme scale a or b, farther from 1: (scale − 1), parts per million";

// Of an object that outlives them.
class Measures {
 public:
  explicit Measures(GeodesyHandle handle);

  // The round-trip error of a position, millimetres on the ground.
  Outcome Closure(Position position) const;

  // The result of Scale minus 1, parts per million; the object has no local grid.
  Outcome ScaleExcess(Position position) const;

  // By differences: the scale factor minus 1, parts per million; the convergence, degrees. The scale factor is k if the
  // projection is conformal; else the largest of all directions, a, or the smallest, b, whichever is farther from 1:
  // the semi-axes of Tissot's indicatrix, whose mean is 1 everywhere if areas are true.
  Outcome FactorExcess(Position position) const;
  Outcome Convergence(Position position) const;

  bool IsConformal() const { return conformal_; }
  // The title of a panel of scale factors.
  const char* FactorTitle() const { return conformal_ ? PointScaleTitle : FartherScaleTitle; }

  // The distance between positions that are near one another, metres on the ground.
  double Distance(Position from, Position to) const;

 private:
  Outcome FactorsAt(Position position, Factors& factors) const;

  GeodesyHandle handle_;
  double a_, e2_;
  bool conformal_;
  Differences differences_;
};

}  // namespace latigo::picture
