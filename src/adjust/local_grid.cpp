#include "adjust/local_grid.h"

#include "adjust/poly_grids.h"
#include "adjust/poly_tables.h"

namespace latigo {

LocalGrid::Kind LocalGrid::KindOf(std::uint32_t type) {
  switch (type) {
    case 1:
      return Kind::Similarity;
    case 2:
    case 3:
      return Kind::Polynomial;
    default:
      return FirstChainGrid <= type && type <= LastChainGrid ? Kind::Chain : Kind::None;
  }
}

errcode LocalGrid::SetAdjust(const Adjustment& adjustment) {
  if (adjustment.AdjustScale == 0) {
    return errcode(NoAdjustScale, Fatal);
  }
  Adjust = adjustment;
  Type = Adjust.AdjustType & 0xFFFFU;
  Stage = KindOf(Type);
  Turn = Similarity(Adjust);
  return errcode();
}

void LocalGrid::DoForward(double& x, double& y) const {
  switch (Stage) {
    case Kind::Similarity:
      return Turn.Forward(Adjust, x, y);
    case Kind::Polynomial:
      return PolyGridForward(Type, x, y);
    case Kind::Chain:
      return ChainGridForward(Type, Unit, x, y);
    case Kind::None:
      return;
  }
}

void LocalGrid::DoInverse(double& x, double& y) const {
  switch (Stage) {
    case Kind::Similarity:
      return Turn.Inverse(Adjust, x, y);
    case Kind::Polynomial:
      return PolyGridInverse(Type, x, y);
    case Kind::Chain:
      return ChainGridInverse(Type, Unit, x, y);
    case Kind::None:
      return;
  }
}

}  // namespace latigo
