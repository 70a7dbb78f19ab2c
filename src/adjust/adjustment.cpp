// The stage between the projection and the caller: the local grid of a Geodesy object.
#include "adjust/poly_grids.h"
#include "adjust/poly_tables.h"
#include "adjust/similarity.h"
#include "frame/geodesy.h"

namespace latigo {

namespace {

constexpr std::uint32_t SimilarityType = 1;
constexpr std::uint32_t Poly5Type = 2;
constexpr std::uint32_t Poly7Type = 3;

}  // namespace

errcode Geodesy::SetAdjust(const Adjustment& adjustment) {
  if (adjustment.AdjustScale == 0) {
    return errcode(NoAdjustScale, Fatal);
  }
  Adjust = adjustment;
  // The other types leave the names of the axes as they were.
  if (AdjustmentType() == SimilarityType) {
    FirstAxisId = (Adjust.AdjustType & LATIGO_REVERSE_X) != 0 ? AxisWesting : AxisEasting;
    SecondAxisId = (Adjust.AdjustType & LATIGO_REVERSE_Y) != 0 ? AxisSouthing : AxisNorthing;
  }
  return errcode();
}

void Geodesy::GetAdjust(Adjustment& adjustment) const {
  adjustment = Adjust;
}

void Geodesy::DoAdjustForward(double& x, double& y) const {
  const std::uint32_t type = AdjustmentType();
  if (type == SimilarityType) {
    SimilarityForward(Adjust, x, y);
  } else if (type == Poly5Type || type == Poly7Type) {
    PolyGridForward(type, x, y);
  } else if (FirstChainGrid <= type && type <= LastChainGrid) {
    ChainGridForward(type, Proj->Unit, x, y);
  }
}

void Geodesy::DoAdjustInverse(double& x, double& y) const {
  const std::uint32_t type = AdjustmentType();
  if (type == SimilarityType) {
    SimilarityInverse(Adjust, x, y);
  } else if (type == Poly5Type || type == Poly7Type) {
    PolyGridInverse(type, x, y);
  } else if (FirstChainGrid <= type && type <= LastChainGrid) {
    ChainGridInverse(type, Proj->Unit, x, y);
  }
}

}  // namespace latigo
