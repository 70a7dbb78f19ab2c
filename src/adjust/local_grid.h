// The local grid of a coordinate system: a transformation of the projection's coordinates x, y to local coordinates
// X, Y; grid units.
#pragma once

#include <latigo/latigo.h>

#include <cstdint>

#include "adjust/similarity.h"
#include "errors/errcode.h"

namespace latigo {

class LocalGrid {
 public:
  // metresPerUnit: of the projection's coordinates.
  explicit LocalGrid(double metresPerUnit) : Unit(metresPerUnit) {}

  // Replaces the record. Code 7 if its scale is 0; nothing changes then.
  errcode SetAdjust(const Adjustment& adjustment);
  const Adjustment& Record() const { return Adjust; }
  bool IsSimilarity() const { return Stage == Kind::Similarity; }

  // Projection to local grid, and local grid to projection, in place. Most systems have no local grid.
  void Forward(double& x, double& y) const {
    if (Stage != Kind::None) {
      DoForward(x, y);
    }
  }
  void Inverse(double& x, double& y) const {
    if (Stage != Kind::None) {
      DoInverse(x, y);
    }
  }

 private:
  enum class Kind { None, Similarity, Polynomial, Chain };

  static Kind KindOf(std::uint32_t type);
  void DoForward(double& x, double& y) const;
  void DoInverse(double& x, double& y) const;

  double Unit;
  Adjustment Adjust = {0, 0, 0, 0, 1, 0, 0};
  Kind Stage = Kind::None;  // the meaning of the record's type
  std::uint32_t Type = 0;   // the type without its flags
  Similarity Turn;          // rotation and scale of the record
};

}  // namespace latigo
