#include "adjust/similarity.h"

#include <cmath>

namespace latigo {

namespace {

void Mirror(const Adjustment& adjustment, double& x, double& y) {
  if ((adjustment.AdjustType & LATIGO_REVERSE_X) != 0) {
    x = -x;
  }
  if ((adjustment.AdjustType & LATIGO_REVERSE_Y) != 0) {
    y = -y;
  }
}

}  // namespace

void SimilarityForward(const Adjustment& adjustment, double& x, double& y) {
  const double r = adjustment.AdjustRotation;
  const double p = adjustment.AdjustScale * std::sin(r);
  const double q = adjustment.AdjustScale * std::cos(r);
  const double dx = x - adjustment.AdjustOrigX;
  const double dy = y - adjustment.AdjustOrigY;
  x = q * dx + p * dy + adjustment.AdjustX;
  y = q * dy - p * dx + adjustment.AdjustY;
  Mirror(adjustment, x, y);
}

void SimilarityInverse(const Adjustment& adjustment, double& x, double& y) {
  const double r = -adjustment.AdjustRotation;
  const double p = std::sin(r) / adjustment.AdjustScale;
  const double q = std::cos(r) / adjustment.AdjustScale;
  Mirror(adjustment, x, y);
  const double u = x - adjustment.AdjustX;
  const double v = y - adjustment.AdjustY;
  x = q * u + p * v + adjustment.AdjustOrigX;
  y = q * v - p * u + adjustment.AdjustOrigY;
}

}  // namespace latigo
